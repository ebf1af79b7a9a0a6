/// A table is read in one pass: each structure of a type that is known goes to its reader, the others are passed over.

#include "libMachine/smbios/SmbiosFacts.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "libMachine/smbios/SmbiosReaders.h"

namespace vrx {

namespace {

struct Reader {
    SmbiosTable::Type type;
    void (*read)(const SmbiosStructure&, SmbiosFacts&);
};

constexpr Reader READERS[] = {
    {SmbiosTable::BIOS, readBios},
    {SmbiosTable::SYSTEM, readSystem},
    {SmbiosTable::BOARD, readBoard},
    {SmbiosTable::CHASSIS, readChassis},
    {SmbiosTable::PROCESSOR, readProcessor},
    {SmbiosTable::CACHE, readCache},
    {SmbiosTable::SLOT, readExpansionSlot},
    {SmbiosTable::MEMORY_ARRAY, readMemoryArray},
    {SmbiosTable::MEMORY_DEVICE, readMemoryModule},
    {SmbiosTable::PORTABLE_BATTERY, readPortableBattery},
    {SmbiosTable::COOLING_DEVICE, readCoolingDevice},
    {SmbiosTable::MANAGEMENT_CONTROLLER, readManagementController},
    {SmbiosTable::POWER_SUPPLY, readPowerSupply},
    {SmbiosTable::ONBOARD_DEVICE, readOnboardDevice},
    {SmbiosTable::TRUSTED_PLATFORM, readTrustedPlatform},
};

}  // namespace

SmbiosFacts readSmbiosFacts(const SmbiosTable& table) {
    SmbiosFacts facts;
    facts.isEmpty = table.isEmpty();
    for (const SmbiosStructure& structure : table.structures()) {
        const auto reader = std::find_if(std::begin(READERS), std::end(READERS), [&structure](const Reader& candidate) {
            return candidate.type == structure.type();
        });
        if (reader != std::end(READERS)) {
            reader->read(structure, facts);
        }
    }
    return facts;
}

std::string smbiosEntry(unsigned type, unsigned instance) {
    return fmt::format("/sys/firmware/dmi/entries/{}-{}", type, instance);
}

SmbiosPlace placeOf(const SmbiosStructure& structure) {
    return {structure.handle(), structure.instance(), smbiosEntry(structure.type(), structure.instance())};
}

}  // namespace vrx
