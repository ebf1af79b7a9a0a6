#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "libMachine/MachineCollector.h"
#include "libMachine/linux/CpuInfo.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/Recording.h"
#include "libMachine/smbios/SmbiosFacts.h"

namespace vrx {

/// What a recording lacks for something that could not be read.
struct LeftOut {
    LeftOut(const char* leftOut) : words(leftOut) {}             // NOLINT: words alone are for people alone
    LeftOut(std::string leftOut) : words(std::move(leftOut)) {}  // NOLINT
    LeftOut(std::string leftOut, std::vector<StringView> ofTypes, std::vector<StringView> ofKeys = {})
        : words(std::move(leftOut)), types(std::move(ofTypes)), keys(std::move(ofKeys)) {}

    std::string words;
    std::vector<StringView> types;  ///< of devices that may be there all the same
    std::vector<StringView> keys;   ///< when there are any: only these properties of them are missing
};

/// What the sources of one recording share: where they read, what several of them need, and where they put what they
/// found.
struct CollectContext {
    CollectContext(const RootFolder& machine, std::vector<CollectNote>& collectNotes)
        : root(machine), notes(collectNotes) {}

    const RootFolder& root;
    SmbiosFacts smbios;
    CpuInfo cpuInfo;
    Recording recording;
    std::vector<CollectNote>& notes;

    /// Notes that something could not be read. With types the recording carries that as well.
    void note(std::string_view path, CollectNote::Reason reason, std::string_view detail, const LeftOut& lost);

    /// The same for the reason that `access` stands for; does nothing when access was granted.
    void noteAccess(std::string_view path, RootFolder::Access access, const LeftOut& lost);
};

/// The sources, in the order in which they run. Each adds its devices to the recording, or properties to devices that
/// are there, and notes what it could not read.
void collectSystem(CollectContext& context);
void collectBoard(CollectContext& context);
void collectProcessors(CollectContext& context);
void collectMemory(CollectContext& context);
void collectPci(CollectContext& context);
void collectUsb(CollectContext& context);
void collectStorage(CollectContext& context);
void collectNetwork(CollectContext& context);
void collectFirmwareDevices(CollectContext& context);
void collectPartitions(CollectContext& context);
void collectStorageControllers(CollectContext& context);
void collectGraphics(CollectContext& context);
void collectSound(CollectContext& context);
void collectCameras(CollectContext& context);
void collectInput(CollectContext& context);
void collectPower(CollectContext& context);
void collectSensors(CollectContext& context);
void collectSecurity(CollectContext& context);
void collectPorts(CollectContext& context);
void collectClocks(CollectContext& context);
void collectOperatingSystem(CollectContext& context);

}  // namespace vrx
