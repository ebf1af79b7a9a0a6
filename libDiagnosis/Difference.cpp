#include "libDiagnosis/Difference.h"

#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

ElementPlace placeIn(const XmlElement& element) noexcept {
    return {std::uint64_t{element.Row()} + 1, std::uint64_t{element.Column()} + 1};
}

Inventory::DeviceSpec specOf(const IDeviceImp& device) {
    return {device.name(), device.type().toString(), device.hwLocator(), device.osLocator()};
}

}  // namespace vrx
