/// A recording is made in two steps. The sources run one after another and put device records into a Recording, where a
/// later source may still add to what an earlier one found (a network interface to its PCI function). Then the records
/// become devices of the store, the root first and each parent directly followed by what is below it.

#include "host/collect/MachineCollector.h"

#include <iterator>

#include "host/collect/CollectContext.h"
#include "libSystemState/StateManager.h"

namespace vrx::host {

namespace {

constexpr std::size_t LARGEST_CPUINFO = std::size_t{16} * 1024 * 1024;
constexpr void (*SOURCES[])(CollectContext&) = {collectSystem, collectBoard, collectProcessors, collectMemory,
                                                collectPci,    collectUsb,   collectStorage,    collectNetwork};

std::vector<char> bufferOf(const std::string& bytes) { return {bytes.begin(), bytes.end()}; }

void readSmbios(CollectContext& context) {
    static const std::string PATH = "/sys/firmware/dmi/tables/DMI";
    RootFolder::Access access{};
    context.smbios = SmbiosTable(bufferOf(context.root.bytes(PATH, SmbiosTable::LARGEST, &access)));
    context.noteAccess(PATH, access, "memory modules and slots, processor sockets");
    if (context.smbios.isDamaged()) {
        context.note(PATH, "the table is damaged", "what comes behind its last complete structure");
    }
}

void readCpuInfo(CollectContext& context) {
    static const std::string PATH = "/proc/cpuinfo";
    RootFolder::Access access{};
    context.cpuInfo = CpuInfo(bufferOf(context.root.bytes(PATH, LARGEST_CPUINFO, &access)));
    context.noteAccess(PATH, access, "what the processors are");
}

/// The root device is always recorded; alone and without properties it says nothing.
bool saysSomething(const Recording& recording) { return recording.size() > 1 || !recording.at(0).properties.empty(); }

}  // namespace

bool collectMachine(StateManager& store, const CollectOptions& options, Array<String>& notes) {
    VRX_ASSERT(store.deviceCount() == 0);
    const RootFolder root(options.root);
    CollectContext context(root, notes);
    if (root.list("/sys").empty() && root.list("/proc").empty()) {
        context.note(root.folder(), "neither /sys nor /proc can be read in this folder", "everything");
        return false;
    }
    readSmbios(context);
    readCpuInfo(context);
    for (const auto source : SOURCES) {
        source(context);
    }
    if (!saysSomething(context.recording)) {
        context.note(root.folder(), "no source says anything about the machine", "everything");
        return false;
    }
    context.recording.storeIn(store);
    return true;
}

}  // namespace vrx::host
