#include "cli/terminal/CombinationProgress.h"

#include <fmt/format.h>

#include <algorithm>

namespace vrx::cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds FIRST_SHOWN_AFTER(1000);
constexpr milliseconds SHOWN_EVERY(200);
constexpr StringView TOTAL = u"First Pass: totalCombinations = ";
constexpr StringView ITERATION = u"run() current iteration: ";

LogPriority gateOf(LogPriority level) noexcept { return std::min(level, LogPriority::Error); }

}  // namespace

CombinationProgress::CombinationProgress(Console& console, LogPriority level)
    : m_console(console), m_level(level), m_isActive(console.showsProgress()) {
    if (m_isActive) {
        m_nextTime = console.now() + FIRST_SHOWN_AFTER;
        Logger::setRootPriority(std::min(level, LogPriority::Info));
        Logger::addSink(*this);
    }
}

CombinationProgress::~CombinationProgress() {
    if (m_isActive) {
        Logger::removeSink(*this);
        Logger::setRootPriority(gateOf(m_level));
    }
    if (m_isShown) {
        m_console.writeErr("\r\033[K");
    }
}

void CombinationProgress::writeLine(const std::string&, LogPriority priority, StringView message) {
    if (priority != LogPriority::Info) {
        return;
    }
    if (const std::size_t at = message.find(TOTAL); at != StringView::npos) {
        m_total = message.substr(at + TOTAL.size());
    } else if (message.find(ITERATION) != StringView::npos) {
        ++m_tried;
        showLine();
    }
}

void CombinationProgress::showLine() {
    const auto time = m_console.now();
    if (time < m_nextTime) {
        return;
    }
    m_nextTime = time + SHOWN_EVERY;
    m_isShown = true;
    m_console.writeErr(fmt::format("\r\033[Kcombination {} of {}", m_tried, m_total.toUtf8()));
}

}  // namespace vrx::cli
