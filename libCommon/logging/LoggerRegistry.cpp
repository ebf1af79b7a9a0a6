#include "libCommon/logging/LoggerRegistry.h"

#include <algorithm>

namespace vrx {

LoggerRegistry& LoggerRegistry::instance() {
    static LoggerRegistry& registry = *new LoggerRegistry;
    return registry;
}

Logger& LoggerRegistry::get(std::string_view name) {
    const std::lock_guard lock(m_mutex);
    auto at = m_loggers.find(name);
    if (at == m_loggers.end()) {
        std::unique_ptr<Logger> logger(new Logger(std::string(name)));
        logger->m_admitted = admittedPriority(*logger);
        at = m_loggers.emplace(name, std::move(logger)).first;
    }
    return *at->second;
}

void LoggerRegistry::setPriority(Logger& logger, std::optional<LogPriority> priority) {
    const std::lock_guard lock(m_mutex);
    logger.m_priority = priority;
    recompute();
}

void LoggerRegistry::setThreshold(Logger& logger, LogPriority threshold) {
    const std::lock_guard lock(m_mutex);
    logger.m_threshold = threshold;
    recompute();
}

void LoggerRegistry::setGlobalPriority(LogPriority priority) {
    const std::lock_guard lock(m_mutex);
    m_globalPriority = priority;
    recompute();
}

void LoggerRegistry::setRootPriority(LogPriority priority) {
    const std::lock_guard lock(m_mutex);
    m_rootPriority = priority;
    recompute();
}

void LoggerRegistry::addSink(LogSink& sink) {
    const std::lock_guard lock(m_mutex);
    m_sinks.push_back(&sink);
}

void LoggerRegistry::removeSink(LogSink& sink) {
    const std::lock_guard lock(m_mutex);
    std::erase(m_sinks, &sink);
}

void LoggerRegistry::deliver(const Logger& logger, LogPriority priority, StringView message) {
    std::vector<LogSink*> sinks;
    {
        const std::lock_guard lock(m_mutex);
        sinks = m_sinks;
    }
    for (LogSink* sink : sinks) {
        sink->writeLine(logger.name(), priority, message);
    }
    m_output.write(logger.name(), priority, message);
}

/// The priority of the nearest name in the hierarchy that has one of its own.
LogPriority LoggerRegistry::resolvedPriority(std::string_view name) const {
    while (true) {
        const auto at = m_loggers.find(name);
        if (at != m_loggers.end() && at->second->m_priority) {
            return *at->second->m_priority;
        }
        const std::size_t dot = name.rfind('.');
        if (dot == std::string_view::npos) {
            return m_rootPriority;
        }
        name = name.substr(0, dot);
    }
}

int LoggerRegistry::admittedPriority(const Logger& logger) const {
    return static_cast<int>(std::max({m_globalPriority, logger.m_threshold, resolvedPriority(logger.m_name)}));
}

void LoggerRegistry::recompute() {
    for (const auto& [name, logger] : m_loggers) {
        logger->m_admitted = admittedPriority(*logger);
    }
}

}  // namespace vrx
