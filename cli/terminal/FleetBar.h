#pragma once

#include <cstddef>

#include "cli/terminal/Console.h"
#include "libFleet/machines/FleetRecording.h"

namespace vrx::cli {

/// A bar on a terminal that tells how far the check of a fleet is, how fast, and how long it may still take. It appears
/// after half a second, is rewritten a few times a second, and is wiped away at the end. On anything but a terminal
/// nothing is shown.
class FleetBar {
public:
    explicit FleetBar(Console& console);
    ~FleetBar();
    FleetBar(const FleetBar&) = delete;
    FleetBar& operator=(const FleetBar&) = delete;

    /// `machines` have a result.
    void show(const FleetProgress& progress, std::size_t machines);

    /// Whether `show` would show anything now.
    bool isDue();

private:
    Console& m_console;
    bool m_isActive;
    bool m_isShown = false;
    std::chrono::steady_clock::time_point m_start;
    std::chrono::steady_clock::time_point m_time;
    std::chrono::steady_clock::time_point m_nextTime;
};

}  // namespace vrx::cli
