/// A computer: its firmware, processors, memory, network, PCI devices and graphics. Processors are numbered by their
/// sockets, empty ones included, so that one that is pulled does not move the others.

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/devices/MemoryDevices.h"
#include "libMachine/import/redfish/RedfishParts.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

namespace json = boost::json;
using Category = PropertyCategoryImp;

constexpr RedfishField PROCESSOR[] = {
    {"ProcessorId/VendorId", property::VENDOR},
    {"ProcessorId/EffectiveFamily", property::FAMILY, RedfishValue::Number},
    {"ProcessorId/EffectiveModel", property::MODEL_NUMBER, RedfishValue::Number},
    {"ProcessorId/Step", property::STEPPING, RedfishValue::Number},
    {"Socket", property::SLOT},
    {"TotalEnabledCores", property::CORES, RedfishValue::Number},
    {"TotalCores", property::CORES, RedfishValue::Number},
    {"TotalThreads", property::THREADS, RedfishValue::Number},
    {"MaxSpeedMHz", property::SOCKET_MAX_CLOCK, RedfishValue::Measure, u"MHz"},
};
constexpr RedfishKind SOCKET{u"Processor", "cpu", "Processor", "Processor socket", PROCESSOR};
constexpr RedfishKind COPROCESSOR{u"Coprocessor", "coprocessor", "Coprocessor", "Coprocessor place"};
constexpr RedfishKind GPU{u"Display", "gpu", "Graphics processor", "Graphics processor place"};

constexpr RedfishField INTERFACE[] = {
    {"PermanentMACAddress", property::ADDRESS, RedfishValue::SmallText},
    {"MACAddress", property::ADDRESS, RedfishValue::SmallText},
    {"LinkStatus", property::LINK_STATE, RedfishValue::LinkState},
    {"SpeedMbps", property::SPEED, RedfishValue::Reading, u"Mbit/s"},
};
constexpr RedfishKind ETHERNET{u"Ethernet", "net", "Network interface", "Network interface, disabled", INTERFACE};

constexpr RedfishKind PCI_DEVICE{u"PciDevice", "pcie", "PCI device", "PCI device place", REDFISH_PCIE};

constexpr RedfishField PCI_FUNCTION[] = {
    {"VendorId", property::VENDOR_ID, RedfishValue::Hexadecimal},
    {"DeviceId", property::DEVICE_ID, RedfishValue::Hexadecimal},
    {"SubsystemVendorId", property::SUBSYSTEM_VENDOR_ID, RedfishValue::Hexadecimal},
    {"SubsystemId", property::SUBSYSTEM_ID, RedfishValue::Hexadecimal},
    {"ClassCode", property::CLASS_CODE, RedfishValue::Hexadecimal},
};

constexpr RedfishField GRAPHICS[] = {{"BiosVersion", property::FIRMWARE_VERSION}};
constexpr RedfishKind DISPLAY{u"Display", "display", "Graphics adapter", "Graphics adapter place", GRAPHICS};
constexpr RedfishKind USB{u"UsbController", "usbcontroller", "USB controller", "USB controller place"};

constexpr RedfishField TRUSTED_MODULE[] = {{"InterfaceType", property::INTERFACE_TYPE}};
constexpr RedfishKind TPM{u"TrustedPlatformModule", "tpm", "Trusted platform module", "Trusted platform module place",
                          TRUSTED_MODULE};

void addFirmwareOf(RedfishParts& parts, const json::object& system, std::size_t root) {
    DeviceRecord bios;
    bios.type = u"BIOS";
    bios.name = "BIOS";
    bios.hwLocator = "bios";
    bios.parent = root;
    bios.text(property::FIRMWARE_VERSION, redfishText(system, "BiosVersion"));
    if (!bios.properties.empty()) {
        parts.recording().add(std::move(bios));
    }
}

void addProcessorsOf(RedfishParts& parts, const json::object& system, std::size_t root) {
    std::size_t socket = 0;
    for (const RedfishPart& part : parts.tree().members(system, "Processors")) {
        const std::string type = redfishText(*part.data, "ProcessorType");
        const bool isProcessor = type.empty() || type == "CPU";
        if (type == "Core" || type == "Thread") {
            continue;
        }
        const RedfishKind& kind = isProcessor ? SOCKET : type == "GPU" ? GPU : COPROCESSOR;
        parts.add(kind, isProcessor ? RedfishPart{part.data, std::to_string(socket++)} : part, root);
    }
}

std::string bufferingOf(const json::object& module) {
    const std::string type = redfishText(module, "BaseModuleType");
    const auto has = [&type](std::string_view word) {
        return type.find(word) != std::string::npos;
    };
    return has("LRDIMM") ? "Load Reduced" : has("RDIMM") ? "Registered" : has("UDIMM") ? "Unbuffered" : "";
}

/// What keeps the module's content without power; empty for RAM.
std::string persistentTechnology(const json::object& module) {
    static constexpr std::pair<std::string_view, std::string_view> WORDS[] = {
        {"IntelOptane", "Intel Optane persistent memory"},
        {"NVDIMM_N", "NVDIMM-N"},
        {"NVDIMM_F", "NVDIMM-F"},
        {"NVDIMM_P", "NVDIMM-P"},
    };
    const std::string type = redfishText(module, "MemoryType");
    const auto* const known = std::ranges::find(WORDS, type, &std::pair<std::string_view, std::string_view>::first);
    return type == "DRAM" ? "" : known == std::end(WORDS) ? type : std::string(known->second);
}

