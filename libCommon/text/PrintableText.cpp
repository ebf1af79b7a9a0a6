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

/// What a terminal acts on or does not show: control characters, marks that change the direction of the text around
/// them or break lines, all that has no shape of its own (soft hyphen, joiners, selectors, tags), and what is no
/// character. Texts that differ in these alone look the same, and some are made to.
constexpr CodePointRange HIDDEN[] = {
    {0x00, 0x1F},       {0x7F, 0x9F},       {0xAD, 0xAD},      {0x34F, 0x34F},   {0x61C, 0x61C},   {0x115F, 0x1160},
    {0x17B4, 0x17B5},   {0x180B, 0x180F},   {0x200B, 0x200F},  {0x2028, 0x202E}, {0x2060, 0x206F}, {0x3164, 0x3164},
    {0xFDD0, 0xFDEF},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFFB}, {0xFFFE, 0xFFFF},
    {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

bool isHidden(std::uint32_t codePoint) noexcept {
    const bool isUsual = (codePoint >= 0x20 && codePoint < 0x7F) || (codePoint >= 0xA0 && codePoint < 0xAD);
    return !isUsual && (isIn(HIDDEN, codePoint) || (codePoint & 0xFFFE) == 0xFFFE);
}

bool isHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The character at the index; half of a surrogate pair stands for itself.
std::uint32_t codePointAt(StringView text, std::size_t index) noexcept {
    const char16_t unit = text[index];
    return isHighSurrogate(unit) && index + 1 < text.size() && isLowSurrogate(text[index + 1])
               ? 0x10000u + ((unit - 0xD800u) << 10) + (text[index + 1] - 0xDC00u)
               : unit;
}

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

/// Requires: valid UTF-8 of more than one byte.
std::uint32_t codePointOf(std::string_view character) noexcept {
    auto codePoint = static_cast<std::uint32_t>(static_cast<unsigned char>(character[0])) & (0x7Fu >> character.size());
    for (const char next : character.substr(1)) {
        codePoint = codePoint << 6 | (static_cast<unsigned char>(next) & 0x3Fu);
    }
    return codePoint;
}

unsigned widthOf(std::string_view character) noexcept {
    if (character.size() < 2) {
        return 1;
    }
    const std::uint32_t codePoint = codePointOf(character);
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
    for (std::size_t i = 0; i < text.size();) {
        const std::uint32_t codePoint = codePointAt(text, i);
        const std::size_t next = codePoint > 0xFFFF ? i + 2 : i + 1;
        if (isHidden(codePoint) || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
            appendUtf8(out, text.substr(plain, i - plain));
            for (; i < next; ++i) {
                appendEscaped(out, text[i]);
            }
            plain = next;
        }
        i = next;
    }
    appendUtf8(out, text.substr(plain));
    return out;
}

std::string printable(std::string_view utf8) { return printable(String::UTF8Decode(utf8).view()); }

std::string printableValue(StringView text) {
    const bool showsQuotes = text.empty() || text.front() == u' ' || text.back() == u' ';
    return showsQuotes ? "\"" + printable(text) + "\"" : printable(text);
}

std::string printableMarkup(std::string_view utf8, Markup markup) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const std::string_view character = characterAt(utf8, at);
        const auto codePoint = character.size() > 1 ? codePointOf(character) : static_cast<unsigned char>(utf8[at]);
        at += character.size();
        if (!isHidden(codePoint) || codePoint == '\n' || codePoint == '\t') {
            out += character;
        } else if (markup == Markup::Xml) {
            fmt::format_to(std::back_inserter(out), "&#x{:X};", codePoint);
        } else {
            out += printable(character);
        }
    }
    return out;
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
