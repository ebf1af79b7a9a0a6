#pragma once

#include <cstdint>
#include <string_view>

namespace vrx {

/// A place in a text: 0-based line, and 0-based column in UTF-16 code units.
struct XmlPlace {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
};

/// Tells the row and column of places in a text that are asked for in ascending order, one pass over the text for all
/// of them. Lines end at LF, CR LF or CR; a tab is one column; a leading byte-order mark takes none.
///
/// `Unit` is char for UTF-8 and char16_t for UTF-16. Either way a place is named by its offset in the text's UTF-8
/// form, because that is what the XML parser counts in.
template <typename Unit>
class XmlPosition {
public:
    explicit XmlPosition(std::basic_string_view<Unit> text) noexcept;

    /// The place of a byte. Asking for an earlier one than last time is allowed and starts over.
    XmlPlace advanceTo(std::uint64_t byteIndex) noexcept;

    /// The text from the place asked for last to its end.
    std::basic_string_view<Unit> rest() const noexcept { return m_text.substr(m_next); }

private:
    void restart() noexcept;
    void skipPlainUnits(std::uint64_t byteIndex) noexcept;
    void step() noexcept;

    std::basic_string_view<Unit> m_text;
    std::size_t m_next = 0;
    std::uint64_t m_bytes = 0;
    XmlPlace m_place;
};

extern template class XmlPosition<char>;
extern template class XmlPosition<char16_t>;

}  // namespace vrx
