/// A maker's code is a byte with odd parity in one of several banks. It is told in five ways, and what firmware copies
/// may hold further codes behind it (of the register, of the chips), zeros, or letters:
///
///     00CE, 80CE, 859B    the bank less one, with or without parity, then the code (newer modules)
///     CE00, 2C80          the same with the bytes exchanged
///     7F7F7F0B            a 7F for each bank before (older modules)
///     C1494E46            the code alone, and then letters
///     Bank 1, Hex 0xCE    in words (of the field that SMBIOS has for the code)
///
/// Where two ways make sense, the first with a known maker is taken.

#include "libMachine/ids/MemoryMakers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

namespace vrx {

namespace {

struct Maker {
    unsigned bank;  ///< from 1
    unsigned code;  ///< with its parity bit
    std::string_view name;
};

/// Those that make modules, from JEDEC's list of manufacturers (JEP106), with the names by which they go.
constexpr Maker MEMORY_MAKERS[] = {
    {1, 0x04, "Fujitsu"},
    {1, 0x10, "NEC"},
    {1, 0x1c, "Mitsubishi"},
    {1, 0x2c, "Micron Technology"},
    {1, 0x3e, "Oracle"},
    {1, 0x40, "ProMOS"},
    {1, 0x54, "Hewlett-Packard"},
    {1, 0x89, "Intel"},
    {1, 0x98, "Toshiba"},
    {1, 0xa4, "IBM"},
    {1, 0xad, "SK Hynix"},
    {1, 0xc1, "Infineon"},
    {1, 0xce, "Samsung"},
    {1, 0xda, "Winbond"},
    {1, 0xfe, "Numonyx"},
    {2, 0x32, "Mushkin"},
    {2, 0x40, "Viking"},
    {2, 0x4f, "Transcend"},
    {2, 0x61, "Wintec"},
    {2, 0x6b, "Goldenram"},
    {2, 0x7a, "Apacer"},
    {2, 0x91, "Dataram"},
    {2, 0x94, "Smart Modular"},
    {2, 0x98, "Kingston"},
    {2, 0xba, "PNY"},
    {2, 0xce, "Unigen"},
    {3, 0x9e, "Corsair"},
    {3, 0xb5, "SpecTek"},
    {3, 0xfe, "Elpida"},
    {4, 0x0b, "Nanya"},
    {4, 0x13, "GeIL"},
    {4, 0x16, "Netlist"},
    {4, 0x19, "Centon"},
    {4, 0x25, "Kingmax"},
    {4, 0x58, "takeMS"},
    {4, 0x83, "Buffalo"},
    {4, 0x94, "Mushkin"},
    {4, 0xda, "Swissbit"},
    {5, 0x43, "Ramaxel"},
    {5, 0x46, "Legacy Electronics"},
    {5, 0xb0, "OCZ"},
    {5, 0xc8, "Powerchip"},
    {5, 0xcb, "ADATA"},
    {5, 0xcd, "G.Skill"},
    {5, 0xef, "Team Group"},
    {5, 0xf1, "Toshiba"},
    {6, 0x02, "Patriot"},
    {6, 0x3e, "PQI"},
    {6, 0x51, "Qimonda"},
    {6, 0x57, "Aeneon"},
    {6, 0x62, "Goldenmars"},
    {6, 0x9b, "Crucial"},
    {6, 0xba, "Virtium"},
    {6, 0xe3, "Kreton"},
    {6, 0xf7, "Avant"},
    {7, 0x34, "Super Talent"},
    {7, 0x5e, "Lexar"},
    {7, 0x6b, "TwinMOS"},
    {7, 0x6d, "V-Color"},
    {7, 0xc1, "ASint"},
    {7, 0xd3, "Silicon Power"},
    {7, 0xe3, "ATP Electronics"},
    {7, 0xf1, "Innodisk"},
    {8, 0x07, "Unifosa"},
    {8, 0x52, "Memphis"},
    {8, 0x5d, "Wilk Elektronik"},
    {8, 0x83, "Strontium"},
    {8, 0x9e, "Teikon"},
    {9, 0x13, "Gloway"},
    {9, 0x98, "Essencore"},
    {9, 0xd5, "Etron"},
    {10, 0x62, "Hyundai Technology"},
    {10, 0x75, "Exceleram"},
    {10, 0x83, "Hewlett Packard Enterprise"},
    {10, 0xad, "Neo Forza"},
    {10, 0xc2, "Kllisre"},
    {10, 0xcd, "Longsys"},
    {11, 0x31, "Biwin"},
    {11, 0x76, "Lexar"},
    {11, 0x8f, "UNIC Memory"},
    {11, 0x91, "CXMT"},
    {12, 0xdc, "ASUS"},
};

constexpr std::string_view NO_NAME;

std::string_view makerOf(unsigned bank, unsigned code) noexcept {
    const auto* const maker =
        std::find_if(std::begin(MEMORY_MAKERS), std::end(MEMORY_MAKERS),
                     [bank, code](const Maker& known) { return known.bank == bank && known.code == code; });
    return maker == std::end(MEMORY_MAKERS) ? NO_NAME : maker->name;
}

std::optional<unsigned> digitOf(char letter) noexcept {
    static constexpr std::string_view DIGITS = "0123456789abcdef0123456789ABCDEF";
    const std::size_t at = DIGITS.find(letter);
    return at == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(at % 16));
}

/// The bytes that a text holds in hexadecimal digits; none when it holds anything else but blanks.
std::vector<std::uint8_t> bytesIn(std::string_view text) {
    std::vector<unsigned> digits;
    for (const char letter : text) {
        const std::optional<unsigned> digit = digitOf(letter);
        if (!digit && letter != ' ') {
            return {};
        }
        if (digit) {
            digits.push_back(*digit);
        }
    }
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; digits.size() % 2 == 0 && i < digits.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(digits[i] << 4 | digits[i + 1]));
    }
    return bytes;
}

