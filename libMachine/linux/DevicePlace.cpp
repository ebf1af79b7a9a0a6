/// Between a controller and a device of it lie folders that the kernel numbers as it finds them (i2c-3, hwmon2, nvme0,
/// card1). Of these only what is an address on a bus stays the same: a chip at 0x1b of an I2C bus is "3-001b" there,
/// one at chip select 1 of an SPI bus "spi0.1". Busses of one controller are not told apart; two chips that then ask
/// for one locator are numbered when they are stored.

#include "libMachine/linux/DevicePlace.h"

#include <algorithm>
#include <iterator>

#include "libMachine/record/Recording.h"

namespace vrx {

namespace {

constexpr std::string_view DIGITS = "0123456789";

/// "/i2c:1b" for "3-001b", "/spi:1" for "spi0.1", nothing for another folder.
std::string addressOn(std::string_view folder) {
    static constexpr std::size_t ADDRESS_SIZE = 4;
    static constexpr std::string_view SPI = "spi";
    const std::size_t dash = folder.find_first_not_of(DIGITS);
    if (dash != 0 && dash != std::string_view::npos && folder[dash] == '-' &&
        folder.size() == dash + 1 + ADDRESS_SIZE &&
        folder.find_first_not_of("0123456789abcdef", dash + 1) == std::string_view::npos) {
        return "/i2c:" + std::string(folder.substr(dash + 3));
    }
    const std::size_t dot = folder.find('.');
    const bool isSpi = folder.starts_with(SPI) && dot != std::string_view::npos &&
                       folder.substr(SPI.size(), dot - SPI.size()).find_first_not_of(DIGITS) == std::string_view::npos;
    return isSpi ? "/spi:" + std::string(folder.substr(dot + 1)) : std::string();
}

std::string addressesOn(std::string_view way) {
    std::string all;
    while (!way.empty()) {
        const std::size_t end = std::min(way.find('/'), way.size());
        all += addressOn(way.substr(0, end));
        way.remove_prefix(std::min(end + 1, way.size()));
    }
    return all;
}

/// Folders that stand for the machine itself or for a bus of its chip, not for a device.
bool isBusOfBoard(std::string_view folder) noexcept {
    static constexpr std::string_view EXACT[] = {"platform",    "soc",         "axi",        "scb",       "pnp0",
                                                 "LNXSYSTM:00", "LNXSYBUS:00", "PNP0A08:00", "PNP0A03:00"};
    return std::find(std::begin(EXACT), std::end(EXACT), folder) != std::end(EXACT) || folder.starts_with("soc@") ||
           folder.starts_with("soc:") || folder.starts_with("bus@");
}

}  // namespace

std::string placeOfFolder(const Recording& recording, std::string_view sysPath) {
    const std::size_t above = recording.nearest(sysPath);
    if (above != Recording::NONE) {
        const DeviceRecord& device = recording.at(above);
        return device.hwLocator + addressesOn(sysPath.substr(std::min(device.sysPath.size() + 1, sysPath.size())));
    }
    static constexpr std::string_view DEVICES = "/sys/devices/";
    if (!sysPath.starts_with(DEVICES)) {
        return "unplaced";  // a saved copy that lost its links
    }
    sysPath.remove_prefix(DEVICES.size());
    std::string_view folder;
    do {
        const std::size_t end = std::min(sysPath.find('/'), sysPath.size());
        folder = sysPath.substr(0, end);
        sysPath.remove_prefix(std::min(end + 1, sysPath.size()));
    } while (isBusOfBoard(folder) && !sysPath.empty());
    return "platform:" + std::string(folder) + addressesOn(sysPath);
}

bool isVirtualFolder(std::string_view sysPath) noexcept { return sysPath.starts_with("/sys/devices/virtual/"); }

}  // namespace vrx
