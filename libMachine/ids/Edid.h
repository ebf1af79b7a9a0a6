#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vrx {

/// What a monitor says of itself (EDID, its first block of 128 bytes). Numbers are 0 where it does not say.
struct Edid {
    std::string vendorId;  ///< three letters that stand for the maker: "GSM"
    std::uint32_t productCode = 0;
    std::string model;         ///< as the maker wrote it; empty when it has no name
    std::string serialNumber;  ///< the text where there is one, else the number
    unsigned year = 0;         ///< of manufacture, or of the model
    unsigned week = 0;         ///< 1 to 54
    unsigned width = 0;        ///< of the picture, in cm
    unsigned height = 0;
    unsigned nativeWidth = 0;  ///< in pixels
    unsigned nativeHeight = 0;
    double nativeRate = 0;  ///< in Hz
};

/// Decodes a monitor's EDID; extension blocks are not read. Empty when the block is not whole, or its header or
/// checksum is wrong: then no field can be believed.
std::optional<Edid> decodeEdid(std::string_view bytes);

}  // namespace vrx
