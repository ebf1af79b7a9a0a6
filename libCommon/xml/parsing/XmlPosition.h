#pragma once

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
    XmlPlace place() const noexcept { return m_place; }

    /// Moves past the next piece. Requires: a byte-order mark is not cut in two.
    void advance(std::string_view bytes) noexcept;

private:
    void pass(unsigned char byte) noexcept;

    XmlPlace m_place;
    bool m_isAtStart = true;
    bool m_isAfterCr = false;
};

}  // namespace vrx
