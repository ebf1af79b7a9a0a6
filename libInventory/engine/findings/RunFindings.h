#pragma once

#include <boost/unordered/unordered_flat_map.hpp>

#include "libInventory/Finding.h"
#include "libInventory/engine/findings/FiledFindings.h"
#include "libInventory/engine/findings/FindingWords.h"

namespace vrx {

struct InventoryState;

/// Makes the public records of what the last run found.
class RunFindings {
public:
    explicit RunFindings(const InventoryState& state) : m_state(state) {}

    Array<Finding> written() const;
    Array<Finding> notices() const;
    Array<const XmlElement*> missingElements() const;
    Array<ChosenAlternative> chosenAlternatives() const;
    Array<ExtraDevice> extraDevices() const;

    /// A finding about the element, without texts.
    static Finding findingOn(const XmlElement& element, FindingKind kind);

    /// The finding that an entry of the element stands for.
    static Finding findingOf(const XmlElement& element, const FiledFindings::Entry& entry, FindingWords& words);

    /// The chosen alternative of an `or` element that was kept.
    using Chosen = boost::unordered_flat_map<const XmlElement*, ChosenAlternative>;
    Chosen chosen() const;

private:
    const XmlElement* ruleOf(const XmlElement& element, unsigned slot, const IDeviceImp* device) const;

    const InventoryState& m_state;
};

}  // namespace vrx
