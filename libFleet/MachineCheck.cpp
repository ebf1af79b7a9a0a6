#include "libFleet/MachineCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <tuple>

#include "libCommon/error/Exception.h"
#include "libCommon/error/StructuredException.h"
#include "libFleet/results/ResultLine.h"
#include "libMachine/MachineImport.h"
#include "libReport/text/ImportNotices.h"

namespace vrx {

namespace {

using Clock = std::chrono::steady_clock;
using Failure = ImportReport::Failure;

std::string placed(const ImportReport& report, const std::string& reason) {
    return report.row == 0 ? reason : fmt::format("{}:{}: {}", report.row, report.column, reason);
}

/// Why there is no machine, in one line.
std::string problemOf(const ImportResult& result) {
    const ImportReport& report = result.report;
    if (report.failure == Failure::Unreadable) {
        return report.reason.toUtf8();
    }
    if (report.failure == Failure::Malformed && !report.reason.isEmpty()) {
        return placed(report, report.reason.toUtf8());
    }
    if (!result.isUtf8) {
        return "this is not UTF-8";
    }
    return result.format == RecordingFormat::Unknown
               ? "this is no recording of a machine"
               : fmt::format("no devices are in it ({})", formatTitle(result.format));
}

/// What an import tells of beside devices.
std::vector<std::string> notesOf(const ImportResult& result) {
    std::vector<std::string> notes;
    for (const ImportDamage& damage : result.damage) {
        notes.push_back(damageText(damage));
    }
    for (std::string& notice : importNotices(result.report)) {
        notes.push_back(std::move(notice));
    }
    for (const String& line : result.report.errorLines()) {
        notes.push_back(line.toUtf8());
    }
    return notes;
}

/// Why what can be read of the recording is none, though it could be read as one; empty for what cannot be read, which
/// tells better itself what it is.
std::string refusal(const FleetRecording& recording, const FleetOptions& options) {
    if (options.refuse == nullptr) {
        return {};
    }
    if (recording.path.empty()) {
        return options.refuse(std::string_view(recording.bytes).substr(0, RECOGNITION_SIZE));
    }
    std::error_code failure;
    if (!std::filesystem::is_regular_file(recording.path, failure)) {
        return {};
    }
    std::ifstream file(recording.path, std::ios::binary);
    if (!file) {
        return {};
    }
    std::string start(RECOGNITION_SIZE, '\0');
    file.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(file.gcount()));
    return options.refuse(start);
}

/// Names of files need not be texts; those that are none the library has no way to name.
ImportResult import(const FleetRecording& recording, StateManager& machine) {
    if (recording.path.empty()) {
        return importMachine(recording.bytes, machine);
    }
    Utf8Damage damage;
    String::UTF8Decode(recording.path, &damage);
    if (damage.count == 0) {
        return importMachineFile(recording.path, machine);
    }
    std::ostringstream bytes;
    bytes << std::ifstream(recording.path, std::ios::binary).rdbuf();
    return importMachine(bytes.str(), machine);
}

/// What a recording's result is made of beside the result itself.
struct Checked {
    FleetResult result;
    std::optional<CheckReport> report;
    std::vector<std::string> notes;
};

bool isStopped(const FleetOptions& options) { return options.isStopped != nullptr && *options.isStopped; }

CheckReport reportOf(const FleetScript& script, StateManager& machine, const ImportReport& import,
                     const FleetOptions& options, WantedDevices& asked, Clock::time_point start) {
    CheckRun run(machine);
    run.inventory().loadInventoryScript(*script.loaded);
    run.inventory().setAssignment(options.isPlain ? Inventory::Assignment::Greedy : options.assignment);
    SearchLimits limits = options.limits;
    limits.waitsForEver = options.isPlain;
    run.inventory().setProgress(
        [&](const RunProgress& state) { return !isStopped(options) && mayGoOn(limits, state, Clock::now() - start); });
    CheckReport report = run.run({&import, options.isPlain, options.waivers, options.started, false, false, &asked});
    report.script = script.path;
    report.annotatedScript = nullptr;  // goes with the run
    return report;
}

/// Whether the first says more about the machine: what nobody can tell may be met, and of scripts that are not met the
/// one with the fewest faults is likeliest to be meant.
bool isNearer(const CheckReport& one, const CheckReport& other) {
    const auto rank = [](const CheckReport& report) {
        const bool isOther =
            std::ranges::any_of(report.faults, [](const Fault& fault) { return fault.isOfOtherMachine; });
        return std::tuple(report.verdict == Verdict::Failed, isOther, report.faults.size());
    };
    return rank(one) < rank(other);
}

CheckReport bestReport(const FleetScripts& scripts, StateManager& machine, const ImportReport& import,
                       const FleetOptions& options, FleetWanted& asked) {
    const Clock::time_point start = Clock::now();
    asked.resize(scripts.size());
    CheckReport best = reportOf(scripts.front(), machine, import, options, asked.front(), start);
    for (std::size_t i = 1; i < scripts.size() && best.verdict != Verdict::Passed; ++i) {
        CheckReport report = reportOf(scripts[i], machine, import, options, asked[i], start);
        if (report.verdict == Verdict::Passed || isNearer(report, best)) {
            best = std::move(report);
        }
    }
    return best;
}

Checked check(const FleetRecording& recording, const FleetScripts& scripts, const FleetOptions& options,
              FleetWanted& asked) {
    const std::string other = refusal(recording, options);
    if (!other.empty()) {
        return {unreadableResult(recording.name, other), std::nullopt, {}};
    }
    StateManager machine;
    const ImportResult imported = import(recording, machine);
    if (!imported.isImported()) {
        return {unreadableResult(recording.name, problemOf(imported)), std::nullopt, notesOf(imported)};
    }
    Checked checked;
    checked.report = bestReport(scripts, machine, imported.report, options, asked);
    checked.result = fleetResult(recording.name, *checked.report);
    checked.result.isCutShort = isStopped(options) && checked.report->verdict == Verdict::Undecided;
    checked.notes = notesOf(imported);
    return checked;
}

Checked internalError(const FleetRecording& recording, const std::string& what) {
    Checked checked{unreadableResult(recording.name, "internal error: " + what), std::nullopt, {}};
    checked.result.verdict = FleetVerdict::Undetermined;
    checked.result.isInternalError = true;
    return checked;
}

/// A thread of the pool is to its recording what `main` is to a program.
Checked guardedCheck(const FleetRecording& recording, const FleetScripts& scripts, const FleetOptions& options,
                     FleetWanted& asked) {
    try {
        return check(recording, scripts, options, asked);
    } catch (const StructuredException& broken) {
        return internalError(recording, broken.text().toUtf8());
    } catch (const Exception& unexpected) {
        return internalError(recording, unexpected.text().toUtf8());
    } catch (const std::exception& unexpected) {
        return internalError(recording, unexpected.what());
    }
}

}  // namespace

FleetResult checkRecording(const FleetRecording& recording, const FleetScripts& scripts, const FleetOptions& options,
                           FleetWanted& asked) {
    Checked checked = recording.problem.empty()
                          ? guardedCheck(recording, scripts, options, asked)
                          : Checked{unreadableResult(recording.name, recording.problem), std::nullopt, {}};
    FleetResult& result = checked.result;
    result.time = options.started.toIso8601().toUtf8();
    result.line = resultLine(result, {checked.report ? &*checked.report : nullptr, checked.notes});
    return std::move(result);
}

}  // namespace vrx
