#pragma once

#include "host/terminal/Console.h"
#include "libCommon/containers/Array.h"
#include "libCommon/logging/Logger.h"

namespace vrx::host {

/// Shows log lines of the chosen level and above on standard error, one line each, while it lives.
///
/// Errors of the engine pass the loggers' gates at every level: a command listens to them (see Capture) to say in its own
/// words why a file does not load.
class ErrorStreamLog final : public LogSink {
public:
    ErrorStreamLog(Console& console, LogPriority level);
    ~ErrorStreamLog() override;
    ErrorStreamLog(const ErrorStreamLog&) = delete;
    ErrorStreamLog& operator=(const ErrorStreamLog&) = delete;

    void writeLine(const std::string& loggerName, LogPriority priority, StringView message) override;

    /// While one lives, the engine's error lines are kept back: a command that reports a failure itself drops them, any
    /// other shows them.
    class Capture {
    public:
        explicit Capture(ErrorStreamLog& log);
        ~Capture();
        Capture(const Capture&) = delete;
        Capture& operator=(const Capture&) = delete;

        /// The texts of the lines so far, without the source line numbers that they begin with.
        const Array<String>& texts() const noexcept { return m_texts; }

        /// Ends the capture and shows what was kept back.
        void show();

    private:
        friend class ErrorStreamLog;
        ErrorStreamLog& m_log;
        Array<String> m_texts;
    };

private:
    void show(LogPriority priority, StringView text);

    Console& m_console;
    LogPriority m_level;
    Capture* m_capture = nullptr;
};

}  // namespace vrx::host
