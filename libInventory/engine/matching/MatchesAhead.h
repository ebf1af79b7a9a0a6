#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <vector>

#include "libCommon/Forward.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Devices that are known to satisfy an element before the first pass comes to it: the properties of the only device
/// that an element may take are compared by several threads at once.
class MatchesAhead {
public:
    /// An element and the only device that comes into question for it.
    void add(const XmlElement& element, const boost::shared_ptr<IDeviceImp>& device) {
        m_pairs.push_back({&element, &device});
    }

    /// Compares the pairs that were added, with so many threads.
    void compare(unsigned threads);

    /// The device that satisfies the element; null where that is not known. Asked in the order of adding.
    const boost::shared_ptr<IDeviceImp>* deviceOf(const XmlElement& element) noexcept;

private:
    struct Pair {
        const XmlElement* element;
        const boost::shared_ptr<IDeviceImp>* device;  // of the store
        bool isKnown = false;
    };

    std::vector<Pair> m_pairs;
    std::size_t m_next = 0;
};

}  // namespace vrx
