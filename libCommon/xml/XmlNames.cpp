#include "libCommon/xml/XmlNames.h"

#include <algorithm>
#include <new>

#include "libCommon/xml/XmlUtf8.h"

namespace vrx {

const XmlName* XmlNames::intern(StringView text) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_names.find(text);
    return found != m_names.end() ? found->second : add(m_arena.copy(text), "");
}

// The text is decoded into the arena's free room, and kept only when the name is new.
const XmlName* XmlNames::internUtf8(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    char16_t* const room = m_arena.roomForText(text.size());
    char16_t* const end = decodeValidUtf8(text, room);
    const auto found = m_names.find(StringView(room, static_cast<std::size_t>(end - room)));
    if (found != m_names.end()) {
        return found->second;
    }
    const StringView keptText = m_arena.keepText(room, end);
    auto* const utf8 = static_cast<char*>(m_arena.allocate(text.size() + 1, alignof(char)));
    *std::copy(text.begin(), text.end(), utf8) = '\0';
    return add(keptText, utf8);
}

bool XmlNames::holdsNoCase(StringView text) {
    const std::lock_guard lock(m_mutex);
    return std::ranges::any_of(m_names, [text](const auto& entry) { return equalNoCase(entry.first, text); });
}

const XmlName* XmlNames::add(StringView keptText, const char* utf8) {
    auto* const name = new (m_arena.allocate(sizeof(XmlName), alignof(XmlName))) XmlName{keptText, utf8};
    m_names.emplace(keptText, name);
    return name;
}

}  // namespace vrx
