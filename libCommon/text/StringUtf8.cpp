/// UTF-8 to UTF-16 and back.
///
/// Both directions copy runs of ASCII in blocks of fixed length, which the compiler turns into vector code: first all
/// units of a block are tested together, then all are copied. Everything else goes one character at a time.
///
/// The decoder is strict (no overlong forms, no surrogates, nothing above U+10FFFF). Of an invalid sequence it takes
/// the maximal subpart, that is the longest beginning that some valid sequence has, or else one byte, and writes one
/// U+FFFD for it.

#include "libCommon/text/String.h"

namespace vrx {

namespace {

constexpr char16_t REPLACEMENT = u'\uFFFD';
constexpr std::size_t BLOCK = 32;  // units that are tested and copied together

/// Copies ASCII until something else or the end comes; gives the number of units copied.
template <typename From, typename To>
std::size_t copyAscii(const From* __restrict from, std::size_t count, To* __restrict to) noexcept {
    std::size_t done = 0;
    for (; count - done >= BLOCK; done += BLOCK) {
        From seen = 0;
        for (std::size_t k = 0; k < BLOCK; ++k) {
            seen = static_cast<From>(seen | from[done + k]);
        }
        if (seen >= 0x80) {
            break;
        }
        for (std::size_t k = 0; k < BLOCK; ++k) {
            to[done + k] = static_cast<To>(from[done + k]);
        }
    }
    for (; done < count && from[done] < 0x80; ++done) {
        to[done] = static_cast<To>(from[done]);
    }
    return done;
}

/// One character that is no ASCII, or what is left of one.
struct Sequence {
    char32_t point;
    std::size_t length;
    bool valid;
};

/// What may follow a lead byte: how many bytes, and the bounds of the first of them.
struct LeadRule {
    unsigned following;
    unsigned char low;
    unsigned char high;
};

LeadRule ruleOf(unsigned char lead) noexcept {
    if (lead < 0xC2 || lead > 0xF4) {
        return {0, 0, 0};
    }
    if (lead < 0xE0) {
        return {1, 0x80, 0xBF};
    }
    if (lead < 0xF0) {
        return {2, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    }
    return {3, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
}

Sequence readSequence(const unsigned char* bytes, std::size_t left) noexcept {
    LeadRule rule = ruleOf(bytes[0]);
    if (rule.following == 0) {
        return {REPLACEMENT, 1, false};
    }
    char32_t point = bytes[0] & (0x3FU >> rule.following);
    for (std::size_t k = 1; k <= rule.following; ++k) {
        if (k == left || bytes[k] < rule.low || bytes[k] > rule.high) {
            return {REPLACEMENT, k, false};
        }
        point = point << 6 | (bytes[k] & 0x3FU);
        rule.low = 0x80;
        rule.high = 0xBF;
    }
    return {point, rule.following + 1U, true};
}

std::size_t writeUnits(char32_t point, char16_t* to) noexcept {
    if (point < 0x10000) {
        to[0] = static_cast<char16_t>(point);
        return 1;
    }
    to[0] = static_cast<char16_t>(0xD7C0 + (point >> 10));
    to[1] = static_cast<char16_t>(0xDC00 + (point & 0x3FF));
    return 2;
}

void noteDamage(StringView before, Utf8Damage& damage) noexcept {
    if (damage.count++ > 0) {
        return;
    }
    for (std::size_t index = 0; index < before.size(); ++index) {
        const bool isCrOfCrLf = before[index] == u'\r' && index + 1 < before.size() && before[index + 1] == u'\n';
        if (before[index] == u'\n' || (before[index] == u'\r' && !isCrOfCrLf)) {
            ++damage.row;
            damage.column = 0;
        } else {
            ++damage.column;
        }
    }
}

/// Appends one character that is no ASCII; gives the number of units that it was made of.
std::size_t appendCharacter(std::string& out, StringView text) {
    char32_t point = text[0];
    std::size_t units = 1;
    if (point >= 0xD800 && point < 0xE000) {
        const bool isPair = point < 0xDC00 && text.size() > 1 && text[1] >= 0xDC00 && text[1] < 0xE000;
        point = isPair ? 0x10000 + ((point - 0xD800) << 10) + (text[1] - 0xDC00U) : char32_t{REPLACEMENT};
        units = isPair ? 2 : 1;
    }
    const auto trail = [point](unsigned shift) {
        return static_cast<char>(0x80 | ((point >> shift) & 0x3F));
    };
    if (point < 0x800) {
        const char bytes[] = {static_cast<char>(0xC0 | point >> 6), trail(0)};
        out.append(bytes, 2);
    } else if (point < 0x10000) {
        const char bytes[] = {static_cast<char>(0xE0 | point >> 12), trail(6), trail(0)};
        out.append(bytes, 3);
    } else {
        const char bytes[] = {static_cast<char>(0xF0 | point >> 18), trail(12), trail(6), trail(0)};
        out.append(bytes, 4);
    }
    return units;
}

/// Appends the ASCII that the text begins with; gives its length.
std::size_t appendAscii(std::string& out, StringView text) {
    const std::size_t before = out.size();
    out.resize(before + text.size());
    const std::size_t copied =
        copyAscii(text.data(), text.size(), reinterpret_cast<unsigned char*>(out.data()) + before);
    out.resize(before + copied);
    return copied;
}

std::size_t asciiLength(StringView text) noexcept {
    std::size_t length = 0;
    while (length < text.size() && text[length] < 0x80) {
        ++length;
    }
    return length;
}

}  // namespace

String String::UTF8Decode(std::string_view bytes, Utf8Damage* damage) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    Utf8Damage found;
    const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    std::u16string text(left, u'\0');  // a character never has more units than bytes
    std::size_t size = 0;
    while (left > 0) {
        const std::size_t copied = copyAscii(at, left, text.data() + size);
        size += copied;
        at += copied;
        left -= copied;
        while (left > 0 && *at >= 0x80) {
            const Sequence sequence = readSequence(at, left);
            if (!sequence.valid) {
                noteDamage(StringView(text.data(), size), found);
            }
            size += writeUnits(sequence.point, text.data() + size);
            at += sequence.length;
            left -= sequence.length;
        }
    }
    text.resize(size);
    if (damage != nullptr) {
        *damage = found;
    }
    return String(std::move(text));
}

void appendUtf8(std::string& out, StringView text) {
    text.remove_prefix(appendAscii(out, text));
    while (!text.empty()) {
        text.remove_prefix(appendCharacter(out, text));
        // What follows is no longer taken for ASCII as a whole: room is made for each run alone.
        text.remove_prefix(appendAscii(out, text.substr(0, asciiLength(text))));
    }
}

std::string toUtf8(StringView text) {
    std::string bytes;
    appendUtf8(bytes, text);
    return bytes;
}

std::string String::toUtf8() const { return vrx::toUtf8(m_text); }

}  // namespace vrx
