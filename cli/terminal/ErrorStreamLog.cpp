#include "cli/terminal/ErrorStreamLog.h"

#include <algorithm>

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
    Logger::setRootPriority(std::min(level, LogPriority::Error));
    Logger::addSink(*this);
}

ErrorStreamLog::~ErrorStreamLog() { Logger::removeSink(*this); }

void ErrorStreamLog::writeLine(const std::string& loggerName, LogPriority priority, StringView message) {
    const StringView text = withoutSourceLine(message);
    if (m_capture != nullptr && priority >= LogPriority::Warning && loggerName == ENGINE) {
        m_capture->m_lines.emplace_back(priority, text);
    } else if (m_hushed.empty() || loggerName != ENGINE || !text.starts_with(m_hushed)) {
        show(priority, text);
    }
}

void ErrorStreamLog::show(LogPriority priority, StringView text) {
    if (priority >= m_level) {
        m_console.writeErr(std::string("vrx-inventory: ") + nameOf(priority) + ": " + printable(text) + "\n");
    }
}

ErrorStreamLog::Capture::Capture(ErrorStreamLog& log) : m_log(log) { m_log.m_capture = this; }

ErrorStreamLog::Capture::~Capture() { m_log.m_capture = nullptr; }

Array<String> ErrorStreamLog::Capture::errors() const {
    Array<String> texts;
    for (const auto& [priority, text] : m_lines) {
        if (priority == LogPriority::Error) {
            texts.append(text);
        }
    }
    return texts;
}

void ErrorStreamLog::Capture::show() {
    m_log.m_capture = nullptr;
    for (const auto& [priority, text] : m_lines) {
        m_log.show(priority, text);
    }
}

ErrorStreamLog::Hush::Hush(ErrorStreamLog& log, StringView beginning) : m_log(log) { m_log.m_hushed = beginning; }

ErrorStreamLog::Hush::~Hush() { m_log.m_hushed = StringView(); }

}  // namespace vrx::cli
