/// Log lines through log4cplus, loaded on demand.
///
/// A program that links log4cplus pays for it at every start: the library sets itself up and starts a pool of threads
/// while it is loaded, which takes longer than a small check. This system has no threads of its own and most runs
/// write no line, so the library is loaded when the first line is written, through its C interface.
///
/// The outputs are described to it in its configuration text. Files are named there by descriptor, because a path may
/// hold characters that the text cannot. One logger of its own, cut off from the root, carries all lines, so that a
/// host that uses log4cplus itself keeps its configuration; names and priorities are settled before a line comes here.

#include "libCommon/logging/LogOutput.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <log4cplus/clogger.h>

#include <algorithm>
#include <cstdio>

#include "libCommon/io/FileDescriptor.h"

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

void describeAppender(std::string& text, const std::string& name, const std::string& kind, const std::string& option) {
    const std::string key = "log4cplus.appender." + name;
    text += key + "=log4cplus::" + kind + "\n";
    text += key + "." + option + "\n";
    text += key + ".ImmediateFlush=true\n";
    text += key + ".layout=log4cplus::PatternLayout\n";
    text += key + ".layout.ConversionPattern=%D{%Y-%m-%d %H:%M:%S.%q} %-5p %m%n\n";
}

}  // namespace

/// The operations of the loaded library.
struct LogOutput::Backend {
    void* session = nullptr;  ///< keeps the library set up; it lasts as long as the process
    decltype(&log4cplus_initialize) initialize = nullptr;
    decltype(&log4cplus_str_configure) configure = nullptr;
    decltype(&log4cplus_logger_force_log_str) log = nullptr;

    bool load() {
        void* const library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
        return library != nullptr && find(library, "log4cplus_initialize", initialize) &&
               find(library, "log4cplus_str_configure", configure) &&
               find(library, "log4cplus_logger_force_log_str", log);
    }

    template <typename Operation>
    static bool find(void* library, const char* name, Operation& operation) {
        operation = reinterpret_cast<Operation>(dlsym(library, name));
        return operation != nullptr;
    }
};

void LogOutput::addStandardError() {
    const std::lock_guard lock(m_mutex);
    m_isChanged = m_isChanged || !m_toStandardError;
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
    m_isChanged = true;
    m_isConfigured = true;
    return true;
}

void LogOutput::write(const std::string& loggerName, LogPriority priority, StringView message) {
    if (!m_isConfigured.load(std::memory_order_acquire)) {
        return;
    }
    std::string line = loggerName + " - ";
    appendUtf8(line, message);
    std::replace(line.begin(), line.end(), '\0', ' ');  // the line is handed over as a C string
    const std::lock_guard lock(m_mutex);
    if (const Backend* backend = readyBackend()) {
        backend->log(LOGGER, levelOf(priority), line.c_str());
    }
}

/// The loaded back end with the present outputs; null when the library cannot be loaded, which is said once.
LogOutput::Backend* LogOutput::readyBackend() {
    if (m_backend == nullptr) {
        m_backend = new Backend;
        if (!m_backend->load()) {
            std::fprintf(stderr, "log lines cannot be written: %s\n", dlerror());
            m_isConfigured = false;
            return nullptr;
        }
        m_backend->session = m_backend->initialize();
    }
    if (m_isChanged) {
        m_backend->configure(configuration().c_str());
        m_isChanged = false;
    }
    return m_backend;
}

std::string LogOutput::configuration() const {
    std::string appenders;
    std::string names;
    if (m_toStandardError) {
        names += ", console";
        describeAppender(appenders, "console", "ConsoleAppender", "logToStdErr=true");
    }
    for (const int file : m_files) {
        const std::string name = "file" + std::to_string(file);
        names += ", " + name;
        describeAppender(appenders, name, "FileAppender", "File=/proc/self/fd/" + std::to_string(file));
        appenders += "log4cplus.appender." + name + ".Append=true\n";
    }
    const std::string logger = LOGGER;
    return "log4cplus.logger." + logger + "=TRACE" + names + "\nlog4cplus.additivity." + logger + "=false\n" +
           appenders;
}

}  // namespace vrx
