#pragma once

#include <utility>
#include <vector>

#include "cli/terminal/Console.h"
#include "libCommon/containers/Array.h"
#include "libCommon/logging/Logger.h"

namespace vrx::cli {

/// Shows log lines of the chosen level and above on standard error, one line each, while it lives.
///
/// Errors of the engine pass the loggers' gates at every level: a command listens to them (see Capture) to say in its
/// own words why a file does not load.
class ErrorStreamLog final : public LogSink {
public:
    ErrorStreamLog(Console& console, LogPriority level);
    ~ErrorStreamLog() override;
    ErrorStreamLog(const ErrorStreamLog&) = delete;
    ErrorStreamLog& operator=(const ErrorStreamLog&) = delete;

    void writeLine(const std::string& loggerName, LogPriority priority, StringView message) override;

    /// While one lives, the engine's warnings and errors are kept back: a command that reports a failure itself drops
    /// them, any other shows them.
    class Capture {
    public:
        explicit Capture(ErrorStreamLog& log);
        ~Capture();
        Capture(const Capture&) = delete;
        Capture& operator=(const Capture&) = delete;

        /// The texts of the errors so far, without the source line numbers that they begin with.
        Array<String> errors() const;

        /// Ends the capture and shows what was kept back.
        void show();

    private:
        friend class ErrorStreamLog;
        ErrorStreamLog& m_log;
        std::vector<std::pair<LogPriority, String>> m_lines;
    };

    /// While one lives, lines of the engine that begin with a text are not shown: a command expects them, or says the
    /// same in its own words. `beginning` must live as long.
    class Hush {
    public:
        Hush(ErrorStreamLog& log, StringView beginning);
        ~Hush();
        Hush(const Hush&) = delete;
        Hush& operator=(const Hush&) = delete;

    private:
        ErrorStreamLog& m_log;
    };

private:
    void show(LogPriority priority, StringView text);

    Console& m_console;
    LogPriority m_level;
    Capture* m_capture = nullptr;
    StringView m_hushed;  ///< beginning of lines that are not shown; empty for none
};

}  // namespace vrx::cli
