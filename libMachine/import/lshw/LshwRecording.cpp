/// An lshw recording is a tree of nodes in the order in which lshw found things; several of its sources describe the
/// same thing from different sides. What counts is where a node sits.
///
/// First, what came from SMBIOS (system, board, firmware, processors, caches, memory, power) becomes the same facts
/// that the SMBIOS table gives, and the same devices are made of them. Second, a node with an address on the PCI or USB
/// bus is a device there. Third come disks, which need to know their controllers, with their partitions, and network
/// interfaces without a place.
///
/// What has neither an address nor a structure of SMBIOS stands for no hardware of its own (frame buffers, host
/// adapters that are emulated, buttons, PnP entries) and is passed over. Descriptions are in the language of whoever
/// ran lshw, so they decide only where class, name, capabilities and addresses do not.

#include <algorithm>

#include "libMachine/devices/FirmwareDevices.h"
#include "libMachine/devices/MachineDevices.h"
#include "libMachine/devices/MemoryDevices.h"
#include "libMachine/devices/ProcessorDevices.h"
#include "libMachine/import/Converters.h"
#include "libMachine/import/lshw/LshwConversion.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

/// The bridge to a bus of which everything on that bus hangs in lshw's tree, though it is a function beside the others.
bool isHostBridge(const LshwNode& node) {
    return node.kind == "bridge" && node.handle.starts_with("PCIBUS:") && !node.can("pci");
}

void addFunctions(LshwConversion& conversion) {
    for (std::size_t place = 0; place < conversion.tree.nodes.size(); ++place) {
        std::optional<std::size_t> device = addLshwPciFunction(conversion, place);
        if (device && isHostBridge(conversion.node(place))) {
            device.reset();
        } else if (!device) {
            device = addLshwUsbDevice(conversion, place);
        }
        conversion.deviceOf[place] = device.value_or(conversion.deviceAbove(place));
    }
}

bool hasBusDevice(const LshwNode& node) { return node.busInfo.starts_with("pci@") || node.busInfo.starts_with("usb@"); }

void addDisksAndInterfaces(LshwConversion& conversion) {
    for (std::size_t place = 0; place < conversion.tree.nodes.size(); ++place) {
        if (hasBusDevice(conversion.node(place))) {
            continue;
        }
        std::optional<std::size_t> device = addLshwDisk(conversion, place);
        if (!device) {
            device = addLshwVolume(conversion, place);
        }
        if (!device) {
            device = addLshwInterface(conversion, place);
        }
        conversion.deviceOf[place] = device.value_or(conversion.deviceAbove(place));
    }
}

void addMachine(const SmbiosFacts& facts, Recording& recording) {
    recording.add(systemDevice(facts.system.value_or(SystemFacts())));
    if (!facts.chassis.empty()) {
        addChassis(recording, facts.chassis.front());
    }
    if (!facts.boards.empty()) {
        addBoard(recording, facts.boards.front());
    }
    if (facts.bios) {
        addBios(recording, *facts.bios);
    }
    addProcessors(recording, facts);
    addEmptySockets(recording, facts);
    if (!facts.memory.modules.empty()) {
        addMemory(recording, 0, facts.memory);
    }
    addPowerSupplies(recording, facts);
    addBatteries(recording, facts);
}

/// The sum of all modules is not known when there may be more of them.
void dropInstalledSize(Recording& recording) {
    for (std::size_t place = 0; place < recording.size(); ++place) {
        std::erase_if(recording.at(place).properties,
                      [](const PropertyRecord& property) { return property.key == property::INSTALLED_SIZE; });
    }
}

bool lacksSize(const MemoryModuleFacts& module) { return module.isInstalled && module.size == 0; }

/// Without modules the size of all memory is all that is known of it. With modules of which one does not tell its size
/// it stands in for their sum.
void addMemorySize(const LshwTree& tree, const SmbiosFacts& facts, Recording& recording) {
    const std::uint64_t size = lshwMemorySize(tree);
    if (facts.memory.modules.empty() && size > 0) {
        const std::size_t memory = addMemory(recording, 0, {});
        recording.at(memory).size(property::SIZE, size);
    }
    if (std::any_of(facts.memory.modules.begin(), facts.memory.modules.end(), lacksSize)) {
        dropInstalledSize(recording);
        for (std::size_t place = 0; place < recording.size(); ++place) {
            if (recording.at(place).type == u"Memory") {
                recording.at(place).size(property::INSTALLED_SIZE, size);
            }
        }
    }
}

void convert(const LshwTree& tree, Recording& recording, DamageList& damage) {
    if (tree.nodes.empty()) {
        return;
    }
    const SmbiosFacts facts = lshwSmbiosFacts(tree, damage);
    addMachine(facts, recording);
    addMemorySize(tree, facts, recording);
    if (tree.openAtEnd != LshwNode::NONE) {
        dropInstalledSize(recording);
    }
    LshwConversion conversion(tree, recording);
    addFunctions(conversion);
    findHostController(conversion);
    addDisksAndInterfaces(conversion);
}

}  // namespace

std::string_view lshwText(std::string_view text) noexcept { return text == "[REMOVED]" ? std::string_view() : text; }

bool lshwTells(std::string_view text) { return !cleanName(lshwText(text)).empty(); }

void convertLshwXml(std::string_view text, Recording& recording, DamageList& damage) {
    LshwTree tree;
    readLshwXml(text, tree, damage);
    convert(tree, recording, damage);
}

void convertLshwJson(std::string_view text, Recording& recording, DamageList& damage) {
    LshwTree tree;
    readLshwJson(text, tree, damage);
    convert(tree, recording, damage);
}

}  // namespace vrx
