#include "libCommon/xml/parsing/XmlPosition.h"

#include <bit>
#include <cstring>

// Every start tag asks for its place, so this pass over the text must cost little beside the parser's own. Nearly all
// bytes are plain: ASCII and no control character, one column each. They are skipped eight at a time; only what is not
// plain is looked at by itself.

namespace vrx {

namespace {

static_assert(std::endian::native == std::endian::little, "the first byte in memory must be the lowest of a word");

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::uint64_t TOPS = 0x8080808080808080U;
constexpr std::uint64_t LINE_ENDS = 0x0E0E0E0E0E0E0E0EU;  // LF and CR lie below

/// Marks the bytes of a word that are not plain: the lowest bit set is in the first one, higher ones mean nothing.
std::uint64_t unusual(std::uint64_t word) noexcept { return ((word - LINE_ENDS) | word) & TOPS; }

/// How many bytes are plain before the first one that is not. Stops short of the end by less than a word.
std::size_t plainBytes(std::string_view bytes) noexcept {
    std::size_t index = 0;
    while (bytes.size() - index >= sizeof(std::uint64_t)) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + index, sizeof word);
        if (const std::uint64_t marks = unusual(word); marks != 0) {
            return index + static_cast<std::size_t>(std::countr_zero(marks)) / 8;
        }
        index += sizeof word;
    }
    return index;
}

}  // namespace

void XmlPosition::advance(std::string_view bytes) noexcept {
    if (m_isAtStart && !bytes.empty()) {
        m_isAtStart = false;
        if (bytes.starts_with(BYTE_ORDER_MARK)) {
            bytes.remove_prefix(BYTE_ORDER_MARK.size());
        }
    }
    while (!bytes.empty()) {
        if (const std::size_t plain = plainBytes(bytes); plain != 0) {
            m_place.column += static_cast<std::uint32_t>(plain);
            m_isAfterCr = false;
            bytes.remove_prefix(plain);
        } else {
            pass(static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
        }
    }
}

/// Of a sequence of several bytes the first one counts: as two columns when it needs a surrogate pair.
void XmlPosition::pass(unsigned char byte) noexcept {
    if (byte == '\n' || byte == '\r') {
        const bool endsCrLf = byte == '\n' && m_isAfterCr;
        m_place = {m_place.row + (endsCrLf ? 0U : 1U), 0};
    } else if ((byte & 0xC0U) != 0x80U) {
        m_place.column += byte >= 0xF0U ? 2U : 1U;
    }
    m_isAfterCr = byte == '\r';
}

}  // namespace vrx
