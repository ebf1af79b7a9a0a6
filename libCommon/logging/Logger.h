#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// Priorities of log lines, lowest first. The numbers are part of the interface.
enum class LogPriority : int {
    Debug = 1,    ///< traces of the passes and of matching
    Info = 2,     ///< run-level information
    Warning = 3,  ///< warnings and fallbacks
    Error = 4,    ///< errors
    Off = 5       ///< as a setting only: nothing is written
};

/// Receives every line that is written, whatever else is configured; for hosts that show or collect lines. Lines of all
/// threads come on the threads that wrote them, several at a time.
class VRX_EXPORT LogSink {
public:
    virtual ~LogSink() = default;
    /// `message` begins with the source line number of its call site and one blank.
    virtual void writeLine(const std::string& loggerName, LogPriority priority, StringView message) = 0;
};

/// A named logger. Names form a hierarchy by dots; a logger without a priority of its own inherits its parent's.
///
/// A line is written only when three gates admit its priority: the global priority, the logger's threshold and its
/// resolved (own or inherited) priority. Use the VRX_LOG macro, which builds the message only then; a line that is
/// switched off costs one load and one comparison. Nothing is written before a host configures an output.
///
///     Logger::logToFile(u"run.log");
///     Logger::setRootPriority(LogPriority::Debug);
///     VRX_LOG(Logger::get("myProgram"), LogPriority::Info, u"devices: " << store.deviceCount());
class VRX_EXPORT Logger {
public:
    /// The logger of that name, created on first use and never destroyed.
    static Logger& get(const char* name);

    /// Whether all three gates admit the priority.
    bool isEnabled(LogPriority priority) const noexcept {
        return static_cast<int>(priority) >= m_admitted.load(std::memory_order_relaxed);
    }

    /// Writes a finished line (nothing when a gate is closed).
    void write(LogPriority priority, StringView message);

    const std::string& name() const noexcept { return m_name; }

    /// This logger's own priority; `inheritPriority` gives it up again.
    void setPriority(LogPriority priority);
    void inheritPriority();

    /// A gate of this logger alone, not inherited by others. Initially Debug.
    void setThreshold(LogPriority threshold);

    /// The gate of all loggers. Initially Debug.
    static void setGlobalPriority(LogPriority priority);

    /// The priority that loggers without one of their own or of an ancestor resolve to. Initially Warning.
    static void setRootPriority(LogPriority priority);

    /// Writes lines to standard error from now on.
    static void logToStandardError();

    /// Appends lines to a file from now on. False when the file cannot be opened for writing.
    static bool logToFile(const String& path);

    /// Registers or removes a sink; it is borrowed and must be removed before it is destroyed. Removing it waits until
    /// no other thread is writing to it.
    static void addSink(LogSink& sink);
    static void removeSink(LogSink& sink);

private:
    friend class LoggerRegistry;
    explicit Logger(std::string name);

    std::string m_name;
    std::atomic<int> m_admitted;  ///< lowest priority that all three gates admit
    LogPriority m_threshold = LogPriority::Debug;
    std::optional<LogPriority> m_priority;  ///< this logger's own; none inherits
};

/// Builds the text of one line: the source line number, one blank, then the pieces.
class VRX_EXPORT LogLine {
public:
    explicit LogLine(int sourceLine);

    LogLine& operator<<(StringView text);
    LogLine& operator<<(const String& text) { return *this << text.view(); }
    LogLine& operator<<(const char16_t* text) { return *this << StringView(text); }
    LogLine& operator<<(const char* asciiText);
    LogLine& operator<<(bool value);  ///< "1" or "0"
    LogLine& operator<<(int value);
    LogLine& operator<<(unsigned int value);
    LogLine& operator<<(unsigned long value);
    LogLine& operator<<(long value);
    LogLine& operator<<(double value);       ///< six significant digits
    LogLine& operator<<(const void* value);  ///< hexadecimal address

    const String& text() const noexcept { return m_text; }

private:
    String m_text;
};

}  // namespace vrx

/// Writes one line: VRX_LOG(logger, LogPriority::Debug, u"found: " << count). The pieces are evaluated only when the
/// line will be written.
#define VRX_LOG(logger, priority, pieces)                \
    do {                                                 \
        if ((logger).isEnabled(priority)) [[unlikely]] { \
            ::vrx::LogLine vrxLogLine(__LINE__);         \
            vrxLogLine << pieces;                        \
            (logger).write(priority, vrxLogLine.text()); \
        }                                                \
    } while (false)
