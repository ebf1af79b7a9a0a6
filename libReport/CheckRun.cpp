#include "libReport/CheckRun.h"

#include <cstdint>
#include <utility>

#include "libInventory/Finding.h"

namespace vrx {

CheckRun::CheckRun(StateManager& machine) : m_machine(machine) {
    m_inventory.registerInventoryObserver(*this);
    m_inventory.setStateManager(machine);
}

CheckReport CheckRun::run(const CheckBasis& basis) {
    m_events.clear();
    m_inventory.setSearch(basis.isPlain ? Inventory::Search::OneByOne : Inventory::Search::Deduced);
    bool isSatisfied = false;
    const bool passed = m_inventory.run(&isSatisfied);
    CheckReport report = checkReport(m_inventory, m_machine, passed, basis);
    report.inventorySatisfied = isSatisfied;
    report.events = std::exchange(m_events, {});
    return report;
}

// Whoever wants the annotated script of the closing event asks the inventory for it.
void CheckRun::handleEvent(const TestRunEventImp& event) {
    if (event.name() != u"InventoryTestFailed") {
        m_events.append(event);
    }
}

bool mayGoOn(const SearchLimits& limits, const RunProgress& progress,
             std::chrono::steady_clock::duration taken) noexcept {
    constexpr std::uint64_t MOST_TRIED = 0xFFFFFFFF;
    if (limits.combinations > 0 && progress.combination > limits.combinations) {
        return false;
    }
    if (limits.seconds > 0 && taken > std::chrono::duration<double>(limits.seconds)) {
        return false;
    }
    const bool hasLimit = limits.combinations > 0 || limits.seconds > 0;
    return hasLimit || limits.waitsForEver || progress.isDeduced || progress.combinations <= MOST_TRIED;
}

}  // namespace vrx
