#include "libMachine/import/RecordingStart.h"

#include <algorithm>

#include "libMachine/RecordingFormat.h"
#include "libMachine/import/mending/TextMending.h"

namespace vrx {

namespace {

std::string asciiStart(std::string_view bytes) {
    std::string start(bytes.substr(0, RECOGNITION_SIZE));
    if (utf16Order(start) != Utf16Order::None) {
        std::erase(start, '\0');
    }
    const std::size_t first = start.find_first_of("<{[#HSBW \t\r\n");
    return first == std::string::npos || first > 3 ? start : start.substr(first);  // behind a byte-order mark
}

/// Every header of the archives that are written today has this behind the fields of the first ones.
bool isTarStart(std::string_view bytes) noexcept {
    static constexpr std::size_t MAGIC_AT = 257;
    return bytes.size() > MAGIC_AT && bytes.substr(MAGIC_AT).starts_with("ustar");
}

void skipBlanks(std::string_view& text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

/// The text from its next element on, past declarations and comments; empty when there is none.
std::string_view fromElement(std::string_view text) noexcept {
    while (true) {
        text.remove_prefix(std::min(text.find('<'), text.size()));
        if (!text.starts_with("<?") && !text.starts_with("<!")) {
            return text;
        }
        const std::string_view end = text.starts_with("<!--") ? "-->" : ">";
        text.remove_prefix(std::min(text.find(end, 2), text.size()));
    }
}

}  // namespace

RecordingStart::RecordingStart(std::string_view bytes)
    : m_isArchive(isTarStart(bytes)), m_start(asciiStart(bytes)), m_text(m_start) {
    skipBlanks(m_text);
    for (std::string_view rest = m_text; !rest.empty(); skipBlanks(rest)) {
        if (rest.front() == '<') {
            m_root = fromElement(rest);
            return;
        }
        if (rest.front() == '{' || rest.front() == '[') {
            m_json = rest;
            return;
        }
        rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
    }
}

std::string_view RecordingStart::firstInRoot() const noexcept {
    return m_root.empty() ? m_root : fromElement(m_root.substr(1));
}

std::string_view elementName(std::string_view text) noexcept {
    text.remove_prefix(std::min<std::size_t>(1, text.size()));
    return text.substr(0, text.find_first_of(" \t\r\n/>"));
}

}  // namespace vrx
