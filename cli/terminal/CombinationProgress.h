#pragma once

#include "cli/terminal/Console.h"
#include "libInventory/Finding.h"

namespace vrx::cli {

/// A line on a terminal that tells how many combinations of alternatives a check has tried, how fast,
/// and, where all of them have to be tried, how long it may still take; for checks that take long.
/// It appears after a second, is rewritten a few times a second, and is wiped away at the end. On anything but a
/// terminal nothing is shown.
class CombinationProgress {
public:
    explicit CombinationProgress(Console& console);
    ~CombinationProgress();
    CombinationProgress(const CombinationProgress&) = delete;
    CombinationProgress& operator=(const CombinationProgress&) = delete;

    void show(const RunProgress& progress);

private:
    Console& m_console;
    std::chrono::steady_clock::time_point m_start;
    std::chrono::steady_clock::time_point m_nextTime;
    bool m_isActive;
    bool m_isShown = false;
};

}  // namespace vrx::cli
