#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <vector>

#include "libCommon/Forward.h"
#include "libSystemState/Forward.h"

namespace vrx {

struct InventoryState;

/// Devices that are known to satisfy an element before the first pass comes to it: several threads look for the only
/// device that an element may take, and compare its properties.
class MatchesAhead {
public:
    /// Adds a `device` element.
    void add(const XmlElement& element) { m_pairs.push_back({&element, nullptr}); }

    std::size_t size() const noexcept { return m_pairs.size(); }

    /// Finds the devices of the elements that were added, with so many threads as the run may use.
    void find(const InventoryState& state);

    /// The device that satisfies the element, in the store; null where that is not known. Asked in the order of adding.
    const boost::shared_ptr<IDeviceImp>* deviceOf(const XmlElement& element) noexcept;

private:
    struct Pair {
        const XmlElement* element;
        const boost::shared_ptr<IDeviceImp>* device;
    };

    std::vector<Pair> m_pairs;
    std::size_t m_next = 0;
};

}  // namespace vrx
