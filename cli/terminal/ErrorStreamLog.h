#pragma once

#include "cli/terminal/Console.h"
#include "libCommon/logging/Logger.h"

namespace vrx::cli {

/// Shows log lines of the chosen level and above on standard error, one line each, while it lives.
class ErrorStreamLog final : public LogSink {
public:
    ErrorStreamLog(Console& console, LogPriority level);
    ~ErrorStreamLog() override;
    ErrorStreamLog(const ErrorStreamLog&) = delete;
    ErrorStreamLog& operator=(const ErrorStreamLog&) = delete;

    void writeLine(const std::string& loggerName, LogPriority priority, StringView message) override;

    /// While one lives, lines of the engine at that level and above are not shown where the same thread writes them: a
    /// command says what they say itself.
    class Quiet {
    public:
        explicit Quiet(LogPriority level);
        ~Quiet();
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;
    };

    /// The same for the lines of all threads. One lives at a time.
    class QuietThreads {
    public:
        explicit QuietThreads(LogPriority level);
        ~QuietThreads();
        QuietThreads(const QuietThreads&) = delete;
        QuietThreads& operator=(const QuietThreads&) = delete;
    };

    /// Shows a line as those of the log are.
    void show(LogPriority priority, StringView text);

private:
    Console& m_console;
    LogPriority m_level;
};

}  // namespace vrx::cli
