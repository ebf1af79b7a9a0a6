#include "libSystemState/properties/PropertyKinds.h"

#include <algorithm>
#include <iterator>

#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

struct Row {
    StringView key;
    PropertyKind kind;
};

constexpr Row KINDS[] = {
    {property::SERIAL_NUMBER, PropertyKind::Identity},
    {property::UUID, PropertyKind::Identity},
    {property::WWN, PropertyKind::Identity},
    {property::NODE_GUID, PropertyKind::Identity},
    {property::ADDRESS, PropertyKind::Identity},
    {property::ASSET_TAG, PropertyKind::Identity},
    {property::FILE_SYSTEM_UUID, PropertyKind::Identity},
    {property::HOST_NAME, PropertyKind::Identity},
    {property::MANUFACTURE_DATE, PropertyKind::Identity},

    {property::SLOT, PropertyKind::Place},
    {property::BANK, PropertyKind::Place},
    {property::LABEL, PropertyKind::Place},
    {property::NUMA_NODE, PropertyKind::Place},
    {property::IO_PORT, PropertyKind::Place},

    {property::MODEL, PropertyKind::Designation},
    {property::VERSION, PropertyKind::Designation},
    {property::REVISION, PropertyKind::Designation},
    {property::FAMILY, PropertyKind::Designation},
    {property::PART_NUMBER, PropertyKind::Designation},
    {property::SKU, PropertyKind::Designation},
    {property::FIRMWARE_VERSION, PropertyKind::Designation},
    {property::RELEASE_DATE, PropertyKind::Designation},
    {property::CONTROLLER_REVISION, PropertyKind::Designation},
    {property::VENDOR_ID, PropertyKind::Designation},
    {property::DEVICE_ID, PropertyKind::Designation},
    {property::SUBSYSTEM_VENDOR_ID, PropertyKind::Designation},
    {property::SUBSYSTEM_ID, PropertyKind::Designation},
    {property::CLASS_CODE, PropertyKind::Designation},
    {property::USB_VERSION, PropertyKind::Designation},
    {property::IPMI_VERSION, PropertyKind::Designation},
    {property::LEVEL, PropertyKind::Designation},
    {property::RAID_LEVEL, PropertyKind::Designation},
    {property::MODEL_NUMBER, PropertyKind::Designation},
    {property::STEPPING, PropertyKind::Designation},
    {property::MICROCODE, PropertyKind::Designation},
    {property::KERNEL_RELEASE, PropertyKind::Designation},

    {property::CURRENT_CLOCK, PropertyKind::Measurement},
    {property::CHARGE, PropertyKind::Measurement},
    {property::FULL_CAPACITY, PropertyKind::Measurement},
    {property::CYCLES, PropertyKind::Measurement},
    {property::TEMPERATURE, PropertyKind::Measurement},
    {property::CURRENT, PropertyKind::Measurement},
    {property::POWER, PropertyKind::Measurement},

    // As other programs than ours call them.
    {u"Reading", PropertyKind::Measurement},
    {u"InputVoltage", PropertyKind::Measurement},
    {u"OutputVoltage", PropertyKind::Measurement},
    {u"InputPower", PropertyKind::Measurement},
    {u"OutputPower", PropertyKind::Measurement},
    {u"WearLevel", PropertyKind::Measurement},
    {u"PowerOnHours", PropertyKind::Measurement},
    {u"PowerCycles", PropertyKind::Measurement},
    {u"UpTime", PropertyKind::Measurement},
};

/// Words that mean the same at the end of a longer key.
constexpr StringView IDENTITY_ENDS[] = {property::SERIAL_NUMBER, property::UUID, property::WWN, property::ASSET_TAG,
                                        property::HOST_NAME};

}  // namespace

PropertyKind kindOfProperty(StringView key) noexcept {
    if (const Row* const row = std::ranges::find(KINDS, key, &Row::key); row != std::end(KINDS)) {
        return row->kind;
    }
    return std::ranges::any_of(IDENTITY_ENDS, [key](StringView end) { return key.ends_with(end); })
               ? PropertyKind::Identity
               : PropertyKind::Quality;
}

}  // namespace vrx
