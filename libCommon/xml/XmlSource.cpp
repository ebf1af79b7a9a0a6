#include "libCommon/xml/XmlSource.h"

#include <algorithm>
#include <cstring>

#include "libCommon/xml/XmlUtf8.h"

namespace vrx {

namespace {

constexpr std::size_t LONGEST_NAME_SHOWN = 64;

template <typename Unit>
constexpr Unit NAME_ENDS[] = {' ', '\t', '\n', '\r', '<', '>', '&', ';', '=', '/', '"', '\''};

/// The leading part of a text, after an `&`, up to what cannot be in a name.
template <typename Unit>
std::basic_string_view<Unit> leadingName(std::basic_string_view<Unit> text) {
    if (text.starts_with(Unit{'&'})) {
        text.remove_prefix(1);
    }
    const std::basic_string_view<Unit> ends(NAME_ENDS<Unit>, std::size(NAME_ENDS<Unit>));
    return text.substr(0, std::min(text.find_first_of(ends), LONGEST_NAME_SHOWN));
}

}  // namespace

std::size_t XmlUtf8Source::read(char* buffer, std::size_t capacity) noexcept {
    const std::size_t size = m_unread.copy(buffer, capacity);
    m_unread.remove_prefix(size);
    return size;
}

String XmlUtf8Source::nameHere() const {
    return String::UTF8Decode(leadingName(m_position.rest().substr(0, 4 * LONGEST_NAME_SHOWN)));
}

std::size_t XmlUtf16Source::read(char* buffer, std::size_t capacity) noexcept {
    return encodeUtf8Chunk(m_unread, buffer, capacity);
}

String XmlUtf16Source::nameHere() const { return leadingName(m_position.rest().substr(0, LONGEST_NAME_SHOWN)); }

}  // namespace vrx
