#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <memory>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Lists of devices, each kept once however many elements it is the answer for.
class SharedLists {
public:
    using DeviceArray = Array<boost::shared_ptr<IDeviceImp>>;
    using Pointer = std::shared_ptr<const DeviceArray>;

    /// The list that holds the same devices in the same order, the given one when there is none yet.
    Pointer share(DeviceArray devices);

private:
    boost::unordered_flat_map<std::size_t, std::vector<Pointer>> m_lists;  ///< by hash
};

}  // namespace vrx
