#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/logging/LogOutput.h"
#include "libCommon/logging/Logger.h"

namespace vrx {

/// All loggers, the settings that they share and the receivers of their lines. Each logger keeps the result of its
/// three gates in one number; the registry works it out anew for every logger whenever a setting changes, because
/// settings change rarely and lines are tried all the time.
class LoggerRegistry {
public:
    /// The registry of the process. It is never destroyed: loggers may be used while the process ends.
    static LoggerRegistry& instance();

    Logger& get(std::string_view name);

    void setPriority(Logger& logger, std::optional<LogPriority> priority);
    void setThreshold(Logger& logger, LogPriority threshold);
    void setGlobalPriority(LogPriority priority);
    void setRootPriority(LogPriority priority);

    void addSink(LogSink& sink);

    /// Waits until no other thread is writing to the sink.
    void removeSink(LogSink& sink);

    LogOutput& output() noexcept { return m_output; }

    /// Hands an admitted line to the sinks and the output. No lock is held meanwhile, so a sink may log.
    void deliver(const Logger& logger, LogPriority priority, StringView message);

private:
    struct Receiver {
        LogSink* sink;
        unsigned writing = 0;  ///< lines that are being handed to it
        bool isRemoved = false;
    };
    class Delivery;

    LogPriority resolvedPriority(std::string_view name) const;
    int admittedPriority(const Logger& logger) const;
    void recompute();

    std::mutex m_mutex;
    std::map<std::string, std::unique_ptr<Logger>, std::less<>> m_loggers;
    LogPriority m_globalPriority = LogPriority::Debug;
    LogPriority m_rootPriority = LogPriority::Warning;
    std::vector<std::shared_ptr<Receiver>> m_receivers;
    std::condition_variable m_written;  ///< some sink has got a line
    LogOutput m_output;
};

}  // namespace vrx
