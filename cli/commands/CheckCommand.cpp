#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/CheckRun.h"
#include "cli/commands/Commands.h"
#include "cli/program/CommonOptions.h"
#include "libReport/CheckReport.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* CHECK_FOOTER =
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
    std::string scriptPath;
    std::string annotatedPath;
    bool hasNoUnsatisfiedTips = false;
};

/// Why there is no answer; empty when there is one.
std::string whyUndetermined(const CheckReport& report) {
    switch (report.verdict) {
        case Verdict::NothingToCheck:
            return inputName(report.script) +
                   ": nothing to check: the script holds no device and no fail-on-extra element";
        case Verdict::Undecided:
            return inputName(report.script) + ": undecided: a pattern took too much work on a value and was given up";
        default: return {};
    }
}

/// The script with its findings, indented for people.
std::string annotatedText(const CheckReport& report) {
    String text;
    report.annotatedScript->GetFormattedStr(text, 0);
    return text.toUtf8();
}

CommandResult check(const CheckOptions& options, Session& session) {
    CheckRun& run = session.make<CheckRun>(
        CheckRun::Request{options.scriptPath, options.statePath, !options.hasNoUnsatisfiedTips}, session);
    CommandResult result;
    try {
        run.run();
    } catch (const CommandFailure& failure) {
        if (options.format == "text") {
            throw;
        }
        result.status = failure.status();
        result.note = failure.what();
    }
    const CheckReport& report = run.report();
    result.text = options.written(report, checkWriters(), session);
    if (report.verdict != Verdict::NotRun) {
        result.status = run.status();
        result.note = whyUndetermined(report);
        if (!options.annotatedPath.empty()) {
            result.files.push_back({options.annotatedPath, annotatedText(report)});
        }
    }
    return result;
}

}  // namespace

void addCheckCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *parent.add_subcommand("check", "Check a machine against an inventory script");
    command.add_option("SCRIPT", options->scriptPath, "The inventory script, - for standard input")->required();
    options->addState(command);
    options->addFormat(command, checkWriters());
    options->addOutput(command);
    command.add_option("--annotated", options->annotatedPath, "File for the script with the findings in it")
        ->type_name("FILE");
    command.add_flag("--no-unsatisfied-tips", options->hasNoUnsatisfiedTips,
                     "Leave out the error that says that a device is not satisfied");
    options->addLogging(command);
    command.footer(CHECK_FOOTER);
    setAction(command, session, options, [options, &session] { return check(*options, session); });
}

}  // namespace vrx::cli
