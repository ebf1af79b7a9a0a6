#pragma once

#include <cstdint>

#include "cli/terminal/Console.h"
#include "libCommon/logging/Logger.h"

namespace vrx::cli {

/// A line on a terminal that tells how many combinations of alternatives a check has tried, for checks that take long.
///
/// The engine reports no progress to observers; its run-level log lines count the combinations, so this listens to
/// them. The line appears after a second, is rewritten a few times a second, and is wiped away at the end. On anything
/// but a terminal nothing is listened to and nothing is shown.
class CombinationProgress final : public LogSink {
public:
    /// `level` is the level that lines are shown at; progress needs run-level lines as well.
    CombinationProgress(Console& console, LogPriority level);
    ~CombinationProgress() override;
    CombinationProgress(const CombinationProgress&) = delete;
    CombinationProgress& operator=(const CombinationProgress&) = delete;

    void writeLine(const std::string& loggerName, LogPriority priority, StringView message) override;

private:
    void showLine();

    Console& m_console;
    LogPriority m_level;
    std::chrono::steady_clock::time_point m_nextTime;
    std::uint64_t m_tried = 0;
    String m_total;
    bool m_isActive;
    bool m_isShown = false;
};

}  // namespace vrx::cli
