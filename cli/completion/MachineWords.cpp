#include "cli/completion/MachineWords.h"

#include <algorithm>
#include <unordered_set>

#include "cli/input/MachineSource.h"
#include "cli/program/ExitStatus.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/capabilities/CapabilityNames.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx::cli {

namespace {

/// Null when there is none: what is not typed to its end may be anything, and standard input belongs to the shell.
StateManager* machineAt(const std::string& statePath, Session& session) {
    StateManager& store = session.make<StateManager>();
    try {
        if (statePath == "-") {
            return nullptr;
        }
        loadMachine(statePath, store, session);
    } catch (const CommandFailure&) {
        return nullptr;
    }
    return &store;
}

bool isOneLine(const std::string& word) {
    return std::ranges::none_of(word, [](unsigned char each) { return each < ' ' || each == 0x7F; });
}

}  // namespace

std::vector<Candidate> typeWords(const std::string& statePath, Session& session) {
    const StateManager* const store = machineAt(statePath, session);
    std::vector<Candidate> words;
    for (const StringView name : capabilityNames()) {
        const std::size_t count = store == nullptr ? 0 : store->devicesCapableOf(CapabilityImp(name)).size();
        if (store == nullptr || count > 0) {
            words.push_back({String(name).toUtf8(), store == nullptr ? std::string() : counted(count, "device")});
        }
    }
    return words;
}

// A guid begins as the hardware locator does, so it is offered only to those who have typed more than that.
std::vector<Candidate> deviceWords(const std::string& statePath, const std::string& beginning, Session& session) {
    const StateManager* const store = machineAt(statePath, session);
    std::vector<Candidate> words;
    if (store == nullptr) {
        return words;
    }
    std::unordered_set<std::string> seen{""};
    for (const auto& device : store->devicesCapableOf(CapabilityImp::ALL())) {
        const auto offer = [&](const String& text) {
            std::string word = text.toUtf8();
            if (word.starts_with(beginning) && isOneLine(word) && seen.insert(word).second) {
                words.push_back({std::move(word), deviceTitle(*device)});
            }
        };
        for (const String* const own : {&device->hwLocator(), &device->osLocator(), &device->name()}) {
            offer(*own);
        }
        if (beginning.find('|') != beginning.npos) {
            offer(device->guid());
        }
    }
    return words;
}

}  // namespace vrx::cli
