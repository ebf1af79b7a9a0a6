#pragma once

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"

namespace vrx {

struct InventoryState;

/// Steps through the combinations of alternatives and puts their graphs together.
class AlternativeOdometer {
public:
    explicit AlternativeOdometer(InventoryState& state) noexcept : m_state(state) {}

    /// Appends the association sets of the alternatives of one combination to the working graph: of the next one with
    /// `step`, else of the one that the digits show.
    void merge(XmlElement* root, bool step);

    /// Numbers the children of every `and` for the error measure.
    void assignIndices(XmlElement* root);

private:
    void assignIndices(XmlElement* element, StringView parentName, unsigned index);
    void mergeTree(XmlElement* element);
    void mergeAlternative(XmlElement* element);

    InventoryState& m_state;
    bool m_carries = false;  ///< the next digit is still to be stepped
};

}  // namespace vrx
