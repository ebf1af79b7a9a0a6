#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

/// Locators that are names which the kernel hands out in the order in which it finds devices. They say nothing about
/// the place of a device: after a restart, or with one disk more, they belong to others.
namespace vrx {

/// Whether that OS locator is one: "/dev/sda", "/dev/nvme0n1p2", "eth0", "enp3s0f1"; not "/dev/disk/by-id/x", not
/// "/sys/bus/pci/devices/0000:3b:00.0".
VRX_EXPORT bool isKernelName(StringView osLocator) noexcept;

/// Whether that locator is a place, and none that an import made up because the recording has none.
VRX_EXPORT bool isPlace(StringView locator) noexcept;

}  // namespace vrx
