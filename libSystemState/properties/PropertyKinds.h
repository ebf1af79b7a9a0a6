#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// What a property says about a device, judged by its key alone. Keys that nobody knows are qualities.
enum class PropertyKind : std::uint8_t {
    Identity,     ///< of this one piece: its serial number, its address, the host's name. Two sisters differ in it
    Place,        ///< where it sits: a slot, a bank, a NUMA node
    Designation,  ///< what it is called: a model, a version, an identifier. Digits in it are no amount
    Measurement,  ///< what it reads or counts at the moment: a temperature, a charge, hours of work
    Quality,      ///< what it is like
};

/// `FirmwareUUID` is an identity as `UUID` is.
VRX_EXPORT PropertyKind kindOfProperty(StringView key) noexcept;

}  // namespace vrx
