#pragma once

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "libCommon/xml/XmlElement.h"
#include "libDiagnosis/certainty/Doubt.h"
#include "libDiagnosis/certainty/Unknowns.h"
#include "libInventory/Inventory.h"

namespace vrx {

/// Whether the elements that got devices need just these.
class HeldDevices {
public:
    /// Both are borrowed. Requires: the inventory has run.
    HeldDevices(const Inventory& inventory, const Unknowns& unknowns) : m_inventory(inventory), m_unknowns(unknowns) {}

    /// Why an element may do without its device: a device that was not seen may serve it, or another alternative of an
    /// `or` around it, or one that a third element may do without in turn. None where it is sure to need its own.
    std::optional<Doubt> mayGiveUp(const XmlElement& holder);

private:
    using Elements = std::vector<const XmlElement*>;

    std::optional<Doubt> askOne(const XmlElement& element, Elements& pending) const;
    std::optional<Doubt> askOtherAlternatives(const XmlElement& holder, Elements& pending, Elements& tried);

    const Inventory& m_inventory;
    const Unknowns& m_unknowns;
    std::unordered_set<const XmlElement*> m_seen;  ///< elements that need their devices, and the `or`s around them
    std::unordered_map<const XmlElement*, Doubt> m_loose;
};

}  // namespace vrx
