#include "cli/commands/collect/CollectInto.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "cli/files/RecordingName.h"
#include "libDiagnosis/MachineChanges.h"
#include "libMachine/MachineImport.h"
#include "libReport/MachineIdentity.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/UnreadSource.h"

namespace vrx::cli {

namespace {

namespace fs = std::filesystem;

std::string machineWord(const StateManager& machine) {
    const MachineIdentity identity = machineIdentity(machine);
    const String& name = identity.serialNumber.isEmpty() ? identity.hostName : identity.serialNumber;
    return name.isEmpty() ? NAMELESS : fileWord(name);
}

/// Of the newest recording of that machine; its machine is empty without one.
RecordingName lastOf(const fs::path& folder, const std::string& machine) {
    RecordingName last;
    std::error_code failure;
    for (fs::directory_iterator at(folder, failure); !failure && at != fs::directory_iterator();
         at.increment(failure)) {
        RecordingName name = parseRecordingName(at->path().filename().string());
        if (name.machine == machine && name > last) {
            last = std::move(name);
        }
    }
    return last;
}

/// Whether a recording of the machine would say what that one says.
bool isAsBefore(const fs::path& last, const StateManager& machine) {
    StateManager before;
    const ImportResult result = importMachineFile(last.string(), before, {});
    if (!result.isImported() || before.unread() != machine.unread()) {
        return false;
    }
    return std::ranges::all_of(machineChanges(before, machine, false),
                               [](const DeviceChange& change) { return change.isOnlyRenamed(); });
}

}  // namespace

CommandResult recordInto(const std::string& folder, const StateManager& machine, const std::string& recording,
                         const Session& session) {
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure) {
        throw CommandFailure(ExitStatus::BadInput, fmt::format("{}: {}", inputName(folder), failure.message()));
    }
    RecordingName name = recordingName(machineWord(machine), session.console.time());
    const RecordingName last = lastOf(folder, name.machine);
    const fs::path lastPath = fs::path(folder) / last.text();
    if (!last.machine.empty() && isAsBefore(lastPath, machine)) {
        return {ExitStatus::Success, std::nullopt,
                "nothing has changed since " + inputName(lastPath.string()) + ", so nothing is recorded"};
    }
    if (last.time == name.time) {
        name.number = last.number + 1;
    }
    const fs::path path = fs::path(folder) / name.text();
    CommandResult result{ExitStatus::Success, std::nullopt, "new recording: " + inputName(path.string())};
    result.files.push_back({path.string(), recording});
    return result;
}

}  // namespace vrx::cli
