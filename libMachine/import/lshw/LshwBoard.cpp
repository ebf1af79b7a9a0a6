/// System, board, chassis, firmware and power. lshw writes the SKU in parentheses behind the product, in old versions
/// the firmware's date behind its version, and a power supply's watts as if they were milliwatt-hours.

#include <fmt/format.h>

#include <algorithm>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"
#include "libMachine/smbios/SmbiosNames.h"

namespace vrx {

namespace {

/// lshw's words for types of chassis, by their numbers in SMBIOS.
constexpr std::string_view CHASSIS_WORDS[] = {"",
                                              "",
                                              "",
                                              "desktop",
                                              "low-profile",
                                              "pizzabox",
                                              "mini-tower",
                                              "tower",
                                              "portable",
                                              "laptop",
                                              "notebook",
                                              "handheld",
                                              "docking",
                                              "all-in-one",
                                              "sub-notebook",
                                              "space-saving",
                                              "lunchbox",
                                              "server",
                                              "expansion",
                                              "sub",
                                              "bus-expansion",
                                              "peripheral",
                                              "raid",
                                              "rackmount",
                                              "sealed",
                                              "multi-system"};

void takeBehind(std::string& text, const std::string& tail) {
    if (text.ends_with(tail)) {
        text.resize(text.size() - tail.size());
    }
}

void addChassis(std::string_view word, SmbiosFacts& facts) {
    const auto* const at = std::find(std::begin(CHASSIS_WORDS), std::end(CHASSIS_WORDS), word);
    if (!word.empty() && at != std::end(CHASSIS_WORDS)) {
        ChassisFacts chassis;
        chassis.type = chassisTypeName(static_cast<unsigned>(at - std::begin(CHASSIS_WORDS)));
        facts.chassis.push_back(std::move(chassis));
    }
}

BoardFacts boardOf(const LshwNode& node) {
    BoardFacts board;
    board.place.handle = node.smbiosHandle().value_or(0);
    board.vendor = lshwText(node.vendor);
    board.model = lshwText(node.product);
    board.version = lshwText(node.version);
    board.serialNumber = lshwText(node.serial);
    board.location = lshwText(node.slot);
    return board;
}

BiosFacts biosOf(const LshwNode& node) {
    BiosFacts bios;
    bios.vendor = lshwText(node.vendor);
    bios.version = lshwText(node.version);
    bios.releaseDate = lshwText(node.date);
    const std::size_t bracket = bios.version.rfind(" (");
    const bool hasDate =
        bracket != std::string::npos && bios.version.ends_with(')') &&
        std::count(bios.version.begin() + static_cast<std::ptrdiff_t>(bracket), bios.version.end(), '/') == 2;
    if (hasDate && bios.releaseDate.empty()) {
        bios.releaseDate = bios.version.substr(bracket + 2, bios.version.size() - bracket - 3);
        bios.version.resize(bracket);
    }
    bios.isVirtualMachine = node.can("virtualmachine");
    return bios;
}

PortableBatteryFacts batteryOf(const LshwNode& node, unsigned instance) {
    PortableBatteryFacts battery;
    battery.place = {node.smbiosHandle().value_or(0), instance, smbiosEntry(22, instance)};
    battery.location = lshwText(node.slot);
    battery.vendor = lshwText(node.vendor);
    battery.serialNumber = lshwText(node.serial);
    battery.name = lshwText(node.product);
    battery.designCapacity = static_cast<unsigned>(node.capacity);
    std::string voltage(node.setting("voltage"));
    std::replace(voltage.begin(), voltage.end(), ',', '.');  // as some languages write it
    battery.designVoltage = leadingNumber(voltage);
    return battery;
}

PowerSupplyFacts powerSupplyOf(const LshwNode& node, unsigned instance) {
    static constexpr std::uint64_t UNKNOWN_POWER = 0x8000;
    PowerSupplyFacts supply;
    supply.place = {node.smbiosHandle().value_or(0), instance, smbiosEntry(39, instance)};
    supply.location = lshwText(node.slot);
    supply.name = lshwText(node.description);
    supply.vendor = lshwText(node.vendor);
    supply.serialNumber = lshwText(node.serial);
    supply.partNumber = lshwText(node.product);
    supply.revision = lshwText(node.version);
    supply.maxPower = node.capacity < UNKNOWN_POWER ? static_cast<unsigned>(node.capacity) : 0;
    return supply;
}

bool isRoot(const LshwNode& node) { return node.kind == "system" && node.parent == LshwNode::NONE; }

}  // namespace

SystemFacts lshwSystem(const LshwNode& node) {
    SystemFacts system;
    system.vendor = lshwText(node.vendor);
    system.model = node.product;
    system.sku = node.setting("sku");
    takeBehind(system.model, fmt::format(" ({})", system.sku));
    system.model = lshwText(system.model);
    system.sku = lshwText(system.sku);
    system.version = lshwText(node.version);
    system.serialNumber = lshwText(node.serial);
    system.family = lshwText(node.setting("family"));
    system.uuid = smallLetters(lshwText(node.setting("uuid")));
    return system;
}

SmbiosFacts lshwSmbiosFacts(const LshwTree& tree, DamageList& damage) {
    SmbiosFacts facts;
    facts.isEmpty = false;
    unsigned supplies = 0;
    for (const LshwNode& node : tree.nodes) {
        if (isRoot(node) && !facts.system) {
            facts.system = lshwSystem(node);
            addChassis(node.setting("chassis"), facts);
        } else if (node.kind == "bus" && node.isCalled("core") && node.busInfo.empty()) {
            facts.boards.push_back(boardOf(node));
        } else if (node.kind == "memory" && node.isCalled("firmware") && !facts.bios) {
            facts.bios = biosOf(node);
        } else if (node.kind == "power" && node.isCalled("battery")) {
            facts.batteries.push_back(batteryOf(node, static_cast<unsigned>(facts.batteries.size())));
        } else if (node.kind == "power" && node.busInfo.empty()) {
            facts.powerSupplies.push_back(powerSupplyOf(node, supplies++));
        }
    }
    facts.processors = lshwProcessors(tree);
    facts.caches = lshwCaches(tree, damage);
    facts.memory = lshwMemory(tree, damage);
    return facts;
}

}  // namespace vrx
