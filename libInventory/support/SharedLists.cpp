#include "libInventory/support/SharedLists.h"

#include <boost/container_hash/hash.hpp>
#include <utility>

namespace vrx {

SharedLists::Pointer SharedLists::share(DeviceArray devices) {
    std::size_t hash = 0;
    for (const auto& device : devices) {
        boost::hash_combine(hash, device.get());
    }
    std::vector<Pointer>& likely = m_lists[hash];
    for (const Pointer& list : likely) {
        if (*list == devices) {
            return list;
        }
    }
    return likely.emplace_back(std::make_shared<const DeviceArray>(std::move(devices)));
}

}  // namespace vrx
