#include "libCommon/text/PrintableText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace vrx {

namespace {

struct CodePointRange {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr CodePointRange WIDE[] = {{0x1100, 0x115F}, {0x2E80, 0xA4CF},   {0xAC00, 0xD7A3},
                                   {0xF900, 0xFAFF}, {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                                   {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};
constexpr CodePointRange WITHOUT_WIDTH[] = {{0x0300, 0x036F}, {0x200B, 0x200D}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};

template <std::size_t N>
bool isIn(const CodePointRange (&ranges)[N], std::uint32_t codePoint) noexcept {
    return std::any_of(std::begin(ranges), std::end(ranges), [codePoint](const CodePointRange& range) {
        return codePoint >= range.first && codePoint <= range.last;
    });
}

/// Control characters, and marks that change the direction of the text around them or break lines.
bool isActedOn(char16_t unit) noexcept {
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) || unit == 0x061C || unit == 0x200E || unit == 0x200F ||
           (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF;
}

bool isHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

void appendEscaped(std::string& out, char16_t unit) {
    switch (unit) {
        case u'\n': out += "\\n"; break;
        case u'\r': out += "\\r"; break;
        case u'\t': out += "\\t"; break;
        default: fmt::format_to(std::back_inserter(out), "\\u{:04X}", static_cast<unsigned>(unit)); break;
    }
}

/// Bytes of the character that starts with this byte of valid UTF-8.
std::size_t sequenceLength(char lead) noexcept {
    const auto byte = static_cast<unsigned char>(lead);
    return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

std::string_view characterAt(std::string_view utf8, std::size_t position) noexcept {
    return utf8.substr(position, sequenceLength(utf8[position]));
}

unsigned widthOf(std::string_view character) noexcept {
    if (character.size() < 2) {
        return 1;
    }
    auto codePoint = static_cast<std::uint32_t>(static_cast<unsigned char>(character[0])) & (0x7Fu >> character.size());
    for (const char next : character.substr(1)) {
        codePoint = codePoint << 6 | (static_cast<unsigned char>(next) & 0x3Fu);
    }
    return isIn(WITHOUT_WIDTH, codePoint) ? 0 : isIn(WIDE, codePoint) ? 2 : 1;
}

/// The longest leading piece that fits: up to the last blank that fits, else as many characters as fit.
std::size_t fittingLength(std::string_view text, unsigned width) {
    unsigned used = 0;
    std::size_t blank = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view character = characterAt(text, at);
        used += widthOf(character);
        if (used > width) {
            if (text[at] == ' ') {
                return at;
            }
            return blank > 0 ? blank : std::max(at, sequenceLength(text[0]));
        }
        if (text[at] == ' ') {
            blank = at;
        }
        at += character.size();
    }
    return text.size();
}

}  // namespace

std::string printable(StringView text) {
    std::string out;
    out.reserve(text.size());
    std::size_t plain = 0;  // start of the piece that is not written yet
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            ++i;
        } else if (isActedOn(text[i]) || isHighSurrogate(text[i]) || isLowSurrogate(text[i])) {
            appendUtf8(out, text.substr(plain, i - plain));
            appendEscaped(out, text[i]);
            plain = i + 1;
        }
    }
    appendUtf8(out, text.substr(plain));
    return out;
}

std::string printable(std::string_view utf8) { return printable(String::UTF8Decode(utf8).view()); }

std::string printableValue(StringView text) {
    const bool showsQuotes = text.empty() || text.front() == u' ' || text.back() == u' ';
    return showsQuotes ? "\"" + printable(text) + "\"" : printable(text);
}

unsigned displayWidth(std::string_view utf8) {
    unsigned width = 0;
    for (std::size_t at = 0; at < utf8.size(); at += sequenceLength(utf8[at])) {
        width += widthOf(characterAt(utf8, at));
    }
    return width;
}

std::vector<std::string> wrapped(std::string_view utf8, unsigned width) {
    const std::size_t blanks = std::min(utf8.find_first_not_of(' '), utf8.size());
    const std::size_t hanging = blanks > 0 && blanks + 2 <= width / 2 ? blanks + 2 : 0;
    std::vector<std::string> lines;
    std::string indent(hanging > 0 ? blanks : 0, ' ');
    utf8.remove_prefix(indent.size());
    do {
        const std::size_t length = fittingLength(utf8, width - static_cast<unsigned>(indent.size()));
        lines.push_back(indent + std::string(utf8.substr(0, length)));
        utf8.remove_prefix(length);
        if (!utf8.empty() && utf8.front() == ' ') {
            utf8.remove_prefix(1);  // the blank that the line was broken at
        }
        indent.assign(hanging, ' ');
    } while (!utf8.empty());
    return lines;
}

}  // namespace vrx