double fastestOf(const json::object& module) {
    double fastest = 0;
    for (int number = 0; number < 64; ++number) {
        fastest = std::max(fastest, redfishNumber(module, fmt::format("AllowedSpeedsMHz/{}", number)).value_or(0));
    }
    return fastest;
}

/// 0 for what no such number can be.
unsigned smallNumber(std::optional<double> number) {
    static constexpr double LARGEST = 1e9;
    return number && *number > 0 && *number < LARGEST ? static_cast<unsigned>(*number) : 0;
}

MemoryModuleFacts moduleFacts(const RedfishPart& part) {
    static constexpr std::uint64_t MIB = 1024 * 1024;
    const json::object& data = *part.data;
    MemoryModuleFacts module;
    module.isInstalled = isRedfishPresent(data);
    module.slot = part.id;
    module.formFactor = redfishText(data, "BaseModuleType").find("SO_") == 0 ? "SODIMM" : "";
    module.memoryType = redfishText(data, "MemoryDeviceType");
    module.buffering = bufferingOf(data);
    module.vendor = redfishText(data, "Manufacturer");
    module.partNumber = redfishText(data, "PartNumber");
    module.serialNumber = redfishText(data, "SerialNumber");
    module.assetTag = redfishText(data, "AssetTag");
    module.technology = persistentTechnology(data);
    module.isPersistent = !module.technology.empty();
    module.size = smallNumber(redfishNumber(data, "CapacityMiB")) * MIB;
    module.speed = smallNumber(fastestOf(data));
    module.configuredSpeed = smallNumber(redfishNumber(data, "OperatingSpeedMhz"));
    module.dataWidth = smallNumber(redfishNumber(data, "DataWidthBits"));
    module.totalWidth = smallNumber(redfishNumber(data, "BusWidthBits"));
    module.ranks = smallNumber(redfishNumber(data, "RankCount"));
    return module;
}

void addModuleState(RedfishParts& parts, const json::object& module, DeviceRecord& device) {
    if (device.type == u"Slot") {
        addRedfishUsage(device, module);
    }
    device.text(property::HEALTH, redfishText(module, "Status/Health"), Category::Volatile());
    parts.noteHealth(module, device);
}

void addMemoryOf(RedfishParts& parts, const json::object& system, std::size_t root) {
    static constexpr double GIB = 1024.0 * 1024 * 1024;
    const std::vector<RedfishPart> modules = parts.tree().members(system, "Memory");
    const double total = redfishNumber(system, "MemorySummary/TotalSystemMemoryGiB").value_or(0);
    MemoryFacts facts;
    std::ranges::transform(modules, std::back_inserter(facts.modules), moduleFacts);
    if (modules.empty() && !(total > 0 && total < 1e9)) {
        return;
    }
    Recording& recording = parts.recording();
    const std::size_t memory = addMemory(recording, root, facts);
    if (modules.empty()) {
        recording.at(memory).size(property::INSTALLED_SIZE, static_cast<std::uint64_t>(total * GIB));
    }
    std::size_t place = memory + 1;  // of the next module; the firmware's chips have none
    for (const RedfishPart& module : modules) {
        if (place < recording.size() && recording.at(place).hwLocator == "dimm:" + cleanName(module.id)) {
            addModuleState(parts, *module.data, recording.at(place++));
        }
    }
}

/// What is software, or a part of another interface, is no hardware.
void addInterfacesOf(RedfishParts& parts, const json::object& system, std::size_t root) {
    std::vector<RedfishPart> interfaces = parts.tree().members(system, "EthernetInterfaces");
    std::erase_if(interfaces, [](const RedfishPart& part) {
        return redfishText(*part.data, "EthernetInterfaceType") == "Virtual";
    });
    parts.addAll(ETHERNET, interfaces, root);
}

}  // namespace

void addRedfishPcie(RedfishParts& parts, const json::object& owner, std::size_t root) {
    for (const RedfishPart& part : parts.tree().members(owner, "PCIeDevices")) {
        const std::size_t place = parts.add(PCI_DEVICE, part, root);
        const std::vector<RedfishPart> functions = parts.tree().members(*part.data, "PCIeFunctions");
        if (place != Recording::NONE && !functions.empty() && parts.recording().at(place).type != u"Slot") {
            addRedfishFields(parts.recording().at(place), *functions.front().data, PCI_FUNCTION);
        }
    }
}

void addRedfishSystem(RedfishParts& parts, const json::object& system, std::size_t root) {
    addFirmwareOf(parts, system, root);
    addProcessorsOf(parts, system, root);
    addMemoryOf(parts, system, root);
    addRedfishStorage(parts, system, root);
    addInterfacesOf(parts, system, root);
    addRedfishPcie(parts, system, root);
    parts.addAll(DISPLAY, parts.tree().members(system, "GraphicsControllers"), root);
    parts.addAll(USB, parts.tree().members(system, "USBControllers"), root);
    parts.addAll(TPM, parts.tree().members(system, "TrustedModules"), root);
}

}  // namespace vrx
