#pragma once

#include <boost/unordered/unordered_flat_map.hpp>

#include "libInventory/engine/InventoryState.h"

namespace vrx {

/// Which element holds which device in the combination that the findings of the last run speak of.
class KeptLinks {
public:
    explicit KeptLinks(const InventoryState& state);

    bool isSatisfied(const XmlElement& element) const { return m_devices.contains(&element); }

    /// The device that the element holds; null when it holds none.
    const IDeviceImp* deviceOf(const XmlElement& element) const {
        const auto at = m_devices.find(&element);
        return at == m_devices.end() ? nullptr : at->second;
    }

    /// The element that holds the device; null when none does.
    const XmlElement* holderOf(const IDeviceImp& device) const {
        const auto at = m_holders.find(&device);
        return at == m_holders.end() ? nullptr : at->second;
    }

private:
    boost::unordered_flat_map<const XmlElement*, const IDeviceImp*> m_devices;
    boost::unordered_flat_map<const IDeviceImp*, const XmlElement*> m_holders;
};

}  // namespace vrx
