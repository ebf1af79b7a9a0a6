#include "libMachine/ids/PciIdentity.h"

#include <fmt/format.h>

#include "libMachine/ids/HardwareIds.h"
#include "libMachine/ids/PciClasses.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

void addNumber(DeviceRecord& device, StringView key, std::uint32_t number, int digits = 4) {
    device.add(key, String::UTF8Decode(fmt::format("{:0{}x}", number, digits)));
}

void addIdentifiers(DeviceRecord& device, const PciIdentity& identity, const HardwareIds& names) {
    device.text(property::VENDOR, names.vendor(identity.vendor));
    device.text(property::MODEL, names.device(identity.vendor, identity.device));
    if (identity.hasWholeClassCode || identity.classCode != 0) {
        device.text(property::CLASS, names.className(identity.classCode));
    }
    if (identity.vendor != 0) {
        addNumber(device, property::VENDOR_ID, identity.vendor);
        addNumber(device, property::DEVICE_ID, identity.device);
    }
    if (identity.hasWholeClassCode) {
        addNumber(device, property::CLASS_CODE, identity.classCode, 6);
    }
    if (identity.subVendor != 0) {
        device.text(property::SUBSYSTEM_VENDOR, names.vendor(identity.subVendor));
        device.text(property::SUBSYSTEM,
                    names.subsystem(identity.vendor, identity.device, identity.subVendor, identity.subDevice));
        addNumber(device, property::SUBSYSTEM_VENDOR_ID, identity.subVendor);
        addNumber(device, property::SUBSYSTEM_ID, identity.subDevice);
    }
}

std::string nameOf(const PciIdentity& identity, const HardwareIds& names) {
    if (identity.vendor == 0) {
        return "PCI device";
    }
    const std::string model = cleanName(names.device(identity.vendor, identity.device));
    return model.empty() ? fmt::format("PCI device {:04x}:{:04x}", identity.vendor, identity.device) : model;
}

}  // namespace

void wantPciNames(HardwareIds& names, const PciIdentity& identity) {
    if (identity.vendor != 0) {
        names.wantDevice(identity.vendor, identity.device);
    }
    names.wantClass(identity.classCode);
    if (identity.subVendor != 0) {
        names.wantSubsystem(identity.vendor, identity.device, identity.subVendor, identity.subDevice);
    }
}

DeviceRecord pciFunctionDevice(const std::string& address, const PciIdentity& identity, const HardwareIds& names) {
    DeviceRecord device;
    device.type = pciDeviceType(identity.classCode);
    if (device.type != u"PciDevice") {
        device.capabilities.push_back(u"PciDevice");
    }
    device.name = nameOf(identity, names);
    device.hwLocator = "pci:" + address;
    device.osLocator = "/sys/bus/pci/devices/" + address;
    addIdentifiers(device, identity, names);
    return device;
}

}  // namespace vrx
