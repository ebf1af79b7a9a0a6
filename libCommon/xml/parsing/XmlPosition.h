#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vrx {

/// A place in a text: 0-based line, and 0-based column in UTF-16 code units.
struct XmlPlace {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
};

/// Follows the row and column through a UTF-8 text that passes by in pieces. Lines end at LF, CR LF or CR; a tab is one
/// column; a byte-order mark at the very start takes none.
class XmlPosition {
public:
    XmlPosition() noexcept = default;

    /// Somewhere behind the start of a text, at a place that does not lie within a line end.
    explicit XmlPosition(XmlPlace place) noexcept : m_place(place), m_isAtStart(false) {}

    XmlPlace place() const noexcept { return m_place; }

    /// Moves past the next piece. Requires: a byte-order mark is not cut in two.
    void advance(std::string_view bytes) noexcept;

    /// The same, a few times as fast. Requires: the piece is simple.
    void advanceSimple(std::string_view bytes) noexcept;

    /// Whether the bytes are ASCII without a carriage return, as nearly all texts are.
    static bool isSimple(std::string_view bytes) noexcept;

private:
    void passLongText(std::string_view& bytes) noexcept;

    /// Up to 8 bytes, none of them beyond ASCII or a carriage return; behind them the word holds zeros.
    void passPlain(std::uint64_t word, std::size_t size) noexcept;
    void pass(unsigned char byte) noexcept;

    XmlPlace m_place;
    bool m_isAtStart = true;
    bool m_isAfterCr = false;
};

}  // namespace vrx
