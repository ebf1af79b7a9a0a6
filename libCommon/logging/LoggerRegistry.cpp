#include "libCommon/logging/LoggerRegistry.h"

#include <algorithm>

namespace vrx {

/// A line on its way to one receiver. A sink that logs has several of its thread, one inside the other.
class LoggerRegistry::Delivery {
public:
    Delivery(LoggerRegistry& registry, Receiver& receiver)
        : m_registry(registry), m_receiver(receiver), m_outer(innermost) {
        const std::lock_guard lock(registry.m_mutex);
        m_isWanted = !receiver.isRemoved;
        ++receiver.writing;
        innermost = this;
    }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;
    ~Delivery() {
        innermost = m_outer;
        const std::lock_guard lock(m_registry.m_mutex);
        --m_receiver.writing;
        m_registry.m_written.notify_all();
    }

    /// False when the sink was removed in the meantime.
    bool isWanted() const noexcept { return m_isWanted; }

    /// How many lines this thread is handing to a receiver.
    static unsigned ofThisThread(const Receiver& receiver) noexcept {
        unsigned count = 0;
        for (const Delivery* delivery = innermost; delivery != nullptr; delivery = delivery->m_outer) {
            count += &delivery->m_receiver == &receiver ? 1U : 0U;
        }
        return count;
    }

private:
    static thread_local const Delivery* innermost;

    LoggerRegistry& m_registry;
    Receiver& m_receiver;
    const Delivery* m_outer;
    bool m_isWanted = false;
};

constinit thread_local const LoggerRegistry::Delivery* LoggerRegistry::Delivery::innermost = nullptr;

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
    m_receivers.push_back(std::make_shared<Receiver>(Receiver{&sink}));
}

void LoggerRegistry::removeSink(LogSink& sink) {
    std::unique_lock lock(m_mutex);
    const auto sinkOf = [](const std::shared_ptr<Receiver>& receiver) {
        return receiver->sink;
    };
    for (auto at = m_receivers.begin(); (at = std::ranges::find(m_receivers, &sink, sinkOf)) != m_receivers.end();) {
        const std::shared_ptr<Receiver> removed = *at;
        m_receivers.erase(at);
        removed->isRemoved = true;
        // A sink that removes itself while it gets a line must not wait for that line.
        m_written.wait(lock, [&] { return removed->writing <= Delivery::ofThisThread(*removed); });
    }
}

void LoggerRegistry::deliver(const Logger& logger, LogPriority priority, StringView message) {
    std::vector<std::shared_ptr<Receiver>> receivers;
    {
        const std::lock_guard lock(m_mutex);
        receivers = m_receivers;
    }
    for (const std::shared_ptr<Receiver>& receiver : receivers) {
        const Delivery delivery(*this, *receiver);
        if (delivery.isWanted()) {
            receiver->sink->writeLine(logger.name(), priority, message);
        }
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
