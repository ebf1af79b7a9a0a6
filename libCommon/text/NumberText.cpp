#include "libCommon/text/NumberText.h"

#include <charconv>
#include <cmath>

namespace vrx {

namespace {

String fromAscii(const char* begin, const char* end) { return String(std::u16string(begin, end)); }

template <typename Integer>
String integerText(Integer number) {
    char digits[24];
    return fromAscii(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

/// The text in bytes without a leading plus sign, as std::from_chars wants it; empty when it holds anything but the
/// characters of decimal numbers ("inf", "nan" and "0x" fall out here). Nearly every number fits without allocation.
class NumberBytes {
public:
    explicit NumberBytes(StringView text) {
        if (text.starts_with(u'+') && !text.starts_with(u"+-")) {
            text.remove_prefix(1);
        }
        if (text.find_first_not_of(u"0123456789+-.eE") != StringView::npos) {
            return;
        }
        if (text.size() > sizeof m_short) {
            m_long.assign(text.begin(), text.end());
            m_bytes = m_long;
            return;
        }
        for (std::size_t index = 0; index < text.size(); ++index) {
            m_short[index] = static_cast<char>(text[index]);
        }
        m_bytes = std::string_view(m_short, text.size());
    }

    /// The number that all of the bytes are; empty when they are none or it does not fit.
    template <typename Number>
    std::optional<Number> parse() const noexcept {
        Number number = 0;
        const char* end = m_bytes.data() + m_bytes.size();
        const auto [stop, failure] = std::from_chars(m_bytes.data(), end, number);
        return failure == std::errc() && stop == end ? std::optional<Number>(number) : std::nullopt;
    }

private:
    char m_short[64];
    std::string m_long;
    std::string_view m_bytes;
};

}  // namespace

String toText(std::uint64_t number) { return integerText(number); }

String toText(std::int64_t number) { return integerText(number); }

String toText(double number) {
    char digits[64];
    char* const end = digits + sizeof digits;
    const double magnitude = std::fabs(number);
    if (magnitude == 0) {
        return u"0";  // minus zero too: it reads back to an equal value
    }
    const bool isPlain = magnitude >= 1e-5 && magnitude < 1e16;
    const auto result =
        isPlain ? std::to_chars(digits, end, number, std::chars_format::fixed) : std::to_chars(digits, end, number);
    return fromAscii(digits, result.ptr);
}

std::optional<double> parseReal(StringView text) noexcept { return NumberBytes(text).parse<double>(); }

std::optional<std::int64_t> parseInteger(StringView text) noexcept { return NumberBytes(text).parse<std::int64_t>(); }

}  // namespace vrx
