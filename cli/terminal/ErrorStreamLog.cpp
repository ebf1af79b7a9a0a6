#include "cli/terminal/ErrorStreamLog.h"

#include <algorithm>
#include <atomic>

#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

constexpr const char* ENGINE = "libInventory.Inventory";

constexpr LogPriority NOTHING = LogPriority::Off;  // which no line has

thread_local LogPriority quietLevel = NOTHING;
std::atomic<LogPriority> quietLevelOfAll = NOTHING;

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
    if (loggerName != ENGINE || priority < std::min(quietLevel, quietLevelOfAll.load())) {
        show(priority, withoutSourceLine(message));
    }
}

void ErrorStreamLog::show(LogPriority priority, StringView text) {
    if (priority >= m_level) {
        m_console.writeErr(std::string("vrx-inventory: ") + nameOf(priority) + ": " + printable(text) + "\n");
    }
}

ErrorStreamLog::Quiet::Quiet(LogPriority level) { quietLevel = level; }

ErrorStreamLog::Quiet::~Quiet() { quietLevel = NOTHING; }

ErrorStreamLog::QuietThreads::QuietThreads(LogPriority level) { quietLevelOfAll = level; }

ErrorStreamLog::QuietThreads::~QuietThreads() { quietLevelOfAll = NOTHING; }

}  // namespace vrx::cli
