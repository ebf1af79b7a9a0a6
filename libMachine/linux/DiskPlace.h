#pragma once

#include <string>
#include <string_view>

namespace vrx {

class Recording;
class RootFolder;

/// Where a disk sits, from its folder in sysfs.
struct DiskPlace {
    std::string sysPath;    ///< its folder below its controller, links followed; empty for a disk that is software
    std::string hwLocator;  ///< the controller's, and the place on it: "pci:0000:00:17.0/ata:2"
    std::string_view transport;
};

/// The place of the disk /sys/block/NAME. Requires: the controllers are recorded.
DiskPlace placeOfDisk(const RootFolder& root, const Recording& recording, const std::string& name);

/// The hardware locator for what a sysfs folder lies in (DevicePlace.h).
std::string locatorAbove(const Recording& recording, std::string_view sysPath);

}  // namespace vrx
