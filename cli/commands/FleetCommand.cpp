#include <fmt/format.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/FleetOutputs.h"
#include "cli/files/FileKind.h"
#include "cli/help/CommandTable.h"
#include "cli/input/LimitOptions.h"
#include "cli/input/ScriptFile.h"
#include "cli/input/WaiverFile.h"
#include "cli/program/CommonOptions.h"
#include "cli/program/FreedMemory.h"
#include "cli/program/Processors.h"
#include "cli/terminal/FleetBar.h"
#include "cli/terminal/Interrupt.h"
#include "libCommon/text/PrintableText.h"
#include "libFleet/FleetRun.h"
#include "libFleet/results/ResultFile.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* FLEET_FOOTER =
    "Recordings are files, folders with all that lies below them, and archives (tar, zip and\n"
    "others, compressed or not); - reads a list of them from standard input, one a line.\n"
    "What cannot be read is a result as well. With --merge all arguments are files of results\n"
    "(--format json) of other runs.\n"
    "\n"
    "Exit status: 0 all machines passed; 1 some failed; 2 wrong usage, or a script or file of\n"
    "results that is of no use; 3 some are undetermined or unreadable and none failed, or not\n"
    "all were checked; 4 internal error. With nagios: 0 OK, 2 CRITICAL, 3 UNKNOWN.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory fleet golden.xml machines/\n"
    "  vrx-inventory fleet golden.xml machines.tar.zst --json r.jsonl --html f.html\n"
    "  vrx-inventory fleet machines/ --any storage.xml compute.xml\n"
    "  find /srv -name '*.xml' | vrx-inventory fleet golden.xml - --csv fleet.csv\n"
    "  vrx-inventory fleet golden.xml machines/ --json r.jsonl --resume r.jsonl\n"
    "  vrx-inventory fleet --merge shard-*.jsonl --html fleet.html";

struct FleetCliOptions : CommonOptions {
    std::string first;
    std::vector<std::string> others;
    std::vector<std::string> any;
    bool isMerge = false;
    std::string waiversPath;
    std::string resumePath;
    std::string assignment = "auto";
    SearchLimits limits;
    unsigned threads = processors();

    /// All arguments but a script.
    std::vector<std::string> files() const {
        std::vector<std::string> all;
        if (!first.empty() && (isMerge || !any.empty())) {
            all.push_back(first);
        }
        all.insert(all.end(), others.begin(), others.end());
        return all;
    }
    std::vector<std::string> scripts() const { return any.empty() ? std::vector<std::string>{first} : any; }
};

[[noreturn]] void refuse(const std::string& line) { throw CommandFailure(ExitStatus::BadInput, line); }

void refuseNonsense(const FleetCliOptions& options) {
    const std::vector<std::string> files = options.files();
    if (options.isMerge) {
        if (!options.any.empty() || !options.resumePath.empty() || !options.waiversPath.empty() || options.isPlain ||
            options.limits.combinations > 0 || options.limits.seconds > 0) {
            refuse(
                "--merge joins results that are there; it checks nothing, so it takes no other option but for results");
        }
        if (files.empty()) {
            refuse("no files of results are given");
        }
        return;
    }
    if (options.first.empty() && options.any.empty()) {
        refuse("no script is given");
    }
    if (files.empty()) {
        refuse(options.any.empty() ? "no recordings are given; name files, folders or archives, or - for a list on "
                                     "standard input"
                                   : "no recordings are given; name them before --any, or behind --");
    }
    const std::vector<std::string> scripts = options.scripts();
    if (std::ranges::count(files, "-") + std::ranges::count(scripts, "-") > 1) {
        refuse("only one of the scripts and lists can come from standard input");
    }
}

FleetScripts loadScripts(const FleetCliOptions& options, const Session& session) {
    FleetScripts scripts;
    for (const std::string& path : options.scripts()) {
        scripts.push_back({path, loadedScript({path, options.isPlain, options.threads}, session)});
    }
    return scripts;
}

