#include "libCommon/logging/Logger.h"

#include "libCommon/logging/LoggerRegistry.h"

namespace vrx {

Logger::Logger(std::string name) : m_name(std::move(name)), m_admitted(static_cast<int>(LogPriority::Off)) {}

Logger& Logger::get(const char* name) { return LoggerRegistry::instance().get(name); }

void Logger::write(LogPriority priority, StringView message) {
    if (isEnabled(priority)) {
        LoggerRegistry::instance().deliver(*this, priority, message);
    }
}

void Logger::setPriority(LogPriority priority) { LoggerRegistry::instance().setPriority(*this, priority); }

void Logger::inheritPriority() { LoggerRegistry::instance().setPriority(*this, std::nullopt); }

void Logger::setThreshold(LogPriority threshold) { LoggerRegistry::instance().setThreshold(*this, threshold); }

void Logger::setGlobalPriority(LogPriority priority) { LoggerRegistry::instance().setGlobalPriority(priority); }

void Logger::setRootPriority(LogPriority priority) { LoggerRegistry::instance().setRootPriority(priority); }

void Logger::logToStandardError() { LoggerRegistry::instance().output().addStandardError(); }

bool Logger::logToFile(const String& path) { return LoggerRegistry::instance().output().addFile(path); }

void Logger::addSink(LogSink& sink) { LoggerRegistry::instance().addSink(sink); }

void Logger::removeSink(LogSink& sink) { LoggerRegistry::instance().removeSink(sink); }

}  // namespace vrx
