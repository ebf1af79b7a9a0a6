#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/CheckRun.h"
#include "cli/commands/Commands.h"
#include "cli/program/CommonOptions.h"
#include "libReport/check/CheckJsonReport.h"
#include "libReport/check/CheckTextReport.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* FOOTER =
    "Exit status: 0 the machine holds what the script asks for; 1 it does not;\n"
    "2 a file cannot be read, parsed or written; 3 undetermined: the script asks for\n"
    "nothing, a pattern took too much work, or this machine cannot be read;\n"
    "4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory check golden.xml\n"
    "  vrx-inventory check golden.xml --state machine.xml --format json -o report.json\n"
    "  vrx-inventory check golden.xml --annotated annotated.xml";

struct CheckOptions : CommonOptions {
    CheckRun::Request request;
    std::string annotatedPath;
    bool hasNoUnsatisfiedTips = false;
};

void writeReport(const CheckOptions& options, const Session& session, const CheckOutcome& outcome) {
    options.writeResult(session, options.format == "json" ? checkJsonReport(outcome)
                                                          : checkTextReport(outcome, options.textFormat(session)));
}

void sayWhyUndetermined(const Session& session, const CheckOutcome& outcome) {
    if (outcome.verdict == Verdict::NothingToCheck) {
        session.say(inputName(outcome.script) +
                    ": nothing to check: the script holds no device and no fail-on-extra element");
    } else if (outcome.verdict == Verdict::Undecided) {
        session.say(inputName(outcome.script) +
                    ": undecided: a pattern took too much work on a value and was given up");
    }
}

/// The script with its findings, indented for people.
void writeAnnotated(const std::string& path, const CheckOutcome& outcome) {
    String text;
    outcome.annotatedScript->GetFormattedStr(text, 0);
    writeFile(path, text.toUtf8());
}

ExitStatus check(const CheckOptions& options, Session& session) {
    CheckRun& run = session.make<CheckRun>(options.request, session);
    try {
        run.run();
    } catch (const CommandFailure&) {
        if (options.format == "json") {
            writeReport(options, session, run.outcome());
        }
        throw;
    }
    writeReport(options, session, run.outcome());
    sayWhyUndetermined(session, run.outcome());
    if (!options.annotatedPath.empty()) {
        writeAnnotated(options.annotatedPath, run.outcome());
    }
    return run.status();
}

}  // namespace

void addCheckCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *parent.add_subcommand("check", "Check a machine against an inventory script");
    command.add_option("SCRIPT", options->request.scriptPath, "The inventory script, - for standard input")->required();
    options->addState(command);
    options->addFormat(command, {"text", "json"});
    options->addOutput(command);
    command.add_option("--annotated", options->annotatedPath, "File for the script with the findings in it")
        ->type_name("FILE");
    command.add_flag("--no-unsatisfied-tips", options->hasNoUnsatisfiedTips,
                     "Leave out the error that says that a device is not satisfied");
    options->addLogging(command);
    command.footer(FOOTER);
    command.callback([options, &session] {
        options->request.statePath = options->statePath;
        options->request.hasUnsatisfiedTips = !options->hasNoUnsatisfiedTips;
        options->applyLogging(session);
        session.action = [options, &session] {
            return check(*options, session);
        };
    });
}

}  // namespace vrx::cli
