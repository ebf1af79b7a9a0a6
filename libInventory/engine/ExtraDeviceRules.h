#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <vector>

#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// The `fail-on-extra` elements of a script, read once for a run: which devices each covers, and which satisfy its
/// constraints. Neither depends on the combination of alternatives, so answers are kept between combinations.
class ExtraDeviceRules {
public:
    ExtraDeviceRules(const Array<XmlElement*>& elements, const StateManager& store);

    std::size_t count() const noexcept { return m_rules.size(); }
    const XmlElement& element(std::size_t rule) const { return *m_rules[rule].element; }

    /// The devices that some rule covers, in the store's order.
    const StateManager::DeviceArray& coveredDevices() const noexcept { return m_covered; }

    /// Whether the rule's type is satisfied by the device's type, or its capability meets one of the device's.
    bool covers(std::size_t rule, const IDeviceImp& device) const;

    bool hasConstraints(std::size_t rule) const { return m_rules[rule].hasConstraints; }

    /// Whether the device satisfies the rule's constraints; true when it has none.
    bool satisfiesConstraints(std::size_t rule, const IDeviceImp& device);

private:
    struct Rule {
        const XmlElement* element;
        CapabilityImp type;
        CapabilityImp capability;
        bool hasConstraints = false;
        String constraints;  ///< XML text of all children, for the single-device check
        boost::unordered_flat_map<const IDeviceImp*, bool> answers;
    };

    std::vector<Rule> m_rules;
    StateManager::DeviceArray m_covered;
};

}  // namespace vrx
