#include "libCommon/xml/parsing/XmlSource.h"

#include <algorithm>

#include "libCommon/xml/XmlUtf8.h"

namespace vrx {

std::size_t XmlUtf8Source::read(char* buffer, std::size_t capacity) noexcept {
    const std::size_t size = m_unread.copy(buffer, capacity);
    m_unread.remove_prefix(size);
    return size;
}

std::size_t XmlSearchedSource::read(char* buffer, std::size_t capacity) noexcept {
    const std::size_t size = m_source.read(buffer, capacity);
    m_isFound = m_isFound || isIn({buffer, size});
    return m_isFound ? 0 : size;
}

bool XmlSearchedSource::isIn(std::string_view piece) noexcept {
    const std::size_t overlap = m_wanted.size() - 1;
    m_before.append(piece.substr(0, overlap));
    const bool isAcross = m_before.find(m_wanted) != std::string::npos;
    if (piece.size() >= overlap) {
        m_before = piece.substr(piece.size() - overlap);
    } else {
        m_before.erase(0, m_before.size() - std::min(m_before.size(), overlap));
    }
    return isAcross || piece.find(m_wanted) != std::string_view::npos;
}

std::size_t XmlUtf16Source::read(char* buffer, std::size_t capacity) noexcept {
    return encodeUtf8Chunk(m_unread, buffer, capacity);
}

}  // namespace vrx
