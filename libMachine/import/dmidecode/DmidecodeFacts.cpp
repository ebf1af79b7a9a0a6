#include "libMachine/import/dmidecode/DmidecodeFacts.h"

#include <map>

#include "libMachine/import/dmidecode/DmidecodeReader.h"
#include "libMachine/smbios/SmbiosWalk.h"

namespace vrx {

SmbiosFacts dmidecodeFacts(const std::vector<DmidecodeStructure>& structures, DamageList& damage) {
    SmbiosFacts facts;
    facts.isEmpty = structures.empty();
    std::map<unsigned, unsigned> instances;
    for (const DmidecodeStructure& structure : structures) {
        const unsigned instance = instances[structure.type]++;
        const SmbiosPlace place{structure.handle, instance, smbiosEntry(structure.type, instance)};
        SmbiosWalk(DmidecodeReader(structure, damage), place, facts).read(structure.type);
    }
    return facts;
}

}  // namespace vrx
