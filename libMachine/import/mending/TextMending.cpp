/// One pass over the bytes. Runs of printable ASCII, which nearly all of a recording is, are copied whole; everything
/// else is looked at one character at a time.

#include "libMachine/import/mending/TextMending.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "libCommon/text/String.h"

namespace vrx {

namespace {

constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";

unsigned byteAt(std::string_view bytes, std::size_t at) noexcept {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
}

bool isPlain(char byte) noexcept {
    const auto code = static_cast<unsigned char>(byte);
    return (code >= 0x20 && code < 0x7F) || byte == '\n' || byte == '\t' || byte == '\r';
}

constexpr std::size_t BLOCK = 64;

/// The compiler compares many bytes at once.
bool isPlainBlock(const char* bytes) noexcept {
    unsigned char odd = 0;
    for (std::size_t i = 0; i < BLOCK; ++i) {
        odd = static_cast<unsigned char>(odd | (isPlain(bytes[i]) ? 0U : 1U));
    }
    return odd == 0;
}

/// The length of the UTF-8 sequence that starts there; 0 when there is none.
std::size_t sequenceLength(std::string_view bytes, std::size_t at) noexcept {
    const unsigned first = byteAt(bytes, at);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length < 2 || first > 0xF4) {
        return length == 1 ? 1 : 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(bytes, at + i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const unsigned second = byteAt(bytes, at + 1);
    const bool isTooShort = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isTooLarge = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return isTooShort || isTooLarge ? 0 : length;
}

/// U+FFFE and U+FFFF, which are no characters, and the controls of the second half of Latin-1.
bool isLeftOut(std::string_view sequence) noexcept {
    if (sequence.size() == 1) {
        return !isPlain(sequence.front());
    }
    const unsigned second = byteAt(sequence, 1);
    return (sequence.size() == 2 && byteAt(sequence, 0) == 0xC2 && second < 0xA0) ||
           (sequence.starts_with("\xEF\xBF") && byteAt(sequence, 2) >= 0xBE);
}

class TextMender {
public:
    TextMender(std::string_view bytes, DamageList& damage) : m_bytes(bytes), m_damage(damage) {}

    std::string mend() {
        m_text.reserve(m_bytes.size());
        while (m_at < m_bytes.size()) {
            copyPlain();
            if (m_at < m_bytes.size()) {
                takeOne();
            }
        }
        return std::move(m_text);
    }

private:
    void copyPlain() {
        const char* const start = m_bytes.data() + m_at;
        const char* const last = m_bytes.data() + m_bytes.size();
        const char* end = start;
        while (static_cast<std::size_t>(last - end) >= BLOCK && isPlainBlock(end)) {
            end += BLOCK;
        }
        end = std::find_if_not(end, last, isPlain);
        m_text.append(start, end);
        m_at += static_cast<std::size_t>(end - start);
    }

    void takeOne() {
        const std::size_t length = sequenceLength(m_bytes, m_at);
        const std::string_view sequence = m_bytes.substr(m_at, length);
        if (length == 0) {
            count(DamageKind::BytesNotUtf8);
            m_text.append(REPLACEMENT);
        } else if (isLeftOut(sequence)) {
            count(DamageKind::ControlCharacters);
        } else {
            m_text.append(sequence);
        }
        m_at += std::max<std::size_t>(length, 1);
    }

    void count(DamageKind kind) {
        m_line += static_cast<std::size_t>(std::count(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_counted),
                                                      m_bytes.begin() + static_cast<std::ptrdiff_t>(m_at), '\n'));
        m_counted = m_at;
        m_damage.add(kind, m_line);
    }

    std::string_view m_bytes;
    DamageList& m_damage;
    std::string m_text;
    std::size_t m_at = 0;
    std::size_t m_counted = 0;  // up to where line ends are in m_line
    std::size_t m_line = 1;
};

std::string fromUtf16(std::string_view bytes, Utf16Order order) {
    const std::size_t low = order == Utf16Order::LittleEndian ? 0 : 1;
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        units.push_back(static_cast<char16_t>(byteAt(bytes, at + low) | byteAt(bytes, at + 1 - low) << 8));
    }
    return toUtf8(units);
}

}  // namespace

Utf16Order utf16Order(std::string_view bytes) noexcept {
    const unsigned first = byteAt(bytes, 0);
    const unsigned second = byteAt(bytes, 1);
    if (bytes.size() < 2) {
        return Utf16Order::None;
    }
    if ((first == 0xFF && second == 0xFE) || (first != 0 && second == 0 && byteAt(bytes, 3) == 0 && bytes.size() > 3)) {
        return Utf16Order::LittleEndian;
    }
    const bool isBig = (first == 0xFE && second == 0xFF) || (first == 0 && second != 0 && byteAt(bytes, 2) == 0);
    return isBig ? Utf16Order::BigEndian : Utf16Order::None;
}

std::string mendedText(std::string_view bytes, DamageList& damage) {
    static constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
    std::string decoded;
    if (const Utf16Order order = utf16Order(bytes); order != Utf16Order::None) {
        decoded = fromUtf16(bytes, order);
        bytes = decoded;
    }
    if (bytes.starts_with(BYTE_ORDER_MARK)) {
        bytes.remove_prefix(BYTE_ORDER_MARK.size());
    }
    return TextMender(bytes, damage).mend();
}

}  // namespace vrx
