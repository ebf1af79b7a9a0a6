#include "cli/terminal/CombinationProgress.h"

#include <fmt/format.h>

namespace vrx::cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds FIRST_SHOWN_AFTER(1000);
constexpr milliseconds SHOWN_EVERY(200);

}  // namespace

CombinationProgress::CombinationProgress(Console& console) : m_console(console), m_isActive(console.showsProgress()) {
    if (m_isActive) {
        m_nextTime = console.now() + FIRST_SHOWN_AFTER;
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
    m_console.writeErr(fmt::format("\r\033[Kcombination {} of {}", progress.combination, progress.combinations));
}

}  // namespace vrx::cli