/// Files in a folder of recordings that this run writes, or that an earlier one has written.
bool isResult(const FleetCliOptions& options, const std::string& path) {
    const auto isIt = [&path](const std::string& other) {
        return !other.empty() && other != "-" && areOneFile(path, other);
    };
    return isIt(options.outputPath) || isIt(options.resumePath) || isIt(options.logFile) ||
           std::ranges::any_of(options.extraResults(), [&](const ExtraResult& extra) { return isIt(extra.path); });
}

MachineList machineList(const FleetCliOptions& options) {
    MachineList machines;
    const auto isLeftOut = [&options](const std::string& path) {
        return isResult(options, path);
    };
    for (const std::string& file : options.files()) {
        if (file != "-") {
            options.refuseAsOutput(file);
            machines.add(file, isLeftOut);
            continue;
        }
        for (std::string line; std::getline(std::cin, line);) {
            if (!line.empty()) {
                machines.add(line, isLeftOut);
            }
        }
    }
    return machines;
}

/// The seconds in which the file last changed; 0 when nobody knows.
std::int64_t changeOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? static_cast<std::int64_t>(status.st_mtime) : 0;
}

void goOn(const FleetCliOptions& options, EarlierResults& earlier, MachineList& machines) {
    std::string problem;
    if (!earlier.load(options.resumePath, problem)) {
        refuse("--resume: " + problem);
    }
    std::int64_t oldest = 0;  // results from before a script or the waivers changed say nothing any more
    for (const std::string& path : options.scripts()) {
        oldest = std::max(oldest, changeOf(path));
    }
    oldest = std::max(oldest, changeOf(options.waiversPath));
    machines.setKnown([&earlier, oldest](const std::string& name, const std::string& path) {
        return earlier.holds(name, std::max(oldest, changeOf(path)));
    });
}

ExitStatus statusOf(const FleetCliOptions& options, const FleetSummary& summary) {
    if (summary.hasInternalError()) {
        return ExitStatus::InternalError;
    }
    if (summary.count(FleetVerdict::Failed) > 0) {
        return options.isForMonitoring() ? ExitStatus::BadInput : ExitStatus::NotPassed;
    }
    const bool isFine =
        summary.machines() > 0 && summary.count(FleetVerdict::Passed) == summary.machines() && !summary.wasStopped;
    return isFine ? ExitStatus::Success : ExitStatus::Undetermined;
}

/// People who have the results written for programs are told the summary all the same.
void saySummary(const FleetCliOptions& options, const FleetSummary& summary, const Session& session) {
    const std::vector<std::string> formats = options.writtenFormats();
    if (std::ranges::count(formats, "text") == 0 && !options.isForMonitoring()) {
        TextFormat layout;
        layout.isStable = options.isStable;
        std::string text;
        fleetFormatNamed("text")->make(layout)->end(summary, text);
        session.console.writeErr(text);
    }
}

CommandResult ended(const FleetCliOptions& options, FleetSummary& summary, FleetOutputs& outputs,
                    const Session& session) {
    outputs.finish(summary);
    saySummary(options, summary, session);
    return {statusOf(options, summary)};
}

CommandResult merge(const FleetCliOptions& options, const Session& session) {
    FleetSummary summary;
    FleetOutputs outputs(options, session, false, std::nullopt);
    for (const std::string& path : options.files()) {
        options.refuseAsOutput(path);
        ResultFile file(path);
        while (const std::optional<FleetResult> result = file.next()) {
            outputs.add(*result, summary.add(*result), false);
        }
        if (!file.problem().empty()) {
            refuse(file.problem());
        }
    }
    return ended(options, summary, outputs, session);
}

std::string whyNoRecording(std::string_view start) { return otherKind(start, FileKind::Recording); }

