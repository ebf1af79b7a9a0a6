#include "cli/terminal/FleetBar.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/terminal/ProgressText.h"

namespace vrx::cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds BAR_APPEARS_AFTER(500);
constexpr milliseconds BAR_REWRITTEN_EVERY(200);
constexpr std::size_t CELLS = 24;

/// "[#####...................]"
std::string barText(double fraction) {
    const auto full = static_cast<std::size_t>(std::clamp(fraction, 0.0, 1.0) * static_cast<double>(CELLS));
    return "[" + std::string(full, '#') + std::string(CELLS - full, '.') + "]";
}

}  // namespace

FleetBar::FleetBar(Console& console) : m_console(console), m_isActive(console.showsProgress()) {
    if (m_isActive) {
        m_start = console.now();
        m_nextTime = m_start + BAR_APPEARS_AFTER;
    }
}

FleetBar::~FleetBar() {
    if (m_isShown) {
        m_console.writeErr("\r\033[K");
    }
}

bool FleetBar::isDue() {
    if (m_isActive) {
        m_time = m_console.now();
    }
    return m_isActive && m_time >= m_nextTime;
}

void FleetBar::show(const FleetProgress& progress, std::size_t machines) {
    m_nextTime = m_time + BAR_REWRITTEN_EVERY;
    m_isShown = true;
    const double fraction = progress.total == 0 ? 0 : progress.done / static_cast<double>(progress.total);
    const auto checked = static_cast<double>(machines);
    const Amount amount{checked, fraction > 0 ? checked / fraction : checked};
    m_console.writeErr(fmt::format("\r\033[K{} {:.0f}%, {} machines{}", barText(fraction), 100 * fraction, machines,
                                   rateText(amount, m_time - m_start, "")));
}

}  // namespace vrx::cli
