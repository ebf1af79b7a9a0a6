#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/help/CommandTable.h"
#include "cli/help/NearWord.h"
#include "cli/input/LimitOptions.h"
#include "cli/input/MachineReading.h"
#include "cli/input/MistakesFound.h"
#include "cli/input/ScriptFile.h"
#include "cli/input/WaiverFile.h"
#include "cli/program/CommonOptions.h"
#include "cli/program/FreedMemory.h"
#include "cli/program/Processors.h"
#include "cli/terminal/CombinationProgress.h"
#include "cli/terminal/Interrupt.h"
#include "cli/terminal/StageProgress.h"
#include "libCommon/text/PrintableText.h"
#include "libDiagnosis/FaultKindNames.h"
#include "libReport/CheckRun.h"
#include "libReport/formats/NagiosStatus.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* CHECK_FOOTER =
    "Exit status: 0 the machine holds what the script asks for; 1 it does not;\n"
    "2 the script has mistakes (\"lint\" explains them), or a file cannot be read, parsed\n"
    "or written; 3 undetermined: the script asks for nothing, a pattern took too much\n"
    "work, there are too many alternatives, or the machine could not be read where it\n"
    "matters; 4 internal error. With nagios: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory check golden.xml\n"
    "  vrx-inventory check golden.xml --state machine.xml --format json -o out.json\n"
    "  vrx-inventory check golden.xml --output junit:out.xml --output json:out.json\n"
    "  vrx-inventory check golden.xml --format nagios --warning-kinds moved\n"
    "  vrx-inventory check golden.xml --annotated annotated.xml\n"
    "  vrx-inventory check golden.xml --state machine.xml --explain dimm:A1";

constexpr unsigned MOST_THREADS = 1024;

struct CheckOptions : CommonOptions {
    std::string scriptPath;
    std::string annotatedPath;
    std::string explained;  ///< which element
    bool isVerbose = false;
    std::string waiversPath;
    bool hasNoUnsatisfiedTips = false;
    std::string assignment = "auto";
    std::vector<std::string> warningKinds;
    unsigned threads = processors();
    SearchLimits limits;

    bool writes(std::string_view name) const { return std::ranges::count(writtenFormats(), name) > 0; }
};

Inventory::Assignment assignmentOf(const CheckOptions& options) noexcept {
    if (options.isPlain || options.assignment == "greedy") {
        return Inventory::Assignment::Greedy;
    }
    return options.assignment == "exact" ? Inventory::Assignment::Exact : Inventory::Assignment::Auto;
}

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

ExitStatus monitoringStatus(NagiosStatus status) noexcept {
    switch (status) {
        case NagiosStatus::Ok: return ExitStatus::Success;
        case NagiosStatus::Warning: return ExitStatus::NotPassed;
        case NagiosStatus::Critical: return ExitStatus::BadInput;
        case NagiosStatus::Unknown: break;
    }
    return ExitStatus::Undetermined;
}

