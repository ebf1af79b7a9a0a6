/// Which of many candidates came nearest.
///
/// The engine tests every candidate against every property and leaves the messages of all of them on the `property`
/// elements, candidate after candidate. This sorts them by candidate again. A value that differs names its device by
/// hardware locator. A missing property names it by type and name: the candidates of that name without that property
/// left such a message, in the store's order, so the n-th message belongs to the n-th of those devices; only devices
/// with the locators that the element asks for were candidates. Devices that share a hardware locator are told apart by
/// the order of their messages on one element.

#include "libReport/writers/NearestCandidate.h"

#include <algorithm>
#include <map>

#include "libCommon/Assertion.h"
#include "libInventory/script/ScriptElement.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

/// A candidate: its hardware locator (or its name, where the locator is not known), and the how-manieth of those.
struct Identity {
    String text;
    bool isName = false;
    std::size_t occurrence = 0;

    auto operator<=>(const Identity&) const = default;
};

class CandidateSorter {
public:
    CandidateSorter(const CapabilityImp& type, const StateManager* machine) : m_type(type), m_machine(machine) {}

    void add(const PropertyMismatch& mismatch) {
        if (mismatch.property != m_property) {
            m_property = mismatch.property;
            m_occurrences.clear();
            m_absences.clear();
        }
        const Identity identity = identityOf(mismatch);
        const auto [at, isNew] = m_indexes.try_emplace(identity, m_groups.size());
        if (isNew) {
            m_groups.push_back({identity, {}});
        }
        m_groups[at->second].mismatches.push_back(&mismatch);
    }

    NearestCandidate nearest() const {
        const auto best = std::min_element(m_groups.begin(), m_groups.end(), [](const Group& a, const Group& b) {
            return a.mismatches.size() < b.mismatches.size();
        });
        NearestCandidate result;
        result.candidates = m_groups.size();
        result.device = deviceOf(best->identity);
        for (const PropertyMismatch* mismatch : best->mismatches) {
            result.mismatches.push_back(*mismatch);
        }
        return result;
    }

private:
    struct Group {
        Identity identity;
        std::vector<const PropertyMismatch*> mismatches;
    };

    using AbsenceKey = std::pair<String, String>;  ///< type and name
    struct Absence {
        std::vector<const IDeviceImp*> devices;  ///< of that type and name, without the property
        std::size_t used = 0;
    };

    Identity identityOf(const PropertyMismatch& mismatch) {
        Identity identity{mismatch.hwLocator};
        if (mismatch.isAbsent) {
            const IDeviceImp* const device = nextWithout(mismatch);
            identity.text = device ? device->hwLocator() : mismatch.deviceName;
            identity.isName = device == nullptr;
        }
        identity.occurrence = m_occurrences[{identity.text, identity.isName}]++;
        return identity;
    }

    const IDeviceImp* nextWithout(const PropertyMismatch& mismatch) {
        if (m_machine == nullptr) {
            return nullptr;
        }
        const auto [at, isNew] = m_absences.try_emplace(AbsenceKey{mismatch.deviceType, mismatch.deviceName});
        Absence& absence = at->second;
        if (isNew) {
            const StringView key = mismatch.property->Attribute(u"key");
            const XmlElement* const element = deviceAround(*mismatch.property);
            const String hwLocator = element ? askedFor(*element, u"hwlocator") : String();
            const String osLocator = element ? askedFor(*element, u"oslocator") : String();
            for (const auto& device : m_machine->devicesByName(mismatch.deviceName)) {
                if (device->name() == mismatch.deviceName && device->type().toString() == mismatch.deviceType &&
                    (hwLocator.isEmpty() || device->hwLocator() == hwLocator) &&
                    (osLocator.isEmpty() || device->osLocator() == osLocator) && device->findProperty(key) == nullptr) {
                    absence.devices.push_back(device.get());
                }
            }
        }
        return absence.used < absence.devices.size() ? absence.devices[absence.used++] : nullptr;
    }

    const IDeviceImp* deviceOf(const Identity& identity) const {
        if (m_machine == nullptr) {
            return nullptr;
        }
        const auto& devices =
            identity.isName ? m_machine->devicesByName(identity.text) : m_machine->devicesByHwLocator(identity.text);
        const IDeviceImp* found = nullptr;
        std::size_t occurrence = 0;
        for (const auto& device : devices) {
            if (m_type.isCapable(device->type()) && occurrence++ <= identity.occurrence) {
                found = device.get();
            }
        }
        return found;
    }

    const CapabilityImp& m_type;
    const StateManager* m_machine;
    const XmlElement* m_property = nullptr;
    std::map<std::pair<String, bool>, std::size_t> m_occurrences;  ///< on the present property element
    std::map<AbsenceKey, Absence> m_absences;                      ///< on the present property element
    std::map<Identity, std::size_t> m_indexes;
    std::vector<Group> m_groups;
};

}  // namespace

NearestCandidate nearestOf(const std::vector<PropertyMismatch>& mismatches, const CapabilityImp& type,
                           const StateManager* machine) {
    VRX_ASSERT(!mismatches.empty());
    CandidateSorter sorter(type, machine);
    for (const PropertyMismatch& mismatch : mismatches) {
        sorter.add(mismatch);
    }
    return sorter.nearest();
}

}  // namespace vrx
