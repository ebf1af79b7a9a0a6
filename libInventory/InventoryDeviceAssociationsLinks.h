#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "libCommon/Forward.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// The links of an association graph as lists, for those who choose among them in another way than the reduction does.
/// Elements that were given one list of devices are one group: so many equal elements cost no more than one.
struct AssociationLinks {
    struct Group {
        std::vector<const XmlElement*> elements;  ///< in order
        std::vector<std::uint32_t> devices;       ///< positions in `devices`, in the order of the links
    };
    struct Pair {
        const XmlElement* element;
        std::uint32_t device;
    };

    std::vector<Group> groups;
    std::vector<boost::shared_ptr<IDeviceImp>> devices;

    /// What the reduction has left.
    std::vector<Pair> kept;
};

}  // namespace vrx
