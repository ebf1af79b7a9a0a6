/// Everything comes from one function: the name-based UUID (SHA-1) of the text in a namespace of this program's own.
/// Texts longer than one such value has bytes for take further ones, of the text with a number behind it.
///
/// Letter case and separators are no part of an address or a UUID, so the text that is hashed for these is without
/// them: programs spell them differently.

#include "libMachine/record/Pseudonym.h"

#include <algorithm>
#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cctype>
#include <cstdint>

#include "libMachine/record/CleanText.h"
#include "libMachine/record/Letters.h"

namespace vrx {

namespace {

constexpr boost::uuids::uuid NAMESPACE = {
    {0x5b, 0x0f, 0x3c, 0x1e, 0x92, 0x7d, 0x4f, 0x60, 0xa8, 0x41, 0x6d, 0x17, 0x2c, 0xe9, 0x50, 0xb4}};

bool isHex(char unit) noexcept { return isDigit(unit) || (unit >= 'a' && unit <= 'f') || (unit >= 'A' && unit <= 'F'); }

/// As many bytes as are asked for, all decided by one text.
class ByteStream {
public:
    explicit ByteStream(std::string_view text) : m_text(text) { fill(); }

    unsigned next() {
        if (m_next == FREE_BYTES) {
            m_text += '\0';
            fill();
        }
        const unsigned byte = m_block.data[m_next < 6 ? m_next : m_next + 3];  // between them are bits of fixed meaning
        ++m_next;
        return byte;
    }

private:
    static constexpr std::size_t FREE_BYTES = 13;
    void fill() {
        m_block = boost::uuids::name_generator_sha1(NAMESPACE)(m_text);
        m_next = 0;
    }

    std::string m_text;
    boost::uuids::uuid m_block{};
    std::size_t m_next = 0;
};

std::string hexDigitsOf(std::string_view text) {
    std::string digits;
    for (const char unit : text) {
        if (isHex(unit)) {
            digits.push_back(unit);
        }
    }
    return smallLetters(digits);
}

char hexDigit(unsigned value, bool isUpper) noexcept {
    return (isUpper ? "0123456789ABCDEF" : "0123456789abcdef")[value & 0xF];
}

/// How much of a text says what kind of number the rest is.
std::size_t prefixSize(std::string_view text) noexcept {
    static constexpr std::string_view KINDS[] = {"naa.", "eui.", "nvme.", "t10.", "0x"};
    const auto* const kind = std::find_if(std::begin(KINDS), std::end(KINDS),
                                          [text](std::string_view start) { return text.starts_with(start); });
    return kind == std::end(KINDS) ? 0 : kind->size();
}

/// Eight letters and digits or more that are all hexadecimal, letters among them: a number, no word.
bool isHexNumber(std::string_view text) noexcept {
    static constexpr std::size_t SHORTEST = 8;
    return text.size() >= SHORTEST && std::any_of(text.begin(), text.end(), isDigit<char>) &&
           std::all_of(text.begin(), text.end(), [](char unit) { return isHex(unit) || unit == '-' || unit == ':'; });
}

char replacement(char unit, bool isHexadecimal, unsigned byte) noexcept {
    if (isDigit(unit)) {
        return static_cast<char>('0' + byte % 10);
    }
    const unsigned letters = isHexadecimal ? 6 : 26;
    if (isSmallLetter(unit)) {
        return static_cast<char>('a' + byte % letters);
    }
    return isCapitalLetter(unit) ? static_cast<char>('A' + byte % letters) : unit;
}

}  // namespace

std::string pseudonym(std::string_view text) {
    const std::size_t prefix = prefixSize(text);
    const bool isHexadecimal = isHexNumber(text.substr(prefix));
    ByteStream bytes(text);
    std::string other(text);
    for (std::size_t i = prefix; i < other.size(); ++i) {
        if (std::isalnum(static_cast<unsigned char>(other[i])) != 0) {
            other[i] = replacement(other[i], isHexadecimal, bytes.next());
        }
    }
    return other;
}

std::string addressPseudonym(std::string_view address) {
    static constexpr unsigned LOCAL = 0x02;
    static constexpr unsigned GROUP = 0x01;
    ByteStream bytes(hexDigitsOf(address));
    const bool isUpper = std::any_of(address.begin(), address.end(), isCapitalLetter<char>);
    std::string other(address);
    unsigned byte = 0;
    std::size_t digits = 0;
    for (char& unit : other) {
        if (!isHex(unit)) {
            continue;
        }
        if (digits % 2 == 0) {
            byte = bytes.next();
            byte = digits == 0 ? (byte | LOCAL) & ~GROUP : byte;
        }
        unit = hexDigit(digits % 2 == 0 ? byte >> 4 : byte, isUpper);
        ++digits;
    }
    return other;
}

std::string uuidPseudonym(std::string_view uuid) {
    const std::string other = boost::uuids::to_string(boost::uuids::name_generator_sha1(NAMESPACE)(hexDigitsOf(uuid)));
    if (std::none_of(uuid.begin(), uuid.end(), isCapitalLetter<char>)) {
        return other;
    }
    std::string upper = other;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char unit) { return isSmallLetter(unit) ? static_cast<char>(unit - 'a' + 'A') : unit; });
    return upper;
}

bool isUuid(std::string_view text) noexcept {
    static constexpr std::string_view FORM = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    return text.size() == FORM.size() && std::equal(text.begin(), text.end(), FORM.begin(), [](char unit, char form) {
               return form == 'x' ? isHex(unit) : unit == form;
           });
}

bool isHardwareAddress(std::string_view text) noexcept {
    static constexpr std::size_t SIZE = 17;
    const char separator = text.size() == SIZE ? text[2] : '\0';
    if (separator != ':' && separator != '-') {
        return false;
    }
    for (std::size_t i = 0; i < SIZE; ++i) {
        if (i % 3 == 2 ? text[i] != separator : !isHex(text[i])) {
            return false;
        }
    }
    return true;
}

std::string pseudonymByForm(std::string_view text) {
    if (isUuid(text)) {
        return uuidPseudonym(text);
    }
    return isHardwareAddress(text) ? addressPseudonym(text) : pseudonym(text);
}

}  // namespace vrx
