#pragma once

#include "libCommon/Forward.h"

namespace vrx {

class UniqueTexts;
struct InventoryState;

/// The devices of a `part` element in the working graph.
class PartAssociation {
public:
    explicit PartAssociation(InventoryState& state) noexcept : m_state(state) {}

    /// Adds the guids of the devices of an element in a part. A part in it is a mistake and not looked into.
    void collect(XmlElement* element, bool underNot, UniqueTexts& deviceGuids);

    /// Makes the graph forget the devices of an element in a part.
    void remove(XmlElement* element);

private:
    InventoryState& m_state;
};

}  // namespace vrx
