#include "cli/terminal/ErrorStreamLog.h"

#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

constexpr const char* ENGINE = "libInventory.Inventory";

const char* nameOf(LogPriority priority) noexcept {
    switch (priority) {
        case LogPriority::Debug: return "debug";
        case LogPriority::Info: return "info";
        case LogPriority::Warning: return "warning";
        default: return "error";
    }
}

/// The message without the source line number and the blank that it begins with.
StringView withoutSourceLine(StringView message) noexcept {
    const std::size_t blank = message.find(u' ');
    return blank == StringView::npos ? message : message.substr(blank + 1);
}

}  // namespace

ErrorStreamLog::ErrorStreamLog(Console& console, LogPriority level) : m_console(console), m_level(level) {
    Logger::setRootPriority(level);
    Logger::addSink(*this);
}

ErrorStreamLog::~ErrorStreamLog() { Logger::removeSink(*this); }

void ErrorStreamLog::writeLine(const std::string& loggerName, LogPriority priority, StringView message) {
    if (loggerName != ENGINE || !m_quiet || priority < *m_quiet) {
        show(priority, withoutSourceLine(message));
    }
}

void ErrorStreamLog::show(LogPriority priority, StringView text) {
    if (priority >= m_level) {
        m_console.writeErr(std::string("vrx-inventory: ") + nameOf(priority) + ": " + printable(text) + "\n");
    }
}

ErrorStreamLog::Quiet::Quiet(ErrorStreamLog& log, LogPriority level) : m_log(log) { m_log.m_quiet = level; }

ErrorStreamLog::Quiet::~Quiet() { m_log.m_quiet.reset(); }

}  // namespace vrx::cli
