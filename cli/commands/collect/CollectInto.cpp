#include "cli/commands/collect/CollectInto.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <vector>

#include "libDiagnosis/MachineChanges.h"
#include "libMachine/MachineImport.h"
#include "libReport/MachineIdentity.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/UnreadSource.h"

namespace vrx::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* SUFFIX = ".xml";
constexpr std::size_t TIME_LENGTH = 16;  // of 20261122T133326Z

/// Every character of it may stand in a file name on any system.
std::string fileWord(const String& text) {
    std::string word = text.toUtf8();
    std::ranges::replace_if(
        word, [](unsigned char each) { return std::isalnum(each) == 0 && each != '.' && each != '_'; }, '-');
    return word.starts_with('.') ? "-" + word : word;
}

std::string machineWord(const StateManager& machine) {
    const MachineIdentity identity = machineIdentity(machine);
    const String& name = identity.serialNumber.isEmpty() ? identity.hostName : identity.serialNumber;
    return name.isEmpty() ? "unknown" : fileWord(name);
}

/// "20261122T133326Z": sorts by time.
std::string timeWord(const DateTime& time) {
    std::string word = time.toIso8601().toUtf8();
    std::erase_if(word, [](char each) { return each == '-' || each == ':'; });
    return word;
}

bool isTimeWord(const std::string& word) { return word.size() == TIME_LENGTH && word[8] == 'T' && word.back() == 'Z'; }

/// The newest recording of that machine; empty without one.
fs::path lastOf(const fs::path& folder, const std::string& machine) {
    fs::path last;
    std::error_code failure;
    for (fs::directory_iterator at(folder, failure); !failure && at != fs::directory_iterator();
         at.increment(failure)) {
        const std::string stem = at->path().stem().string();
        if (at->path().extension() == SUFFIX && stem.starts_with(machine + "_") &&
            isTimeWord(stem.substr(machine.size() + 1)) && at->path() > last) {
            last = at->path();
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
    const std::string name = machineWord(machine);
    const fs::path last = lastOf(folder, name);
    if (!last.empty() && isAsBefore(last, machine)) {
        return {ExitStatus::Success, std::nullopt,
                "nothing has changed since " + inputName(last.string()) + ", so nothing is recorded"};
    }
    const fs::path path = fs::path(folder) / (name + "_" + timeWord(session.console.time()) + SUFFIX);
    CommandResult result{ExitStatus::Success, std::nullopt, "new recording: " + inputName(path.string())};
    result.files.push_back({path.string(), recording});
    return result;
}

}  // namespace vrx::cli
