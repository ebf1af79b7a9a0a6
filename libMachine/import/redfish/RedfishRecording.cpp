/// A Redfish service's resources, as any program mirrors them: a folder with a file for each, a tar archive of such a
/// folder, or one JSON document of the resources by their paths.
///
/// The computer is the root. A service of several computers has a root of its own with a computer below it for each,
/// whose name stands before the locators of its parts. Locators are the names that the service gives to places; where
/// it names a part by its serial number or address, its number in the list.

#include <algorithm>
#include <array>
#include <iterator>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/import/Converters.h"
#include "libMachine/import/redfish/RedfishFiles.h"
#include "libMachine/import/redfish/RedfishParts.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

namespace json = boost::json;
using Category = PropertyCategoryImp;

DeviceRecord computerDevice(const json::object& system) {
    DeviceRecord device;
    device.type = u"System";
    device.hwLocator = "system";
    addRedfishFields(device, system, redfishIdentity());
    device.name = nameFromModel(device, "System");
    return device;
}

/// The members of a collection of the service, whether or not its root is there.
std::vector<RedfishPart> membersOfRoot(RedfishTree& tree, const std::string& name) {
    const json::object* const root = tree.find("/redfish/v1");
    return root != nullptr && root->contains(name) ? tree.members(*root, name)
                                                   : tree.collection("/redfish/v1/" + name, name, false);
}

class ServiceRecorder {
public:
    ServiceRecorder(RedfishTree& tree, Recording& recording, DamageList& damage)
        : m_tree(tree), m_parts(tree, recording, damage) {}

    void record() {
        const std::vector<RedfishPart> systems = membersOfRoot(m_tree, "Systems");
        const std::vector<RedfishPart> chassis = membersOfRoot(m_tree, "Chassis");
        if (systems.empty() && chassis.empty()) {
            return;
        }
        recordSystems(systems);
        for (const RedfishPart& part : inOrder(chassis, systems)) {
            addRedfishChassis(m_parts, part, m_isFirstChassis, 0);
            m_isFirstChassis = false;
        }
        bool isFirst = true;
        for (const RedfishPart& part : membersOfRoot(m_tree, "Managers")) {
            addRedfishManager(m_parts, part, isFirst, 0);
            isFirst = false;
        }
    }

private:
    void recordSystems(const std::vector<RedfishPart>& systems) {
        Recording& recording = m_parts.recording();
        if (systems.size() == 1) {
            recordSystem(*systems.front().data, recording.add(computerDevice(*systems.front().data)));
            return;
        }
        recording.add(systemDevice({}));
        recording.at(0).osLocator.clear();
        for (const RedfishPart& part : systems) {
            DeviceRecord device = computerDevice(*part.data);
            device.hwLocator = "system:" + part.id;
            device.parent = 0;
            const std::size_t place = recording.add(std::move(device));
            recordSystem(*part.data, place);
            m_parts.prefixLocators(place + 1, "system:" + part.id + "/");
        }
    }

    void recordSystem(const json::object& system, std::size_t place) {
        m_parts.noteHealth(system, m_parts.recording().at(place));
        addRedfishSystem(m_parts, system, place);
    }

    /// The chassis that holds the computer comes first.
    std::vector<RedfishPart> inOrder(std::vector<RedfishPart> chassis, const std::vector<RedfishPart>& systems) {
        const json::object* const links = systems.size() == 1 ? m_tree.follow(*systems.front().data, "Links") : nullptr;
        const std::vector<RedfishPart> holders =
            links == nullptr ? std::vector<RedfishPart>() : m_tree.members(*links, "Chassis");
        const auto isHolder = [&holders](const RedfishPart& part) {
            return !holders.empty() && holders.front().data == part.data;
        };
        std::ranges::stable_partition(chassis, isHolder);
        return chassis;
    }

    RedfishTree& m_tree;
    RedfishParts m_parts;
    bool m_isFirstChassis = true;
};

