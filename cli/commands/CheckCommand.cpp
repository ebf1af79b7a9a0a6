#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/input/MachineSource.h"
#include "cli/input/MistakesFound.h"
#include "cli/input/ScriptFile.h"
#include "cli/program/CommonOptions.h"
#include "cli/terminal/CombinationProgress.h"
#include "libReport/CheckRun.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* CHECK_FOOTER =
    "Exit status: 0 the machine holds what the script asks for; 1 it does not;\n"
    "2 the script has mistakes (\"lint\" explains them), or a file cannot be read, parsed\n"
    "or written; 3 undetermined: the script asks for nothing, a pattern took too much\n"
    "work, there are too many alternatives, or the machine could not be read where it\n"
    "matters; 4 internal error.\n"
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
            return inputName(report.script) +
                   (report.givenUpPatterns > 0 ? ": undecided: a pattern took too much work on a value and was given up"
                                               : ": undetermined: " + report.headline);
        default: return {};
    }
}

/// The script with its findings, indented for people.
std::string annotatedText(const CheckReport& report) {
    String text;
    report.annotatedScript->GetFormattedStr(text, 0);
    return text.toUtf8();
}

ExitStatus statusOf(Verdict verdict) noexcept {
    switch (verdict) {
        case Verdict::Passed: return ExitStatus::Success;
        case Verdict::Failed: return ExitStatus::NotPassed;
        case Verdict::NotRun:
        case Verdict::Refused: return ExitStatus::BadInput;
        default: return ExitStatus::Undetermined;
    }
}

/// What stays as long as the session.
struct CheckWorld {
    StateManager machine;
    CheckRun run{machine};
    CheckReport report;
    DateTime started;
};

/// What only the command knows of the check.
void fillIn(const CheckOptions& options, CheckWorld& world) {
    world.report.started = world.started;
    world.report.script = options.scriptPath;
    if (!options.statePath.empty()) {
        world.report.state = options.statePath;
    }
    world.report.showsAnnotatedScript = options.isPlain || options.annotatedPath == "-";
}

void run(const CheckOptions& options, const Session& session, CheckWorld& world) {
    const auto start = session.console.now();
    if (options.scriptPath == "-" && options.statePath == "-") {
        throw CommandFailure(ExitStatus::BadInput, "the script and the machine cannot both come from standard input");
    }
    Inventory& inventory = world.run.inventory();
    inventory.setEnableUnsatisfiedDeviceTips(!options.hasNoUnsatisfiedTips);
    loadScript(options.scriptPath, world.run, options.isPlain, session);
    const ImportReport import = loadMachine(options.statePath, world.machine, session);
    {
        CombinationProgress progress(session.console);
        inventory.setProgress([&progress, &options](const RunProgress& state) {
            progress.show(state);
            return options.isPlain || state.combinations <= MOST_COMBINATIONS;
        });
        world.report = world.run.run({&import, options.isPlain});
        inventory.setProgress({});
    }
    world.report.duration = session.console.now() - start;
}

/// The end of a check that did not come to run. Programs that asked for a report get one that says why.
CommandResult unrun(const CheckOptions& options, const Session& session, CheckWorld& world,
                    const CommandFailure& failure) {
    CommandResult result{failure.status(), {}, {}, failure.lines()};
    if (options.format != "text") {
        fillIn(options, world);
        result.text = options.written(world.report, checkWriters(), session);
    }
    return result;
}

CommandResult refusal(const CheckOptions& options, const Session& session, CheckWorld& world,
                      const MistakesFound& found) {
    world.report.verdict = Verdict::Refused;
    world.report.headline = "the script has " + counted(found.mistakes().size(), "mistake");
    world.report.mistakes = found.mistakes();
    return unrun(options, session, world, found);
}

CommandResult check(const CheckOptions& options, Session& session) {
    CheckWorld& world = session.make<CheckWorld>();
    world.started = session.console.time();
    try {
        run(options, session, world);
    } catch (const MistakesFound& failure) {
        return refusal(options, session, world, failure);
    } catch (const CommandFailure& failure) {
        world.report.fileErrors = failure.texts();
        return unrun(options, session, world, failure);
    }
    fillIn(options, world);
    CommandResult result{statusOf(world.report.verdict), options.written(world.report, checkWriters(), session),
                         whyUndetermined(world.report)};
    if (!options.annotatedPath.empty() && options.annotatedPath != "-") {
        result.files.push_back({options.annotatedPath, annotatedText(world.report)});
    }
    return result;
}

}  // namespace

void addCheckCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *parent.add_subcommand("check", "Check a machine against an inventory script");
    options->addInput(command, "SCRIPT", options->scriptPath, "The inventory script, - for standard input").required();
    options->addState(command);
    options->addFormat(command, checkWriters());
    options->addOutput(command);
    options->addOutput(command, "--annotated", options->annotatedPath, "File for the script with the findings in it");
    command.add_flag("--no-unsatisfied-tips", options->hasNoUnsatisfiedTips,
                     "Leave out the error that says that a device is not satisfied");
    options->addPlain(command, "mistakes are passed over, and what is not known counts as absent");
    options->addLogging(command);
    command.footer(CHECK_FOOTER);
    setAction(command, session, options, [options, &session] { return check(*options, session); });
}

}  // namespace vrx::cli
