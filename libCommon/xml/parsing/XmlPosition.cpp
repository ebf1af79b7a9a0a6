#include "libCommon/xml/parsing/XmlPosition.h"

#include <algorithm>
#include <bit>
#include <cstring>

// Every start tag asks for its place, so this pass over the text must cost little beside the parser's own. Of simple
// text, which most files consist of, only the line feeds are looked for. In any other, nearly all bytes are plain all
// the same: ASCII and no carriage return. They are looked at eight at a time, line feeds among them; only what is not
// plain is looked at by itself.

namespace vrx {

namespace {

static_assert(std::endian::native == std::endian::little, "the first byte in memory must be the lowest of a word");

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::size_t LONG = 1024;
constexpr std::size_t WORD = sizeof(std::uint64_t);
constexpr std::uint64_t ONES = 0x0101010101010101U;
constexpr std::uint64_t TOPS = 0x80 * ONES;

/// Marks the bytes that are that character, with their highest bits.
std::uint64_t marksOf(char character, std::uint64_t word) noexcept {
    const std::uint64_t others = word ^ (static_cast<unsigned char>(character) * ONES);
    return ~(((others & ~TOPS) + ~TOPS) | others | ~TOPS);
}

bool isPlain(std::uint64_t word) noexcept { return ((word & TOPS) | marksOf('\r', word)) == 0; }

}  // namespace

void XmlPosition::advance(std::string_view bytes) noexcept {
    if (m_isAtStart && !bytes.empty()) {
        m_isAtStart = false;
        if (bytes.starts_with(BYTE_ORDER_MARK)) {
            bytes.remove_prefix(BYTE_ORDER_MARK.size());
        }
    }
    passLongText(bytes);
    while (!bytes.empty()) {
        const std::size_t size = std::min(WORD, bytes.size());
        std::uint64_t word = 0;
        size == WORD ? std::memcpy(&word, bytes.data(), WORD) : std::memcpy(&word, bytes.data(), size);
        if (!m_isAfterCr && isPlain(word)) {
            passPlain(word, size);
            bytes.remove_prefix(size);
        } else {
            pass(static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
        }
    }
}

void XmlPosition::advanceSimple(std::string_view bytes) noexcept {
    if (m_isAfterCr) {
        advance(bytes);
        return;
    }
    m_isAtStart = false;
    for (std::size_t lineFeed = bytes.find('\n'); lineFeed != std::string_view::npos; lineFeed = bytes.find('\n')) {
        m_place = {m_place.row + 1, 0};
        bytes.remove_prefix(lineFeed + 1);
    }
    m_place.column += static_cast<std::uint32_t>(bytes.size());
}

bool XmlPosition::isSimple(std::string_view bytes) noexcept {
    std::uint64_t seen = 0;
    std::size_t at = 0;
    for (; bytes.size() - at >= WORD; at += WORD) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, WORD);
        seen |= word;
    }
    for (; at < bytes.size(); ++at) {
        seen |= static_cast<unsigned char>(bytes[at]);
    }
    return (seen & TOPS) == 0 && bytes.find('\r') == std::string_view::npos;
}

/// Of whole lines only the number counts.
void XmlPosition::passLongText(std::string_view& bytes) noexcept {
    const std::size_t last = bytes.size() < LONG || m_isAfterCr ? std::string_view::npos : bytes.rfind('\n');
    if (last == std::string_view::npos || bytes.find('\r') < last) {
        return;
    }
    for (std::size_t at = bytes.find('\n'); at < last; at = bytes.find('\n', at + 1)) {
        ++m_place.row;
    }
    m_place = {m_place.row + 1, 0};
    bytes.remove_prefix(last + 1);
}

void XmlPosition::passPlain(std::uint64_t word, std::size_t size) noexcept {
    if (const std::uint64_t lineFeeds = marksOf('\n', word); lineFeeds == 0) {
        m_place.column += static_cast<std::uint32_t>(size);
    } else {
        m_place.row += static_cast<std::uint32_t>(((lineFeeds >> 7) * ONES) >> 56);
        m_place.column =
            static_cast<std::uint32_t>(size - 8 + static_cast<std::size_t>(std::countl_zero(lineFeeds)) / 8);
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
