#pragma once

#include <chrono>
#include <cstdint>

#include "libInventory/InventoryTestObserver.h"
#include "libReport/CheckReport.h"

namespace vrx {

/// One check of a script against a machine, up to its report.
///
///     CheckRun check(machine);
///     if (!check.inventory().loadInventoryScriptFile(u"golden.xml")) {
///         say(check.fileErrors());
///     }
///     const CheckReport report = check.run();
///
/// A script in which an `or` lies in a `part` has no sure answer; findOrInsidePart (libInventory/script/OrInsidePart.h)
/// finds it.
class CheckRun final : private InventoryTestObserver {
public:
    /// The machine is borrowed; it may be filled later.
    explicit CheckRun(StateManager& machine);

    /// Loads scripts and takes settings and further observers. The machine must stay the one that it is.
    Inventory& inventory() noexcept { return m_inventory; }
    const Inventory& inventory() const noexcept { return m_inventory; }

    /// Why scripts did not load.
    const Array<String>& fileErrors() const noexcept { return m_fileErrors; }

    /// Runs the check. Names and duration of the report are left for the caller. Requires: a script is loaded.
    CheckReport run(const CheckBasis& basis = CheckBasis());

private:
    void handleEvent(const TestRunEventImp& event) override;
    bool readsAnnotatedScript() const override { return false; }
    void handleFileError(const String& msg) override { m_fileErrors.append(msg); }

    StateManager& m_machine;
    Inventory m_inventory;
    Array<String> m_fileErrors;
    Array<TestRunEventImp> m_events;
};

/// How much of the combinations of alternatives a check may try; 0 for no limit. One combination is always tried.
struct SearchLimits {
    std::uint64_t combinations = 0;
    double seconds = 0;
    bool waitsForEver = false;  ///< without limits also for more combinations than anybody can wait for
};

/// Whether a check that has taken so long goes on within these limits. Somebody can wait for its end when it deduces,
/// or has no more combinations to try one by one than 32 bits can count.
bool mayGoOn(const SearchLimits& limits, const RunProgress& progress,
             std::chrono::steady_clock::duration taken) noexcept;

}  // namespace vrx
