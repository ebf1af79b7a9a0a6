#include "libCommon/xml/parsing/XmlSource.h"

#include "libCommon/xml/XmlUtf8.h"

namespace vrx {

std::size_t XmlUtf8Source::read(char* buffer, std::size_t capacity) noexcept {
    const std::size_t size = m_unread.copy(buffer, capacity);
    m_unread.remove_prefix(size);
    return size;
}

std::size_t XmlUtf16Source::read(char* buffer, std::size_t capacity) noexcept {
    return encodeUtf8Chunk(m_unread, buffer, capacity);
}

}  // namespace vrx
