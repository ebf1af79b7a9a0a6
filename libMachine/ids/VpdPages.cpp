/// A page starts with the device's type, the number of the page and the length of what follows (two bytes).

#include "libMachine/ids/VpdPages.h"

#include <algorithm>
#include <cstdint>

namespace vrx {

namespace {

constexpr std::size_t HEADER_SIZE = 4;

unsigned wordAt(std::string_view bytes, std::size_t offset) noexcept {
    return static_cast<unsigned>(static_cast<unsigned char>(bytes[offset]) << 8 |
                                 static_cast<unsigned char>(bytes[offset + 1]));
}

/// What follows the header of the page of that number.
std::string_view contentOf(std::string_view page, unsigned number) noexcept {
    if (page.size() < HEADER_SIZE || static_cast<unsigned char>(page[1]) != number) {
        return {};
    }
    return page.substr(HEADER_SIZE, wordAt(page, 2));
}

/// ATA texts have the letters of each 16-bit word swapped.
std::string ataText(std::string_view identify, std::size_t firstWord, std::size_t words) {
    std::string text(identify.substr(firstWord * 2, words * 2));
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        std::swap(text[i], text[i + 1]);
    }
    return text;
}

}  // namespace

std::string vpdSerialNumber(std::string_view page) { return std::string(contentOf(page, 0x80)); }

AtaIdentity vpdAtaIdentity(std::string_view page) {
    static constexpr std::size_t IDENTIFY = 56;  // behind the texts and the signature of the translation
    static constexpr std::size_t IDENTIFY_SIZE = 512;
    const std::string_view content = contentOf(page, 0x89);
    if (content.size() < IDENTIFY + IDENTIFY_SIZE) {
        return {};
    }
    const std::string_view identify = content.substr(IDENTIFY);
    return {ataText(identify, 27, 20), ataText(identify, 10, 10), ataText(identify, 23, 4)};
}

unsigned vpdRotationRate(std::string_view page) {
    static constexpr unsigned SLOWEST = 0x401;  // 1 says "does not rotate", the rest below is reserved
    static constexpr unsigned RESERVED = 0xFFFF;
    const std::string_view content = contentOf(page, 0xB1);
    const unsigned rate = content.size() < 2 ? 0 : wordAt(content, 0);
    return rate < SLOWEST || rate == RESERVED ? 0 : rate;
}

}  // namespace vrx
