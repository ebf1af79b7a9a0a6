#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "libMachine/import/lshw/LshwConversion.h"

namespace vrx {

/// What a disk is plugged into, and how.
struct LshwConnection {
    std::size_t controller = 0;  ///< 0 when it is not known
    bool isAta = false;
    bool isRaid = false;         ///< the controller speaks for the disk
    bool hidesDrives = false;    ///< the controller may have made the disk of others
    std::string_view transport;  ///< empty where nothing tells it
    std::string suffix;          ///< of the hardware locator
};

/// The connection of the disk that a node is. Requires: the conversion has all PCI and USB devices.
LshwConnection lshwConnection(const LshwConversion& conversion, std::size_t place);

/// The number that a text ends with ("/dev/nvme0n1p12" gives 12); none when it ends with something else.
std::optional<std::uint64_t> lshwNumberAtEnd(std::string_view text);

}  // namespace vrx
