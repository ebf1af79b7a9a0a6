#include "libDiagnosis/DeviceIdentity.h"

#include <initializer_list>

#include "libDiagnosis/Difference.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

/// The first of those properties that the device has.
String textOf(const IDeviceImp& device, std::initializer_list<StringView> keys) {
    for (const StringView key : keys) {
        if (const IPropertyImp* const property = device.findProperty(key)) {
            return property->value().toString(true);
        }
    }
    return {};
}

}  // namespace

DeviceIdentity identityOf(const IDeviceImp& device) {
    return {device.guid(),
            specOf(device),
            textOf(device, {property::VENDOR}),
            textOf(device, {property::MODEL}),
            textOf(device, {property::PART_NUMBER}),
            textOf(device, {property::SERIAL_NUMBER}),
            textOf(device, {property::FIRMWARE_VERSION})};
}

}  // namespace vrx
