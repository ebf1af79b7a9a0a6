#pragma once

#include "libCommon/Forward.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/findings/ErrorFiling.h"

namespace vrx {

struct InventoryState;

/// The walk over the script for one combination of alternatives.
class SecondPass {
public:
    /// Findings go into that error slot.
    SecondPass(InventoryState& state, unsigned slot) noexcept : m_state(state), m_filing(state), m_slot(slot) {}

    /// Whether the element is satisfied; true for none.
    bool run(XmlElement* element, bool underNot);

    /// The error measure of what was run.
    const Inventory::ErrorSpec& errors() const noexcept { return m_errors; }

private:
    bool ofAll(XmlElement* element, bool underNot);
    bool ofPart(XmlElement* element, bool underNot);
    bool ofOr(XmlElement* element, bool underNot);
    bool ofNot(XmlElement* element);
    bool ofDevice(XmlElement* element, bool underNot);
    bool skipsPrunedOr(XmlElement* element);
    void enterPart(XmlElement* part, bool underNot);

    InventoryState& m_state;
    ErrorFiling m_filing;
    unsigned m_slot;
    Inventory::ErrorSpec m_errors;
};

}  // namespace vrx
