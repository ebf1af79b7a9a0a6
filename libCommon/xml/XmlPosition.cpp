#include "libCommon/xml/XmlPosition.h"

#include <algorithm>
#include <bit>
#include <cstring>

// Every start tag asks for its place, so this pass over the text must cost little beside the parser's own. Nearly all
// units are plain: ASCII and no control character, one column and one byte each. They are skipped eight bytes of memory
// at a time; only what is not plain is looked at by itself.

namespace vrx {

namespace {

static_assert(std::endian::native == std::endian::little, "the first unit in memory must be the lowest lane of a word");

/// A word of eight bytes as lanes of one unit each.
template <typename Unit>
struct Lanes {
    static constexpr unsigned BITS = 8 * sizeof(Unit);
    static constexpr unsigned COUNT = 64 / BITS;
    static constexpr std::uint64_t ONES = ~std::uint64_t{0} / ((std::uint64_t{1} << BITS) - 1);
    static constexpr std::uint64_t TOPS = ONES << (BITS - 1);
    static constexpr std::uint64_t NOT_ASCII = ONES * (((std::uint64_t{1} << BITS) - 1) & ~std::uint64_t{0x7F});

    static constexpr std::uint64_t LINE_ENDS = ONES * 0x0E;  // LF and CR lie below

    /// Marks the units that are not plain: the lowest bit set is in the first one, higher ones mean nothing.
    static std::uint64_t marks(std::uint64_t word) noexcept { return ((word - LINE_ENDS) & TOPS) | (word & NOT_ASCII); }
};

/// Columns and bytes of a unit that is no line end.
struct Width {
    unsigned columns;
    unsigned bytes;
};

/// Of a UTF-8 sequence the first byte counts: as two columns when the code point needs a surrogate pair.
Width widthOf(char unit) noexcept {
    const auto byte = static_cast<unsigned char>(unit);
    return {(byte & 0xC0U) == 0x80U ? 0U : (byte >= 0xF0U ? 2U : 1U), 1};
}

/// A surrogate counts for half of the four bytes of its pair; an unpaired one is an error, beyond which nobody asks.
Width widthOf(char16_t unit) noexcept {
    const bool isSurrogate = (unit & 0xF800U) == 0xD800U;
    return {1, unit < 0x80U ? 1U : (unit < 0x800U || isSurrogate ? 2U : 3U)};
}

std::size_t byteOrderMarkSize(std::string_view text) noexcept { return text.starts_with("\xEF\xBB\xBF") ? 3 : 0; }

std::size_t byteOrderMarkSize(std::u16string_view text) noexcept { return text.starts_with(u'\uFEFF') ? 1 : 0; }

}  // namespace

template <typename Unit>
XmlPosition<Unit>::XmlPosition(std::basic_string_view<Unit> text) noexcept : m_text(text) {
    restart();
}

template <typename Unit>
void XmlPosition<Unit>::restart() noexcept {
    m_next = byteOrderMarkSize(m_text);
    m_bytes = m_next == 0 ? 0 : 3;
    m_place = XmlPlace();
}

template <typename Unit>
XmlPlace XmlPosition<Unit>::advanceTo(std::uint64_t byteIndex) noexcept {
    if (byteIndex < m_bytes) {
        restart();
    }
    skipPlainUnits(byteIndex);
    while (m_bytes < byteIndex && m_next < m_text.size()) {
        step();
        skipPlainUnits(byteIndex);
    }
    return m_place;
}

template <typename Unit>
void XmlPosition<Unit>::skipPlainUnits(std::uint64_t byteIndex) noexcept {
    using Word = Lanes<Unit>;
    if (m_bytes >= byteIndex) {
        return;
    }
    const std::size_t begin = m_next;
    const std::size_t end =
        begin + static_cast<std::size_t>(std::min<std::uint64_t>(byteIndex - m_bytes, m_text.size() - begin));
    std::size_t next = begin;
    std::uint64_t marks = 0;
    while (marks == 0 && end - next >= Word::COUNT) {
        std::uint64_t word;
        std::memcpy(&word, m_text.data() + next, sizeof word);
        marks = Word::marks(word);
        next += marks == 0 ? Word::COUNT : static_cast<unsigned>(std::countr_zero(marks)) / Word::BITS;
    }
    m_next = next;
    m_bytes += next - begin;
    m_place.column += static_cast<std::uint32_t>(next - begin);
}

template <typename Unit>
void XmlPosition<Unit>::step() noexcept {
    const Unit unit = m_text[m_next];
    if (unit == Unit{'\n'} || unit == Unit{'\r'}) {
        const bool endsCrLf = unit == Unit{'\n'} && m_next > 0 && m_text[m_next - 1] == Unit{'\r'};
        m_place = {m_place.row + (endsCrLf ? 0U : 1U), 0};
        ++m_bytes;
    } else {
        const Width width = widthOf(unit);
        m_place.column += width.columns;
        m_bytes += width.bytes;
    }
    ++m_next;
}

template class XmlPosition<char>;
template class XmlPosition<char16_t>;

}  // namespace vrx
