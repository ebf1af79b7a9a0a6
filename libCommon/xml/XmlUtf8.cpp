#include "libCommon/xml/XmlUtf8.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace vrx {

namespace {

constexpr std::size_t BLOCK = 8;  // units that are narrowed at once

bool isHighSurrogate(std::uint32_t unit) noexcept { return (unit & 0xFC00U) == 0xD800U; }

bool isLowSurrogate(std::uint32_t unit) noexcept { return (unit & 0xFC00U) == 0xDC00U; }

/// Converts COUNT units. The copies tell the compiler that the two do not overlap, so that it makes vector code of
/// this.
template <std::size_t COUNT, typename From, typename To>
void convertBlock(const From* in, To* out) noexcept {
    From from[COUNT];
    To to[COUNT];
    std::memcpy(from, in, sizeof from);
    for (std::size_t i = 0; i < COUNT; ++i) {
        to[i] = static_cast<To>(from[i]);
    }
    std::memcpy(out, to, sizeof to);
}

/// Widens SIZE bytes; false, with nothing written, when one of them is not ASCII.
template <std::size_t SIZE>
bool widenBlock(const char* in, char16_t* out) noexcept {
    std::conditional_t<SIZE == 8, std::uint64_t, std::uint32_t> word;
    static_assert(sizeof word == SIZE);
    std::memcpy(&word, in, SIZE);
    if ((word & static_cast<decltype(word)>(0x8080808080808080U)) != 0) {
        return false;
    }
    convertBlock<SIZE>(in, out);
    return true;
}

/// The same for a text of at least SIZE bytes. The last block overlaps the one before it where the size asks for it.
template <std::size_t SIZE>
bool widenAscii(std::string_view bytes, char16_t* out) noexcept {
    const std::size_t last = bytes.size() - SIZE;
    for (std::size_t i = 0; i < last; i += SIZE) {
        if (!widenBlock<SIZE>(bytes.data() + i, out + i)) {
            return false;
        }
    }
    return widenBlock<SIZE>(bytes.data() + last, out + last);
}

/// Narrows leading blocks that are pure ASCII.
void narrowAsciiBlocks(const char16_t*& in, const char16_t* end, char*& out, const char* outEnd) noexcept {
    while (static_cast<std::size_t>(end - in) >= BLOCK && static_cast<std::size_t>(outEnd - out) >= BLOCK) {
        std::uint64_t words[2];
        std::memcpy(words, in, sizeof words);
        if (((words[0] | words[1]) & 0xFF80FF80FF80FF80U) != 0) {
            return;
        }
        convertBlock<BLOCK>(in, out);
        in += BLOCK;
        out += BLOCK;
    }
}

std::uint32_t continuation(const char* in, std::size_t index) noexcept {
    return static_cast<unsigned char>(in[index]) & 0x3FU;
}

/// Decodes the sequence of two to four bytes at `in`.
void decodeSequence(const char*& in, char16_t*& out) noexcept {
    const std::uint32_t lead = static_cast<unsigned char>(*in);
    if (lead < 0xE0) {
        *out++ = static_cast<char16_t>(((lead & 0x1FU) << 6) | continuation(in, 1));
        in += 2;
    } else if (lead < 0xF0) {
        *out++ = static_cast<char16_t>(((lead & 0x0FU) << 12) | (continuation(in, 1) << 6) | continuation(in, 2));
        in += 3;
    } else {
        const std::uint32_t point =
            ((lead & 0x07U) << 18) | (continuation(in, 1) << 12) | (continuation(in, 2) << 6) | continuation(in, 3);
        *out++ = static_cast<char16_t>(0xD800U + ((point - 0x10000U) >> 10));
        *out++ = static_cast<char16_t>(0xDC00U + (point & 0x3FFU));
        in += 4;
    }
}

/// Encodes one code point.
void encodePoint(std::uint32_t point, char*& out) noexcept {
    if (point < 0x80) {
        *out++ = static_cast<char>(point);
        return;
    }
    if (point < 0x800) {
        *out++ = static_cast<char>(0xC0U | (point >> 6));
    } else {
        if (point < 0x10000) {
            *out++ = static_cast<char>(0xE0U | (point >> 12));
        } else {
            *out++ = static_cast<char>(0xF0U | (point >> 18));
            *out++ = static_cast<char>(0x80U | ((point >> 12) & 0x3FU));
        }
        *out++ = static_cast<char>(0x80U | ((point >> 6) & 0x3FU));
    }
    *out++ = static_cast<char>(0x80U | (point & 0x3FU));
}

}  // namespace

char16_t* decodeValidUtf8(std::string_view bytes, char16_t* out) noexcept {
    if (bytes.size() >= 8 ? widenAscii<8>(bytes, out) : bytes.size() >= 4 && widenAscii<4>(bytes, out)) {
        return out + bytes.size();
    }
    const char* in = bytes.data();
    const char* const end = in + bytes.size();
    while (in != end) {
        if (static_cast<unsigned char>(*in) < 0x80) {
            *out++ = static_cast<unsigned char>(*in++);
        } else {
            decodeSequence(in, out);
        }
    }
    return out;
}

std::size_t encodeUtf8Chunk(StringView& text, char* out, std::size_t capacity) noexcept {
    const char16_t* in = text.data();
    const char16_t* const end = in + text.size();
    char* const begin = out;
    const char* const outEnd = out + capacity;
    narrowAsciiBlocks(in, end, out, outEnd);
    while (in != end && outEnd - out >= 4) {
        std::uint32_t point = *in++;
        if (isHighSurrogate(point) && in != end && isLowSurrogate(*in)) {
            point = 0x10000U + ((point - 0xD800U) << 10) + (*in++ - 0xDC00U);
        }
        encodePoint(point, out);
        if (point >= 0x80) {
            narrowAsciiBlocks(in, end, out, outEnd);
        }
    }
    text.remove_prefix(static_cast<std::size_t>(in - text.data()));
    return static_cast<std::size_t>(out - begin);
}

}  // namespace vrx
