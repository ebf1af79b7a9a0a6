/// USB devices, as a tree below their hubs and controllers. A device's type follows from its interfaces: the first that
/// tells one decides, the others become capabilities. Disks and network adapters on USB are devices of their own below
/// the USB device.
///
/// A root hub is the kernel's own device: its texts and its revision name the kernel's version and are left out.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/ids/HardwareIds.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

const std::string DEVICES = "/sys/bus/usb/devices/";

struct UsbDevice {
    std::string port;  ///< "1-1.2", "usb1" for a root hub
    std::uint32_t vendor = 0;
    std::uint32_t product = 0;

    bool isRootHub() const noexcept { return port.starts_with("usb"); }
    std::string path(std::string_view file) const { return DEVICES + port + "/" + std::string(file); }
};

std::uint32_t hexIn(const RootFolder& root, const std::string& path) { return parseHex(root.text(path)).value_or(0); }

std::vector<UsbDevice> readDevices(const RootFolder& root) {
    std::vector<UsbDevice> devices;
    for (std::string& name : root.list(DEVICES)) {
        if (name.find(':') != std::string::npos) {
            continue;  // an interface
        }
        UsbDevice device;
        device.port = std::move(name);
        device.vendor = hexIn(root, device.path("idVendor"));
        device.product = hexIn(root, device.path("idProduct"));
        devices.push_back(std::move(device));
    }
    return devices;
}

/// The device type for class, subclass and protocol of an interface; empty where they say nothing.
StringView interfaceType(std::uint32_t classCode) noexcept {
    struct Row {
        std::uint32_t mask;
        std::uint32_t code;
        StringView type;
    };
    static constexpr Row ROWS[] = {
        {0xFF0000, 0x010000, u"AudioDevice"},    {0xFFFF00, 0x020200, u"Modem"},     {0xFFFFFF, 0x030101, u"Keyboard"},
        {0xFFFFFF, 0x030102, u"PointingDevice"}, {0xFF0000, 0x030000, u"Input"},     {0xFF0000, 0x060000, u"Camera"},
        {0xFF0000, 0x070000, u"Printer"},        {0xFF0000, 0x090000, u"UsbHub"},    {0xFF0000, 0x0B0000, u"SmartCard"},
        {0xFF0000, 0x0E0000, u"Camera"},         {0xFFFFFF, 0xE00101, u"Bluetooth"},
    };
    const auto* const row = std::find_if(std::begin(ROWS), std::end(ROWS), [classCode](const Row& candidate) {
        return (classCode & candidate.mask) == candidate.code;
    });
    return row == std::end(ROWS) ? StringView() : row->type;
}

/// The distinct types of a device's interfaces, in their order.
std::vector<StringView> typesOf(const RootFolder& root, const UsbDevice& device) {
    std::vector<StringView> types;
    for (const std::string& name : root.list(DEVICES + device.port)) {
        if (name.find(':') == std::string::npos) {
            continue;
        }
        const std::string folder = device.path(name);
        const StringView type = interfaceType(hexIn(root, folder + "/bInterfaceClass") << 16 |
                                              hexIn(root, folder + "/bInterfaceSubClass") << 8 |
                                              hexIn(root, folder + "/bInterfaceProtocol"));
        if (!type.empty() && std::find(types.begin(), types.end(), type) == types.end()) {
            types.push_back(type);
        }
    }
    return types;
}

void addType(DeviceRecord& record, const RootFolder& root, const UsbDevice& device) {
    record.capabilities = typesOf(root, device);
    record.capabilities.push_back(u"UsbDevice");
    record.type = device.isRootHub() ? StringView(u"UsbHub") : record.capabilities.front();
    std::erase(record.capabilities, record.type);
}

void addTexts(DeviceRecord& record, const RootFolder& root, const UsbDevice& device, const HardwareIds& names) {
    const auto addText = [&](StringView key, std::string_view file, std::string_view otherwise) {
        if (!device.isRootHub()) {
            record.text(key, root.text(device.path(file)));
        }
        if (!record.has(key)) {
            record.text(key, otherwise);
        }
    };
    addText(property::VENDOR, "manufacturer", names.vendor(device.vendor));
    addText(property::MODEL, "product", names.device(device.vendor, device.product));
    addText(property::SERIAL_NUMBER, "serial", {});
    addText(property::REVISION, "bcdDevice", {});
}

std::string nameOf(const DeviceRecord& record, const UsbDevice& device) {
    for (const PropertyRecord& property : record.properties) {
        if (property.key == property::MODEL) {
            return property.value.toString(false).toUtf8();
        }
    }
    return fmt::format("USB device {:04x}:{:04x}", device.vendor, device.product);
}

}  // namespace

void collectUsb(CollectContext& context) {
    const RootFolder& root = context.root;
    const std::vector<UsbDevice> devices = readDevices(root);
    HardwareIds names;
    for (const UsbDevice& device : devices) {
        names.wantDevice(device.vendor, device.product);
    }
    if (!devices.empty()) {
        names.load(root, "usb.ids");  // most devices name themselves
    }
    for (const UsbDevice& device : devices) {
        DeviceRecord record;
        record.hwLocator = "usb:" + device.port.substr(device.isRootHub() ? 3 : 0);
        record.osLocator = DEVICES + device.port;
        record.sysPath = root.resolved(record.osLocator);
        addType(record, root, device);
        addTexts(record, root, device, names);
        record.name = nameOf(record, device);
        record.add(property::VENDOR_ID, String::UTF8Decode(fmt::format("{:04x}", device.vendor)));
        record.add(property::DEVICE_ID, String::UTF8Decode(fmt::format("{:04x}", device.product)));
        record.text(property::USB_VERSION, root.text(device.path("version")));
        record.measure(property::SPEED, leadingNumber(root.text(device.path("speed"))), u"Mbit/s");
        if (const auto ports = root.number(device.path("maxchild")); ports.value_or(0) > 0) {
            record.number(property::PORTS, ports);
        }
        context.recording.add(std::move(record));
    }
}

}  // namespace vrx
