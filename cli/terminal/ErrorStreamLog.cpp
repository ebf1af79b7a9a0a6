#include "cli/terminal/ErrorStreamLog.h"

#include <optional>

#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

constexpr const char* ENGINE = "libInventory.Inventory";

thread_local std::optional<LogPriority> quietLevel;

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
    if (loggerName != ENGINE || !quietLevel || priority < *quietLevel) {
        show(priority, withoutSourceLine(message));
    }
}

void ErrorStreamLog::show(LogPriority priority, StringView text) {
    if (priority >= m_level) {
        m_console.writeErr(std::string("vrx-inventory: ") + nameOf(priority) + ": " + printable(text) + "\n");
    }
}

ErrorStreamLog::Quiet::Quiet(LogPriority level) { quietLevel = level; }

ErrorStreamLog::Quiet::~Quiet() { quietLevel.reset(); }

}  // namespace vrx::cli
