#pragma once

#include <cstdint>

#include "libCommon/Forward.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/matching/DeviceMatcher.h"

namespace vrx {

struct InventoryState;

/// The walk over the script that comes before every combination.
class FirstPass {
public:
    explicit FirstPass(InventoryState& state) : m_state(state), m_matcher(state), m_filing(state) {}

    /// Lets several threads begin with everything below the root. Requires: the pass has not begun.
    void lookAhead(const XmlElement& root) { m_matcher.lookAhead(root); }

    /// Whether the element can be satisfied; true for none. Devices that match go into the association set of that
    /// index: 0 outside of all alternatives.
    bool run(XmlElement* element, bool underNot, unsigned associationIndex);

private:
    bool ofAll(XmlElement* element, bool underNot, unsigned associationIndex);
    bool ofOr(XmlElement* element, bool underNot);
    bool ofAlternative(XmlElement* child, bool underNot);
    bool ofNot(XmlElement* element, bool underNot, unsigned associationIndex);
    bool ofFailOnExtra(XmlElement* element);
    void multiplyCombinations(std::uint32_t alternatives);

    InventoryState& m_state;
    DeviceMatcher m_matcher;
    ErrorFiling m_filing;
};

}  // namespace vrx
