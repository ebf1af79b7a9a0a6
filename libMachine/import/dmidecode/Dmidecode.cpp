/// The text becomes the same facts that the recorder reads from the firmware's table, and the same functions make
/// devices of them. What the kernel would have added (sizes of caches by core, names of PCI devices) is not in the
/// text.

#include "libMachine/devices/FirmwareDevices.h"
#include "libMachine/devices/MachineDevices.h"
#include "libMachine/devices/MemoryDevices.h"
#include "libMachine/devices/ProcessorDevices.h"
#include "libMachine/import/Converters.h"
#include "libMachine/import/dmidecode/DmidecodeFacts.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

void addMachine(Recording& recording, const SmbiosFacts& facts) {
    DeviceRecord system = systemDevice(facts.system.value_or(SystemFacts()));
    if (facts.bios && facts.bios->isVirtualMachine) {
        system.flag(property::VIRTUAL, true);
    }
    recording.add(std::move(system));
    addChassis(recording, facts.chassis.empty() ? ChassisFacts() : facts.chassis.front());
    addFurtherChassis(recording, facts);
    addBoard(recording, facts.boards.empty() ? BoardFacts() : facts.boards.front());
    addFurtherBoards(recording, facts);
    addBios(recording, facts.bios.value_or(BiosFacts()));
}

/// The sum of all modules is not known when there may be more of them.
void addAllMemory(Recording& recording, const MemoryFacts& facts, bool isWhole) {
    if (facts.arrays.empty() && facts.modules.empty()) {
        return;
    }
    const std::size_t memory = addMemory(recording, 0, facts);
    if (!isWhole) {
        std::erase_if(recording.at(memory).properties,
                      [](const PropertyRecord& property) { return property.key == property::INSTALLED_SIZE; });
    }
}

}  // namespace

bool isDmidecode(const RecordingStart& start) {
    const auto holds = [&start](std::string_view part) {
        return start.text().find(part) != std::string_view::npos;
    };
    return start.text().starts_with("# dmidecode") || holds("\n# dmidecode") ||
           (holds("Handle 0x") && holds(", DMI type "));
}

void convertDmidecode(std::string_view text, Recording& recording, DamageList& damage) {
    const DmidecodeText parsed = parseDmidecode(text, damage);
    const SmbiosFacts facts = dmidecodeFacts(parsed.structures, damage);
    if (facts.isEmpty) {
        return;
    }
    addMachine(recording, facts);
    addProcessors(recording, facts);
    addEmptySockets(recording, facts);
    addAllMemory(recording, facts.memory, parsed.isWhole);
    addOnboardDevices(recording, facts);
    addExpansionSlots(recording, facts);
    addPowerSupplies(recording, facts);
    addBatteries(recording, facts);
    addCoolingDevices(recording, facts);
    addManagementController(recording, facts);
    addTrustedPlatform(recording, facts);
}

}  // namespace vrx