/// What a reference that leads nowhere may hide, by the name of the member that has it.
struct HiddenTypes {
    std::string_view member;
    std::array<StringView, 4> types;
};

constexpr HiddenTypes HIDDEN[] = {
    {"Processors", {u"Processor", u"Coprocessor", u"Display", u"Slot"}},
    {"Memory", {u"MemoryModule", u"Memory", u"Slot"}},
    {"Storage", {u"Storage", u"StorageController", u"Volume", u"Slot"}},
    {"SimpleStorage", {u"Storage", u"StorageController", u"Slot"}},
    {"StorageControllers", {u"StorageController"}},
    {"Controllers", {u"StorageController"}},
    {"Drives", {u"Storage", u"Slot"}},
    {"Devices", {u"Storage", u"Slot"}},
    {"Volumes", {u"Volume"}},
    {"EthernetInterfaces", {u"Network", u"Slot"}},
    {"NetworkAdapters", {u"Network", u"Slot"}},
    {"PCIeDevices", {u"PciDevice", u"Slot"}},
    {"PCIeFunctions", {u"PciDevice"}},
    {"PCIeSlots", {u"Slot"}},
    {"GraphicsControllers", {u"Display", u"Slot"}},
    {"USBControllers", {u"UsbController", u"Slot"}},
    {"TrustedModules", {u"Security", u"Slot"}},
    {"PowerSupplies", {u"PowerSupply", u"Slot"}},
    {"PowerSubsystem", {u"Power", u"Slot"}},
    {"Power", {u"Power", u"Sensor", u"Slot"}},
    {"Batteries", {u"Battery", u"Slot"}},
    {"ThermalSubsystem", {u"Cooling", u"Slot"}},
    {"Thermal", {u"Cooling", u"Sensor", u"Slot"}},
    {"Fans", {u"Cooling", u"Slot"}},
    {"Sensors", {u"Sensor"}},
    {"Temperatures", {u"Sensor"}},
    {"Voltages", {u"Sensor"}},
    {"Managers", {u"ManagementController"}},
};

/// Every type for a member that may hide anything, as a computer does.
CapabilityImp typesBehind(std::string_view member) {
    const auto* const row = std::ranges::find(HIDDEN, member, &HiddenTypes::member);
    if (row == std::end(HIDDEN)) {
        return CapabilityImp::ALL();
    }
    CapabilityImp types;
    for (const StringView type : row->types) {
        types = type.empty() ? types : types | CapabilityImp(type);
    }
    return types;
}

void recordService(RedfishTree& tree, Recording& recording, DamageList& damage) {
    if (tree.isEmpty()) {
        return;
    }
    ServiceRecorder(tree, recording, damage).record();
    for (const auto& [path, member] : tree.missing()) {
        recording.addUnread({String::UTF8Decode(path), typesBehind(member), u"not in the recording", {}});
    }
}

}  // namespace

bool isRedfish(const RecordingStart& start) {
    return start.isArchive() || start.json().find("\"@odata.") != std::string_view::npos ||
           start.json().find("\"/redfish/v1") != std::string_view::npos;
}

void convertRedfish(std::string_view bytes, Recording& recording, DamageList& damage) {
    RedfishTree tree(damage);
    const auto add = [&tree](const std::string& name, std::string_view content) {
        tree.add(name, content);
    };
    if (!RecordingStart(bytes.substr(0, RECOGNITION_SIZE)).isArchive()) {
        tree.add("", bytes);
    } else if (!readRedfishArchive(bytes, add, damage)) {
        return;
    }
    recordService(tree, recording, damage);
}

void convertRedfishFolder(const std::string& folder, Recording& recording, DamageList& damage) {
    RedfishTree tree(damage);
    const auto add = [&tree](const std::string& name, std::string_view content) {
        tree.add(name, content);
    };
    if (readRedfishFolder(folder, add, damage)) {
        recordService(tree, recording, damage);
    }
}

}  // namespace vrx