CommandResult check(const FleetCliOptions& options, const Session& session) {
    const auto start = session.console.now();
    const std::vector<Waiver> waivers = loadWaivers(options.waiversPath);
    const FleetScripts scripts = loadScripts(options, session);
    MachineList machines = machineList(options);
    EarlierResults earlier;
    std::optional<FleetOutputs::Begun> begun;
    if (!options.resumePath.empty()) {
        goOn(options, earlier, machines);
        begun = {options.resumePath, earlier.wholeSize()};
    }
    const ErrorStreamLog::QuietThreads quiet(LogPriority::Warning);
    keepFreedMemory();
    Interrupt interrupt;
    FleetOptions fleet;
    fleet.isPlain = options.isPlain;
    fleet.waivers = options.waiversPath.empty() ? nullptr : &waivers;
    fleet.started = session.console.time();
    fleet.refuse = whyNoRecording;
    fleet.threads = options.threads;
    fleet.isStopped = &interrupt.isAsked();
    fleet.assignment = options.assignment == "greedy"  ? Inventory::Assignment::Greedy
                       : options.assignment == "exact" ? Inventory::Assignment::Exact
                                                       : Inventory::Assignment::Auto;
    fleet.limits = options.limits;
    FleetSummary summary;
    FleetOutputs outputs(options, session, true, begun);
    FleetRun run(scripts, std::move(machines), fleet);
    {
        FleetBar bar(session.console);
        while (std::optional<FleetResult> result = run.next()) {
            const bool isOld = result->isKnown;
            if (isOld) {
                *result = earlier.result(result->file);
            }
            outputs.add(*result, summary.add(*result), isOld);
            if (bar.isDue()) {
                bar.show(run.progress(), summary.machines());
            }
        }
    }
    summary.wasStopped = !run.isWhole();
    summary.duration = session.console.now() - start;
    return ended(options, summary, outputs, session);
}

CommandResult fleet(const FleetCliOptions& options, const Session& session) {
    refuseNonsense(options);
    return options.isMerge ? merge(options, session) : check(options, session);
}

void addOptions(CLI::App& command, FleetCliOptions& options) {
    options.addInput(command, "SCRIPT", options.first, "The inventory script, - for standard input");
    command.add_option("MACHINE", options.others, "Recordings: files, folders, archives; - for a list of them");
    command
        .add_option("--any", options.any, "Check each machine against the first of these that it satisfies, for SCRIPT")
        ->type_name("SCRIPT...");
    command.add_flag("--merge", options.isMerge, "Join files of results of other runs; nothing is checked");
    command
        .add_option("--resume", options.resumePath,
                    "Results of a run that did not end: only what it has no result of, or what has changed, is checked")
        ->type_name("FILE");
    CLI::Option& waivers =
        options.addInput(command, "--waivers", options.waiversPath, "Faults that somebody has decided to live with");
    CLI::Option& assignment =
        allowOnly(*command.add_option("--assignment", options.assignment,
                                      "How devices are dealt out that several elements would take, as in check"),
                  {"auto", "greedy", "exact"});
    options.addPlain(
        command, "mistakes are passed over, what is not known counts as absent, and devices are dealt out greedily");
    addLimits(command, options.limits);
    waivers.excludes("--plain");
    assignment.excludes("--plain");
    command
        .add_option("-j,--threads", options.threads, "How many machines are checked at once (default all processors)")
        ->type_name("NUMBER")
        ->check(CLI::Range(1U, 1024U));
}

void addResults(CLI::App& command, FleetCliOptions& options) {
    std::vector<std::string> names;
    for (const FleetFormat& format : fleetFormats()) {
        names.emplace_back(format.name);
    }
    options.addFormat(command, names);
    options.addOutputs(command);
    options.addShortOutput(command, "json", "A line of JSON for each machine");
    options.addShortOutput(command, "html", "A page with a table of all machines");
    options.addShortOutput(command, "junit", "A suite of test results for each machine");
    options.addShortOutput(command, "csv", "A row for each machine");
    command.add_flag_callback(
        "--nagios", [&options] { options.format = "nagios"; }, "One line for a monitoring system");
    command.add_flag("--stable", options.isStable, "Leave times out of the text, to compare summaries");
}

}  // namespace

void addFleetCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<FleetCliOptions>();
    CLI::App& command =
        *parent.add_subcommand("fleet", "Check many recorded machines, or join the results of such checks");
    addOptions(command, *options);
    addResults(command, *options);
    options->addLogging(command);
    command.footer(FLEET_FOOTER);
    setAction(command, session, options, [options, &session] { return fleet(*options, session); });
}

}  // namespace vrx::cli
