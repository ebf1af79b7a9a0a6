/// Where log lines go.
///
/// Lines for standard error go through log4cplus. A program that links log4cplus pays for it at every start: the
/// library sets itself up and starts a pool of threads while it is loaded, which takes longer than a small check. Most
/// runs write no line, so the library is loaded when the first line is written, through its C interface. One logger of
/// its own, cut off from the root, carries all lines, so that a host that uses log4cplus itself keeps its
/// configuration; names and priorities are settled before a line comes here.
///
/// Files are written here, in the same form: that library says nothing of a line that a full disk did not take, and
/// whoever relies on a log must learn that it has holes.

#include "libCommon/logging/LogOutput.h"

#include <fcntl.h>
#include <log4cplus/clogger.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "libCommon/io/FileDescriptor.h"
#include "libCommon/io/SharedLibrary.h"
#include "libCommon/logging/LogFile.h"
#include "libCommon/logging/LoggerRegistry.h"
#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

constexpr const char* LIBRARY = "liblog4cplus-2.0.so.3";  // the shared library that the included header belongs to
constexpr const char* LOGGER = "vrx";

int levelOf(LogPriority priority) noexcept {
    switch (priority) {
        case LogPriority::Debug: return L4CP_DEBUG_LOG_LEVEL;
        case LogPriority::Info: return L4CP_INFO_LOG_LEVEL;
        case LogPriority::Warning: return L4CP_WARN_LOG_LEVEL;
        default: return L4CP_ERROR_LOG_LEVEL;
    }
}

constexpr const char* CONFIGURATION =
    "log4cplus.logger.vrx=TRACE, console\n"
    "log4cplus.additivity.vrx=false\n"
    "log4cplus.appender.console=log4cplus::ConsoleAppender\n"
    "log4cplus.appender.console.logToStdErr=true\n"
    "log4cplus.appender.console.ImmediateFlush=true\n"
    "log4cplus.appender.console.layout=log4cplus::PatternLayout\n"
    "log4cplus.appender.console.layout.ConversionPattern=%D{%Y-%m-%d %H:%M:%S.%q} %-5p %m%n\n";

const char* nameOf(LogPriority priority) noexcept {
    switch (priority) {
        case LogPriority::Debug: return "DEBUG";
        case LogPriority::Info: return "INFO ";
        case LogPriority::Warning: return "WARN ";
        default: return "ERROR";
    }
}

/// "2026-11-21 10:33:20.042 WARN  ", local time.
std::string lineStart(LogPriority priority) {
    using namespace std::chrono;
    const auto now = time_point_cast<milliseconds>(system_clock::now());
    const std::time_t seconds = system_clock::to_time_t(floor<std::chrono::seconds>(now));
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[40];
    const std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(text + size, sizeof text - size, ".%03d %s ", static_cast<int>(now.time_since_epoch().count() % 1000),
                  nameOf(priority));
    return text;
}

}  // namespace

/// The operations of the loaded library.
struct LogOutput::Backend : SharedLibrary {
    Backend() : SharedLibrary(LIBRARY, "liblog4cplus-2.0.5") {}

    VRX_LOADED_FUNCTION(log4cplus_initialize)
    VRX_LOADED_FUNCTION(log4cplus_str_configure)
    VRX_LOADED_FUNCTION(log4cplus_logger_force_log_str)

    void* session = nullptr;  ///< keeps the library set up; it lasts as long as the process
};

void LogOutput::addStandardError() {
    const std::lock_guard lock(m_mutex);
    m_toStandardError = true;
    m_isConfigured = true;
}

bool LogOutput::addFile(const String& path) {
    FileDescriptor file(path.toUtf8(), O_WRONLY | O_APPEND | O_CREAT, 0666);
    if (!file.isOpen()) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    m_files.push_back(file.release());
    m_isConfigured = true;
    return true;
}

void LogOutput::write(const std::string& loggerName, LogPriority priority, StringView message) {
    if (!m_isConfigured.load(std::memory_order_acquire)) {
        return;
    }
    const std::string line = loggerName + " - " + printable(message);
    const std::lock_guard lock(m_mutex);
    writeToFiles(lineStart(priority) + line + '\n');
    if (const Backend* backend = m_toStandardError ? readyBackend() : nullptr) {
        backend->log4cplus_logger_force_log_str(LOGGER, levelOf(priority), line.c_str());
    }
}

String LogOutput::fileError() {
    const std::lock_guard lock(m_mutex);
    return m_fileError == 0 ? String() : systemErrorText(m_fileError);
}

String logFileError() { return LoggerRegistry::instance().output().fileError(); }

void LogOutput::writeToFiles(std::string_view line) {
    for (const int number : m_files) {
        FileDescriptor file(number);
        if (!file.writeAll(line) && m_fileError == 0) {
            m_fileError = errno;
        }
        file.release();
    }
}

/// The loaded back end; null when the library cannot be loaded, which is said once.
LogOutput::Backend* LogOutput::readyBackend() {
    if (m_backend == nullptr) {
        m_backend = new Backend;
        if (!m_backend->problem().empty()) {
            std::fprintf(stderr, "log lines cannot be written: %s\n", m_backend->problem().c_str());
            m_toStandardError = false;
            return nullptr;
        }
        m_backend->session = m_backend->log4cplus_initialize();
        m_backend->log4cplus_str_configure(CONFIGURATION);
    }
    return m_backend;
}

}  // namespace vrx
