#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <vector>

#include "libSystemState/Forward.h"

namespace vrx {

class ExtraDeviceRules;
struct InventoryState;

/// Looks for devices beyond the script in the working graph.
class ExtraDeviceSearch {
public:
    explicit ExtraDeviceSearch(InventoryState& state) noexcept : m_state(state) {}

    /// Files every extra device against the root, as a failure when there are rules; true when there is none.
    bool findNone(unsigned slot);

    /// Whether every rule can be asked about every device that it covers.
    bool canAskAll();

    /// The devices that are extra when no element has them, in the store's order.
    std::vector<boost::shared_ptr<IDeviceImp>> watched();

private:
    ExtraDeviceRules& rules();
    bool examine(std::size_t position, unsigned slot);
    bool hasNoLinks(const boost::shared_ptr<IDeviceImp>& device) const;
    void noteUndecided(const boost::shared_ptr<IDeviceImp>& device);
    void logPassedOver(std::size_t& at, const IDeviceImp* next) const;

    InventoryState& m_state;
};

}  // namespace vrx
