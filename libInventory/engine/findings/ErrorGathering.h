#pragma once

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"

namespace vrx {

struct InventoryState;

/// Writes findings into the script.
class ErrorGathering {
public:
    explicit ErrorGathering(InventoryState& state) noexcept : m_state(state) {}

    /// What one element has in one slot; returns how many texts that is.
    unsigned gatherElement(XmlElement* element, unsigned slot);

    /// Everything of a subtree that is to be shown, and takes the run records off the elements.
    void gatherAndClean(XmlElement* element, unsigned slot);

    /// Copies what findings of the last run refer to, before a new run can write it into the script.
    void settle();

private:
    unsigned writeFindings(XmlElement* element, unsigned slot);
    bool writeUnsatisfied(XmlElement* element);
    void writeError(XmlElement* element, StringView text);

    InventoryState& m_state;
};

}  // namespace vrx
