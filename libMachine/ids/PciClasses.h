#pragma once

#include <cstdint>

#include "libCommon/text/String.h"

namespace vrx {

/// The device type for a PCI class code of three bytes (base class, subclass, programming interface); "PciDevice" where
/// the class says no more.
StringView pciDeviceType(std::uint32_t classCode) noexcept;

}  // namespace vrx
