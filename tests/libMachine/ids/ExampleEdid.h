#pragma once

#include <numeric>
#include <string>
#include <string_view>

namespace vrx {

/// Makes the sum of an EDID's bytes right.
inline std::string withChecksum(std::string edid) {
    edid[127] = '\0';
    const unsigned sum = std::accumulate(edid.begin(), edid.begin() + 127, 0U, [](unsigned before, char byte) {
        return before + static_cast<unsigned char>(byte);
    });
    edid[127] = static_cast<char>((256 - sum % 256) % 256);
    return edid;
}

/// A monitor of maker "XQA" (no real one), 60 by 34 cm, 2560x1440 at 59.95 Hz, week 14 of 2023.
inline std::string exampleEdid(std::string_view model = "Example 27Q\n  ", std::string_view serial = "XQ000123456\n ") {
    std::string edid(128, '\0');
    edid.replace(0, 8, std::string_view("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8));
    edid.replace(8, 16, std::string_view("\x62\x21\x34\x12\x44\x33\x22\x11\x0E\x21\x01\x04\xA5\x3C\x22\x78", 16));
    edid.replace(54, 18,
                 std::string_view("\x56\x5E\x00\xA0\xA0\xA0\x29\x50\x30\x20\x35\x00\x55\x50\x21\x00\x00\x1A", 18));
    edid.replace(72, 5, std::string_view("\x00\x00\x00\xFC\x00", 5)).replace(77, 13, model.substr(0, 13));
    edid.replace(90, 5, std::string_view("\x00\x00\x00\xFF\x00", 5)).replace(95, 13, serial.substr(0, 13));
    edid.replace(108, 4, std::string_view("\x00\x00\x00\x10", 4));
    return withChecksum(edid);
}

}  // namespace vrx
