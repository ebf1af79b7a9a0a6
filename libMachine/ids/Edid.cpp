/// The first block of an EDID: a fixed header, who made the monitor and when, its size, and at 54 four descriptors of
/// 18 bytes. A descriptor that starts with a pixel clock is a timing, the first one the native mode; one that starts
/// with zeros has a tag that says what text it holds. The sum of all bytes is 0 modulo 256.

#include "libMachine/ids/Edid.h"

#include <array>
#include <numeric>

namespace vrx {

namespace {

constexpr std::size_t BLOCK_SIZE = 128;
constexpr std::size_t DESCRIPTOR_SIZE = 18;
constexpr std::array<std::size_t, 4> DESCRIPTORS = {54, 72, 90, 108};
enum Tag : unsigned { MODEL_NAME = 0xFC, FREE_TEXT = 0xFE, SERIAL_TEXT = 0xFF };

/// The bytes of a block or a descriptor as numbers.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : m_bytes(bytes) {}

    unsigned at(std::size_t offset) const { return static_cast<unsigned char>(m_bytes[offset]); }
    unsigned word(std::size_t offset) const { return at(offset) | at(offset + 1) << 8; }
    Bytes part(std::size_t offset) const { return Bytes(m_bytes.substr(offset, DESCRIPTOR_SIZE)); }

    /// A descriptor's text: up to a line feed, padded with blanks behind it.
    std::string text() const {
        const std::string_view text = m_bytes.substr(5);
        return std::string(text.substr(0, text.find('\n')));
    }

    unsigned sum() const {
        return std::accumulate(m_bytes.begin(), m_bytes.end(), 0U,
                               [](unsigned sum, char byte) { return sum + static_cast<unsigned char>(byte); });
    }

private:
    std::string_view m_bytes;
};

/// Three letters of five bits, 1 is A; empty when one of them is none.
std::string vendorLetters(const Bytes& block) {
    const unsigned packed = block.at(8) << 8 | block.at(9);
    std::string letters;
    for (const unsigned shift : {10U, 5U, 0U}) {
        const unsigned letter = packed >> shift & 0x1F;
        if (letter < 1 || letter > 26) {
            return {};
        }
        letters.push_back(static_cast<char>('A' + letter - 1));
    }
    return letters;
}

void readDate(const Bytes& block, Edid& edid) {
    static constexpr unsigned FIRST_YEAR = 1990;
    static constexpr unsigned LAST_WEEK = 54;
    edid.year = block.at(17) == 0 ? 0 : FIRST_YEAR + block.at(17);
    edid.week = block.at(16) <= LAST_WEEK ? block.at(16) : 0;  // 255 says that the year is the model's
}

void readTiming(const Bytes& timing, Edid& edid) {
    static constexpr unsigned CLOCK_STEP = 10000;
    static constexpr unsigned INTERLACED = 0x80;
    const unsigned width = timing.at(2) | (timing.at(4) & 0xF0) << 4;
    const unsigned height = timing.at(5) | (timing.at(7) & 0xF0) << 4;
    const unsigned blankWidth = timing.at(3) | (timing.at(4) & 0x0F) << 8;
    const unsigned blankHeight = timing.at(6) | (timing.at(7) & 0x0F) << 8;
    const double pixels = static_cast<double>(width + blankWidth) * (height + blankHeight);
    edid.nativeWidth = width;
    edid.nativeHeight = (timing.at(17) & INTERLACED) != 0 ? height * 2 : height;
    edid.nativeRate = pixels > 0 ? static_cast<double>(timing.word(0)) * CLOCK_STEP / pixels : 0;
}

void readDescriptors(const Bytes& block, Edid& edid) {
    std::string freeText;
    for (const std::size_t offset : DESCRIPTORS) {
        const Bytes descriptor = block.part(offset);
        if (descriptor.word(0) != 0) {
            if (edid.nativeWidth == 0) {
                readTiming(descriptor, edid);
            }
            continue;
        }
        switch (descriptor.at(3)) {
            case MODEL_NAME: edid.model = descriptor.text(); break;
            case SERIAL_TEXT: edid.serialNumber = descriptor.text(); break;
            case FREE_TEXT: freeText = descriptor.text(); break;
            default: break;
        }
    }
    if (edid.model.empty()) {
        edid.model = freeText;  // panels of notebooks have their part number there
    }
}

}  // namespace

std::optional<Edid> decodeEdid(std::string_view bytes) {
    static constexpr std::string_view HEADER("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8);
    static constexpr unsigned DUMMY_SERIAL = 0x01010101;
    const Bytes block(bytes.substr(0, BLOCK_SIZE));
    if (bytes.size() < BLOCK_SIZE || !bytes.starts_with(HEADER) || block.sum() % 256 != 0) {
        return std::nullopt;
    }
    Edid edid;
    edid.vendorId = vendorLetters(block);
    edid.productCode = block.word(10);
    readDate(block, edid);
    const bool hasSize = block.at(21) != 0 && block.at(22) != 0;  // else it is a ratio
    edid.width = hasSize ? block.at(21) : 0;
    edid.height = hasSize ? block.at(22) : 0;
    readDescriptors(block, edid);
    const unsigned serial = block.word(12) | block.word(14) << 16;
    if (edid.serialNumber.empty() && serial != 0 && serial != DUMMY_SERIAL) {
        edid.serialNumber = std::to_string(serial);
    }
    return edid;
}

}  // namespace vrx
