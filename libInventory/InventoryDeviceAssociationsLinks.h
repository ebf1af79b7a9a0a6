#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "libCommon/Forward.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// The links of an association graph as lists, for those who choose among them in another way than the reduction does.
/// Elements that were given one list of devices are one group: so many equal elements cost no more than one.
/// Elements and devices are numbers, in the order in which they became known.
struct AssociationLinks {
    struct Group {
        std::vector<std::uint32_t> elements;  ///< in order
        std::vector<std::uint32_t> devices;   ///< in the order of the links
    };
    struct Pair {
        std::uint32_t element;
        std::uint32_t device;
    };

    std::vector<Group> groups;
    std::size_t elementCount = 0;
    std::size_t deviceCount = 0;

    /// What the reduction has left.
    std::vector<Pair> kept;
};

/// The links of a graph, and what the numbers stand for.
struct NamedLinks {
    AssociationLinks links;
    std::vector<const XmlElement*> elements;
    std::vector<boost::shared_ptr<IDeviceImp>> devices;
};

}  // namespace vrx
