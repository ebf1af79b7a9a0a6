#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>

#include "libInventory/engine/InventoryState.h"

namespace vrx {

/// Which element holds which device in the combination that the findings of the last run speak of.
class KeptLinks {
public:
    explicit KeptLinks(const InventoryState& state);

    bool isSatisfied(const XmlElement& element) const { return m_satisfied.contains(&element); }

    /// The element that holds the device; null when none does.
    const XmlElement* holderOf(const IDeviceImp& device) const {
        const auto at = m_holders.find(&device);
        return at == m_holders.end() ? nullptr : at->second;
    }

private:
    boost::unordered_flat_set<const XmlElement*> m_satisfied;
    boost::unordered_flat_map<const IDeviceImp*, const XmlElement*> m_holders;
};

}  // namespace vrx
