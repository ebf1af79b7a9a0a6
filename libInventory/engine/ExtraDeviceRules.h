#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libInventory/DeviceContent.h"
#include "libInventory/engine/matching/ContentTest.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

struct RunRecord;

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

    /// Whether the covered device at that position satisfies the rule's constraints; true when it has none. The record
    /// learns what was given up for the log alone.
    bool satisfiesConstraints(std::size_t rule, std::size_t position, RunRecord& record);

    /// Whether the covered device at that position can be asked at all (Inventory::canCheckDevice).
    bool canAsk(std::size_t position) const { return m_askable[position] != Askable::No; }

private:
    enum class Answer : std::uint8_t { Unknown, Yes, No };

    using Askable = DeviceContent::Askable;

    struct Rule {
        const XmlElement* element;
        CapabilityImp type;
        CapabilityImp capability;
        bool hasConstraints = false;
        String constraints;                          ///< XML text of all children, for the single-device check
        std::unique_ptr<const ContentTest> content;  ///< the same made ready, once somebody has asked
        std::vector<Answer> answers;                 ///< by position of the device
    };

    bool ask(Rule& rule, std::size_t position, RunRecord& record) const;
    static void logRun(const Rule& rule, const IDeviceImp& device, RunRecord& record);

    std::vector<Rule> m_rules;
    StateManager::DeviceArray m_covered;
    std::vector<Askable> m_askable;  ///< by position of the device
};

}  // namespace vrx
