/// What stands below what is read off the hardware locators, because a device that is missing has nothing else:
/// "cpu:0/l3:0" stands below "cpu:0", "usb:1-2.3" below "usb:1-2", and the functions of a PCI device below its
/// function 0, without which it does not exist. The outermost device counts, as far up as nothing of the machine stands
/// in between.
///
/// Only faults that are known for sure fold: what nobody can tell stays a fault of its own, and so does what is found
/// at another place, what may be something else at some other place, and what is no type.

#include "libDiagnosis/faults/FoldBelow.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "libCommon/containers/HashFunctions.h"
#include "libDiagnosis/TypeOrder.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using FaultIndex = std::unordered_map<String, std::size_t, HashFunc<String>>;

/// Locators that are deeper are nobody's hardware.
constexpr unsigned DEEPEST = 64;

constexpr StringView PCI_PREFIX = u"pci:";

bool isDeviceAt(const StateManager& machine, const String& locator, const CapabilityImp& type) {
    return std::ranges::any_of(machine.devicesByHwLocator(locator), [&](const auto& device) {
        return device->hwLocator() == locator && type.isCapable(device->type());
    });
}

bool isGone(const Fault& fault, const StateManager& machine) {
    const bool isOfNoType = fault.refusal && fault.refusal->kind == FindingKind::InvalidDeviceType;
    return fault.kind == FaultKind::Missing && !isOfNoType && !fault.asked.hwLocator.isEmpty() &&
           !isDeviceAt(machine, fault.asked.hwLocator, CapabilityImp(fault.asked.type));
}

/// The locator at which the device stands that is right above that one; empty when there is none.
String placeAbove(const String& locator) {
    const StringView text = locator;
    const std::size_t end = text.find_last_of(u"/.");
    if (end == StringView::npos || end == 0) {
        return {};
    }
    const bool isPciFunction = text.starts_with(PCI_PREFIX) && text[end] == u'.';
    String above(text.substr(0, end));
    if (isPciFunction) {
        above.append(u".0");
    }
    return isPciFunction && above == locator ? String() : above;
}

/// Whether what it is about can be without what is around it. All that is missing is taken for such.
bool isPart(const Fault& fault) {
    return fault.kind != FaultKind::Extra || isReplaceable(CapabilityImp(fault.device->spec.type));
}

class FoldingFaults {
public:
    FoldingFaults(std::vector<Fault>& faults, const StateManager& machine) : m_faults(faults), m_machine(machine) {}

    void fold() {
        makeIndex();
        std::vector<bool> isFolded(m_faults.size());
        for (std::size_t i = 0; i < m_faults.size(); ++i) {
            if (const std::optional<std::size_t> above = faultAbove(m_faults[i])) {
                addTo(m_faults[*above], m_faults[i]);
                isFolded[i] = true;
            }
        }
        std::size_t index = 0;
        std::erase_if(m_faults, [&](const Fault&) { return isFolded[index++]; });
    }

private:
    void makeIndex() {
        for (std::size_t i = 0; i < m_faults.size(); ++i) {
            const Fault& fault = m_faults[i];
            if (isGone(fault, m_machine)) {
                m_missing.try_emplace(fault.asked.hwLocator, i);
            } else if (fault.kind == FaultKind::Extra) {
                m_extra.try_emplace(fault.device->spec.hwLocator, i);
            }
        }
    }

    std::optional<std::size_t> faultAbove(const Fault& fault) const {
        if (fault.kind == FaultKind::Missing && fault.alternatives.empty() && isGone(fault, m_machine)) {
            return outermostAbove(fault.asked.hwLocator, m_missing);
        }
        // What can be plugged in is decided on by itself: a hub that is known says nothing of what hangs on it.
        if (fault.kind == FaultKind::Extra && !isPart(fault)) {
            return outermostAbove(fault.device->spec.hwLocator, m_extra);
        }
        return std::nullopt;
    }

    std::optional<std::size_t> outermostAbove(const String& locator, const FaultIndex& index) const {
        std::optional<std::size_t> found;
        String place = placeAbove(locator);
        for (unsigned depth = 0; depth < DEEPEST && !place.isEmpty(); ++depth) {
            if (const auto at = index.find(place); at != index.end()) {
                found = isPart(m_faults[at->second]) ? at->second : found;
            } else if (isDeviceAt(m_machine, place, CapabilityImp::ALL())) {
                break;
            }
            place = placeAbove(place);
        }
        return found;
    }

    static void addTo(Fault& fault, const Fault& below) {
        FoldedFault& folded = fault.withIt.emplace_back();
        folded.place = below.place;
        folded.spec = below.device ? below.device->spec : below.asked;
        folded.guid = below.device ? below.device->guid : String();
    }

    std::vector<Fault>& m_faults;
    const StateManager& m_machine;
    FaultIndex m_missing;  ///< by place; of several at one the first
    FaultIndex m_extra;
};

}  // namespace

void foldBelow(std::vector<Fault>& faults, const StateManager& machine) { FoldingFaults(faults, machine).fold(); }

}  // namespace vrx
