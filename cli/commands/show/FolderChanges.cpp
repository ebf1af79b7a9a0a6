#include "cli/commands/show/FolderChanges.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "cli/files/RecordingName.h"
#include "cli/terminal/StageProgress.h"
#include "libMachine/MachineImport.h"
#include "libReport/changes/FleetChangesReport.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

namespace fs = std::filesystem;

/// What a recording is not called: hidden files, and those that come to be.
bool isRecordingName(const std::string& name) { return !name.starts_with('.') && !name.ends_with('~'); }

/// Files and Redfish trees below the folder, by their paths in it.
std::vector<std::string> recordingsIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    fs::recursive_directory_iterator at(folder, failure);
    for (; !failure && at != fs::recursive_directory_iterator(); at.increment(failure)) {
        const bool isFolder = at->is_directory(failure);
        if (!isRecordingName(at->path().filename().string())) {
            if (isFolder) {
                at.disable_recursion_pending();
            }
        } else if (!isFolder) {
            names.push_back(fs::relative(at->path(), folder, failure).string());
        } else if (!isRecordingFolder(at->path().string())) {
            at.disable_recursion_pending();
            names.push_back(fs::relative(at->path(), folder, failure).string());
        }
    }
    if (failure) {
        throw CommandFailure(ExitStatus::BadInput, inputName(folder.string()) + ": " + failure.message());
    }
    std::ranges::sort(names);
    return names;
}

std::string problemOfImport(const ImportResult& result) {
    return result.report.reason.isEmpty() ? "holds no devices" : result.report.reason.toUtf8();
}

FleetDay dayOf(const std::string& folder, const Session& session) {
    const std::vector<std::string> all = recordingsIn(folder);
    const std::vector<std::string> names = newestRecordings(all);
    if (names.size() < all.size()) {
        session.say(fmt::format("{}: of each machine the newest recording counts; {} passed over", inputName(folder),
                                counted(all.size() - names.size(), "older one")));
    }
    const auto load = [folder](const std::string& name, StateManager& store) {
        const ErrorStreamLog::Quiet quiet(LogPriority::Error);
        const ImportResult result = importMachineFile((fs::path(folder) / name).string(), store, {});
        return result.isImported() ? std::string() : problemOfImport(result);
    };
    return {names, load};
}

}  // namespace

bool isRecordingFolder(const std::string& path) {
    std::error_code failure;
    const fs::path folder(path);
    return fs::is_directory(folder, failure) && !fs::exists(folder / "index.json", failure) &&
           !fs::exists(folder / "redfish", failure) && !fs::exists(folder / "v1", failure);
}

CommandResult showFolderChanges(const CommonOptions& options, const std::string& before, bool hasAllCategories,
                                Session& session) {
    FleetChangesReport report{inputName(before), inputName(options.statePath), {}};
    {
        const StageProgress progress(session.console, "comparing", options.statePath);
        report.machines = fleetChanges(dayOf(before, session), dayOf(options.statePath, session), hasAllCategories);
    }
    const std::size_t unreadable = report.count(FleetMachine::Kind::Unreadable);
    const bool differs = report.count(FleetMachine::Kind::Equal) + unreadable < report.machines.size();
    const bool isDoubtful = unreadable > 0 || report.untoldCount() > 0;
    return {differs      ? ExitStatus::NotPassed
            : isDoubtful ? ExitStatus::Undetermined
                         : ExitStatus::Success,
            options.written(report, fleetChangesWriters(), session)};
}

}  // namespace vrx::cli
