#include "libDiagnosis/faults/FaultOrder.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "libDiagnosis/TypeOrder.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

/// Another system than the script is for, or another board: the model says so, and the serial number of the system.
bool isOfOtherMachine(const Fault& fault, const CapabilityImp& type) {
    static const CapabilityImp SYSTEM(u"System");
    static const CapabilityImp BOARD(u"Motherboard");
    const bool isSystem = SYSTEM.isCapable(type);
    if (!(isSystem || BOARD.isCapable(type)) ||
        !(fault.kind == FaultKind::Wrong || fault.kind == FaultKind::Replaced)) {
        return false;
    }
    return std::ranges::any_of(fault.differences, [isSystem](const Difference& difference) {
        return difference.what == Difference::What::Name || difference.key == property::MODEL ||
               difference.key == property::VENDOR || (isSystem && difference.key == property::SERIAL_NUMBER);
    });
}

struct Rank {
    std::tuple<bool, bool, unsigned, unsigned> order;
    std::size_t index;
};

}  // namespace

void putInOrder(std::vector<Fault>& faults) {
    std::vector<Rank> ranks;
    for (Fault& fault : faults) {
        const CapabilityImp type(fault.device ? fault.device->spec.type : fault.asked.type);
        fault.isOfOtherMachine = isOfOtherMachine(fault, type);
        ranks.push_back(
            {{!fault.isOfOtherMachine, fault.kind == FaultKind::Undetermined, fault.breadth, typeRank(type)},
             ranks.size()});
    }
    std::ranges::stable_sort(ranks, {}, &Rank::order);
    std::vector<Fault> sorted;
    std::ranges::transform(ranks, std::back_inserter(sorted),
                           [&faults](const Rank& rank) { return std::move(faults[rank.index]); });
    faults = std::move(sorted);
}

}  // namespace vrx
