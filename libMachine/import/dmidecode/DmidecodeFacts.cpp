#include "libMachine/import/dmidecode/DmidecodeFacts.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "libMachine/import/dmidecode/DmidecodeReaders.h"
#include "libMachine/smbios/SmbiosTable.h"

namespace vrx {

namespace {

struct Reader {
    SmbiosTable::Type type;
    void (*read)(const DmidecodeValues&, const SmbiosPlace&, SmbiosFacts&);
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

SmbiosFacts dmidecodeFacts(const std::vector<DmidecodeStructure>& structures, DamageList& damage) {
    SmbiosFacts facts;
    facts.isEmpty = structures.empty();
    std::map<unsigned, unsigned> instances;
    for (const DmidecodeStructure& structure : structures) {
        const unsigned instance = instances[structure.type]++;
        const auto reader = std::find_if(std::begin(READERS), std::end(READERS), [&structure](const Reader& candidate) {
            return candidate.type == structure.type;
        });
        if (reader != std::end(READERS)) {
            const SmbiosPlace place{structure.handle, instance, smbiosEntry(structure.type, instance)};
            reader->read(DmidecodeValues(structure, damage), place, facts);
        }
    }
    return facts;
}

}  // namespace vrx