ExitStatus statusOf(const CheckOptions& options, const CheckReport& report) noexcept {
    if (options.isForMonitoring()) {
        return monitoringStatus(nagiosStatus(report));
    }
    switch (report.verdict) {
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

/// What somebody wants to read beside the faults.
void addDetails(const CheckOptions& options, CheckWorld& world) {
    const Inventory& inventory = world.run.inventory();
    if (options.isVerbose) {
        world.report.counts = typeCounts(inventory);
    }
    if (options.explained.empty()) {
        return;
    }
    world.report.story = elementStory(inventory, world.machine, options.explained);
    if (!world.report.story) {
        throw CommandFailure(ExitStatus::BadInput,
                             "--explain: " + inputName(options.scriptPath) + " has no device element at \"" +
                                 options.explained +
                                 "\"; expected ROW:COLUMN of one, or the guid or a locator of a device");
    }
}

/// What only the command knows of the check.
void fillIn(const CheckOptions& options, CheckWorld& world) {
    world.report.started = world.started;
    world.report.script = options.scriptPath;
    if (!options.statePath.empty()) {
        world.report.state = options.statePath;
    }
    for (const std::string& kind : options.warningKinds) {
        world.report.warningKinds.push_back(*faultKindNamed(kind));
    }
    world.report.showsAnnotatedScript = options.isPlain || options.annotatedPath == "-";
}

bool needsElements(const CheckOptions& options) {
    return std::ranges::any_of(options.writtenFormats(), [](const std::string& format) {
        return writerNamed(checkWriters(), format)->isDetailed;
    });
}

void run(const CheckOptions& options, const Session& session, CheckWorld& world) {
    const auto start = session.console.now();
    if (options.scriptPath == "-" && options.statePath == "-") {
        throw CommandFailure(ExitStatus::BadInput, "the script and the machine cannot both come from standard input");
    }
    if (options.annotatedPath == "-" && !options.writes("json")) {
        throw CommandFailure(ExitStatus::BadInput,
                             "--annotated - puts the script into a JSON result, and there is none; "
                             "name a file, or add --format json");
    }
    SearchLimits limits = options.limits;
    limits.waitsForEver = options.isPlain;
    Inventory& inventory = world.run.inventory();
    inventory.setEnableUnsatisfiedDeviceTips(!options.hasNoUnsatisfiedTips);
    inventory.setAssignment(assignmentOf(options));
    inventory.setThreads(options.threads);
    const std::vector<Waiver> waivers = loadWaivers(options.waiversPath);
    MachineReading reading(options, options.threads, world.machine, session);
    loadScript({options.scriptPath, options.isPlain, options.threads}, world.run, session);
    const ImportReport import = reading.finish();
    {
        CombinationProgress progress(session.console);
        std::optional<Interrupt> interrupt;
        std::optional<StageProgress> stage(std::in_place, session.console, "checking");
        inventory.setProgress([&](const RunProgress& state) {
            if (state.combinations > 1 && !interrupt) {
                stage.reset();
                interrupt.emplace();
            }
            progress.show(state);
            const auto taken = limits.seconds > 0 ? session.console.now() - start : std::chrono::nanoseconds(0);
            return mayGoOn(limits, state, taken) && !(interrupt && interrupt->isAsked());
        });
        world.report = world.run.run({&import, options.isPlain, options.waiversPath.empty() ? nullptr : &waivers,
                                      world.started, needsElements(options)});
        inventory.setProgress({});
    }
    addDetails(options, world);
    world.report.duration = session.console.now() - start;
}

std::string linesOf(const CommandFailure& failure) {
    std::string text;
    for (const std::string& line : failure.lines()) {
        text += printable(std::string_view(line)) + "\n";
    }
    return text;
}

/// The end of a check that did not come to run. Programs that asked for a report get one that says why.
CommandResult unrun(const CheckOptions& options, const Session& session, CheckWorld& world,
                    const CommandFailure& failure) {
    fillIn(options, world);
    const ExitStatus status = options.isForMonitoring() ? statusOf(options, world.report) : failure.status();
    CommandResult result{status, {}, {}, failure.lines()};
    if (options.hasMainResult() && options.format != "text") {
        result.text = options.written(world.report, checkWriters(), session);
    }
    for (const ExtraResult& extra : options.extraResults()) {
        const auto* const writer = writerNamed(checkWriters(), extra.format);
        result.files.push_back(
            {extra.path, extra.format == "text" ? linesOf(failure) : writer->write(world.report, TextFormat{})});
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
    takeMemoryInLargeSteps();
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
    CommandResult result{statusOf(options, world.report), {}, whyUndetermined(world.report)};
    options.addWritten(world.report, checkWriters(), session, result);
    if (!options.annotatedPath.empty() && options.annotatedPath != "-") {
        result.files.push_back({options.annotatedPath, annotatedText(world.report)});
    }
    return result;
}

std::string kindProblem(const std::string& name) {
    std::vector<std::string> names;
    for (const FaultKind kind : allFaultKinds()) {
        names.emplace_back(nameOf(kind));
    }
    return choiceProblem(name, names);
}

}  // namespace

void addCheckCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *parent.add_subcommand("check", "Check a machine against an inventory script");
    options->addInput(command, "SCRIPT", options->scriptPath, "The inventory script, - for standard input").required();
    options->addState(command);
    options->addFormat(command, checkWriters());
    options->addOutputs(command);
    options->addOutput(command, "--annotated", options->annotatedPath, "File for the script with the findings in it");
    command.add_option("--warning-kinds", options->warningKinds, "Faults of these kinds are a warning to nagios only")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::Validator(kindProblem, ""))
        ->type_name("KIND[,KIND]");
    command.add_flag("--no-unsatisfied-tips", options->hasNoUnsatisfiedTips,
                     "Leave out the error that says that a device is not satisfied");
    command.add_flag("--stable", options->isStable, "Leave times and dates out of the text, to compare reports");
    command.add_flag("--verbose", options->isVerbose, "Say as well what is there as it should be, by type");
    command
        .add_option("--explain", options->explained,
                    "Tell all about one device element: which devices were tried, what each failed, who has which")
        ->type_name("PLACE");
    command
        .add_option("--threads", options->threads,
                    "How many processors may work at once (default all); 1 does one thing after the other")
        ->check(CLI::Range(1U, MOST_THREADS))
        ->type_name("N");
    CLI::Option& waivers =
        options->addInput(command, "--waivers", options->waiversPath, "Faults that somebody has decided to live with");
    addLimits(command, options->limits);
    CLI::Option& assignment = allowOnly(
        *command.add_option("--assignment", options->assignment,
                            "How devices are dealt out that several elements would take: greedily, exactly, or, "
                            "which is the default, exactly where the greedy way fails"),
        {"auto", "greedy", "exact"});
    options->addPlain(
        command, "mistakes are passed over, what is not known counts as absent, and devices are dealt out greedily");
    waivers.excludes("--plain");
    assignment.excludes("--plain");
    options->addLogging(command);
    command.footer(CHECK_FOOTER);
    setAction(command, session, options, [options, &session] { return check(*options, session); });
}

}  // namespace vrx::cli
