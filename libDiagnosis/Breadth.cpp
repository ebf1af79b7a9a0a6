#include "libDiagnosis/Breadth.h"

#include <algorithm>
#include <iterator>

#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

unsigned breadthOf(const CapabilityImp& type) {
    static const CapabilityImp BY_BREADTH[] = {CapabilityImp(u"MemoryArray"), CapabilityImp(u"Memory"),
                                               CapabilityImp(u"Motherboard"), CapabilityImp(u"Chassis"),
                                               CapabilityImp(u"System")};
    const auto* const at = std::find(std::begin(BY_BREADTH), std::end(BY_BREADTH), type);
    return at == std::end(BY_BREADTH) ? 0 : static_cast<unsigned>(at - std::begin(BY_BREADTH)) + 1;
}

}  // namespace vrx
