#include "cli/terminal/CombinationProgress.h"

#include <fmt/format.h>

#include "cli/terminal/ProgressText.h"

namespace vrx::cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds FIRST_SHOWN_AFTER(1000);
constexpr milliseconds SHOWN_EVERY(200);

}  // namespace

CombinationProgress::CombinationProgress(Console& console) : m_console(console), m_isActive(console.showsProgress()) {
    if (m_isActive) {
        m_start = console.now();
        m_nextTime = m_start + FIRST_SHOWN_AFTER;
    }
}

CombinationProgress::~CombinationProgress() {
    if (m_isShown) {
        m_console.writeErr("\r\033[K");
    }
}

void CombinationProgress::show(const RunProgress& progress) {
    if (!m_isActive) {
        return;
    }
    const auto time = m_console.now();
    if (time < m_nextTime) {
        return;
    }
    m_nextTime = time + SHOWN_EVERY;
    m_isShown = true;
    const auto tried = static_cast<double>(progress.combination - 1);
    if (progress.isDeduced) {
        const double rate = tried / std::chrono::duration<double>(time - m_start).count();
        m_console.writeErr(fmt::format("\r\033[K{} tried of {} combinations or fewer{}", progress.combination - 1,
                                       progress.combinations,
                                       rate > 0 ? fmt::format(", {:.{}f} a second", rate, rate < 10 ? 1 : 0) : ""));
        return;
    }
    m_console.writeErr(fmt::format("\r\033[Kcombination {} of {}{}", progress.combination, progress.combinations,
                                   rateText({tried, static_cast<double>(progress.combinations)}, time - m_start, "")));
}

}  // namespace vrx::cli
