/// USB devices, below their hubs and controllers. A network adapter is a device of its own below its USB device. A root
/// hub is the kernel's own device: lshw shows the kernel's version as its vendor, which says nothing of the machine;
/// what it is follows from the version of USB.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/linux/RootFolder.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

struct UsbTypeRow {
    std::string_view kind;
    std::string_view driver;
    std::string_view description;  ///< how it starts; in English alone, as a last resort
    StringView type;
};

constexpr UsbTypeRow USB_TYPES[] = {
    {"bus", "", "", u"UsbHub"},
    {"input", "", "Keyboard", u"Keyboard"},
    {"input", "", "Mouse", u"PointingDevice"},
    {"input", "", "", u"Input"},
    {"multimedia", "uvcvideo", "", u"Camera"},
    {"multimedia", "", "Video", u"Camera"},
    {"multimedia", "snd-usb-audio", "", u"AudioDevice"},
    {"multimedia", "", "Audio", u"AudioDevice"},
    {"multimedia", "", "", u"Multimedia"},
    {"communication", "btusb", "", u"Bluetooth"},
    {"communication", "", "Bluetooth", u"Bluetooth"},
    {"communication", "cdc_acm", "", u"Modem"},
    {"communication", "", "Modem", u"Modem"},
    {"printer", "", "", u"Printer"},
    {"generic", "", "Smart card", u"SmartCard"},
    {"", "", "", u"UsbDevice"},
};

StringView usbTypeOf(const LshwNode& node) {
    const auto* const row =
        std::find_if(std::begin(USB_TYPES), std::end(USB_TYPES), [&node](const UsbTypeRow& candidate) {
            return (candidate.kind.empty() || node.kind == candidate.kind) &&
                   (candidate.driver.empty() || node.setting("driver") == candidate.driver) &&
                   node.description.starts_with(candidate.description);
        });
    return row->type;
}

/// "1-2.1" for the bus address "usb@1:2.1", "1" for "usb@1"; empty for what is no such address.
std::string portOf(const LshwNode& node) {
    std::string port(LshwNode::behind(node.busInfo, "usb@"));
    if (port.find_first_not_of("0123456789:.") != std::string::npos) {
        return {};
    }
    std::replace(port.begin(), port.end(), ':', '-');
    return port;
}

/// Mbit/s. Old versions write the same numbers as "480.0MB/s", and all of them round 1.5 up.
double speedOf(const LshwNode& node) {
    static constexpr double LOW_SPEED = 1.5;
    const double speed = leadingNumber(node.setting("speed"));
    return speed == 2 ? LOW_SPEED : speed;
}

/// "1.21" as the four digits that the device has, "0121".
std::string revisionOf(std::string_view version) {
    const std::size_t point = version.find('.');
    if (point == std::string_view::npos || version.size() - point != 3) {
        return std::string(version);
    }
    return fmt::format("{:0>2}{}", version.substr(0, point), version.substr(point + 1));
}

void addRootHubNames(DeviceRecord& hub, std::string_view usbVersion) {
    const char first = usbVersion.empty() ? '2' : usbVersion.front();
    const std::string_view version = first == '1' ? "1.1" : first == '3' ? "3.0" : "2.0";
    hub.name = fmt::format("{} root hub", version);
    hub.add(property::VENDOR, String(u"Linux Foundation"));
    hub.text(property::MODEL, hub.name);
    hub.add(property::VENDOR_ID, String(u"1d6b"));
    hub.text(property::DEVICE_ID, fmt::format("000{}", first));
}

}  // namespace

std::optional<std::size_t> addLshwUsbDevice(LshwConversion& conversion, std::size_t place) {
    const LshwNode& node = conversion.node(place);
    const std::string port = portOf(node);
    if (port.empty()) {
        return std::nullopt;
    }
    const bool isRootHub = port.find('-') == std::string::npos;
    const std::string_view usbVersion = node.capabilityBehind("usb-");
    DeviceRecord device;
    device.type = isRootHub ? StringView(u"UsbHub") : usbTypeOf(node);
    if (device.type != u"UsbDevice") {
        device.capabilities.push_back(u"UsbDevice");
    }
    device.hwLocator = "usb:" + port;
    device.osLocator = fmt::format("/sys/bus/usb/devices/{}{}", isRootHub ? "usb" : "", port);
    device.parent = conversion.deviceAbove(place);
    if (isRootHub) {
        addRootHubNames(device, usbVersion);
    } else {
        device.text(property::VENDOR, lshwText(node.vendor));
        device.text(property::MODEL, lshwText(node.product));
        device.text(property::REVISION, revisionOf(node.version));
        const std::string model = cleanName(lshwText(node.product));
        device.name = model.empty() ? "USB device" : model;
    }
    if (!isRootHub && node.kind != "network") {
        device.text(property::SERIAL_NUMBER, lshwText(node.serial));
    }
    device.text(property::USB_VERSION, usbVersion);
    device.measure(property::SPEED, speedOf(node), u"Mbit/s");
    const std::size_t added = conversion.recording.add(std::move(device));
    if (node.kind == "network" && !node.logicalNames.empty()) {
        addLshwPort(conversion, node, added, 0);
    }
    return added;
}

}  // namespace vrx