std::string_view withoutPrefix(std::string_view text) noexcept {
    for (const std::string_view prefix : {"JEDEC ID:", "JEDEC ID", "0x", "0X"}) {
        if (text.starts_with(prefix)) {
            return text.substr(prefix.size());
        }
    }
    return text;
}

/// The maker of a bank, as a byte with or without parity, and a code.
std::string_view makerIn(unsigned bank, unsigned code) noexcept {
    static constexpr unsigned WITHOUT_PARITY = 0x7F;
    return makerOf((bank & WITHOUT_PARITY) + 1, code);
}

/// "Bank 4, Hex 0x0B".
std::string_view makerInWords(std::string_view text) noexcept {
    static constexpr std::string_view BANK = "Bank ";
    static constexpr std::string_view CODE = ", Hex 0x";
    const std::size_t comma = text.find(CODE);
    if (!text.starts_with(BANK) || comma == std::string_view::npos) {
        return NO_NAME;
    }
    unsigned bank = 0;
    std::from_chars(text.data() + BANK.size(), text.data() + comma, bank);
    const std::vector<std::uint8_t> code = bytesIn(text.substr(comma + CODE.size()));
    return code.size() == 1 ? makerOf(bank, code.front()) : NO_NAME;
}

}  // namespace

std::string_view memoryMaker(std::string_view text) noexcept {
    static constexpr std::uint8_t NEXT_BANK = 0x7F;
    const std::vector<std::uint8_t> bytes = bytesIn(withoutPrefix(text));
    if (bytes.size() < 2) {
        return makerInWords(text);
    }
    const auto code = std::find_if(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte != NEXT_BANK; });
    if (code != bytes.begin()) {
        const auto bank = static_cast<unsigned>(code - bytes.begin()) + 1;
        return code == bytes.end() ? NO_NAME : makerOf(bank, *code);
    }
    for (const std::string_view name : {makerIn(bytes[0], bytes[1]), makerIn(bytes[1], bytes[0])}) {
        if (!name.empty()) {
            return name;
        }
    }
    static constexpr std::size_t WHOLE_CODE = 8;
    const bool isAlone = bytes.size() >= WHOLE_CODE || bytes[1] == 0xFF;
    return isAlone ? makerOf(1, bytes[0]) : NO_NAME;
}

std::string textInHex(std::string_view digits) {
    static constexpr std::size_t SHORTEST = 8;
    const std::vector<std::uint8_t> bytes = bytesIn(withoutPrefix(digits));
    std::string text(bytes.begin(), bytes.end());
    text.resize(text.find_last_not_of(std::string_view("\0\xFF ", 3)) + 1);
    const bool isPrintable =
        std::all_of(text.begin(), text.end(), [](char letter) { return letter >= ' ' && letter <= '~'; });
    const bool hasLetter = std::any_of(text.begin(), text.end(),
                                       [](char letter) { return (letter | 0x20) >= 'a' && (letter | 0x20) <= 'z'; });
    return bytes.size() >= SHORTEST && isPrintable && hasLetter ? text : std::string();
}

}  // namespace vrx
