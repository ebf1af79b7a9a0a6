/// Keyboards, mice, touch pads, touch screens and joysticks. One in a USB device is that device; what is on the board
/// becomes a device of its own, by the physical path that its driver tells ("isa0060/serio1/input0").
///
/// The kernel shows one piece of hardware as several input devices when it has several functions; their paths differ in
/// what is behind the last "/input" only, and they are one device here. What is software, or comes and goes over the
/// air, is left out, and so are buttons and switches.

#include <algorithm>
#include <map>
#include <utility>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/ids/InputKind.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

const std::string INPUTS = "/sys/class/input/";
constexpr std::string_view BLUETOOTH = "0005";

StringView kindOf(const RootFolder& root, const std::string& folder) {
    const std::string keys = root.text(folder + "/capabilities/key");
    const std::string relative = root.text(folder + "/capabilities/rel");
    const std::string absolute = root.text(folder + "/capabilities/abs");
    const std::string properties = root.text(folder + "/properties");
    return inputKind({keys, relative, absolute, properties});
}

/// What the kernel shows as an input device.
struct InputFunction {
    std::string folder;
    std::string sysPath;
    std::string path;  ///< of the hardware, without the number of the function
    StringView kind;
};

/// A touch pad sends what a mouse sends as well, and a receiver what a keyboard sends; the first of these is what the
/// hardware is.
int rankOf(StringView kind) noexcept { return kind.starts_with(u"Touch") ? 0 : kind == u"Keyboard" ? 1 : 2; }

std::vector<InputFunction> readInputFunctions(const RootFolder& root) {
    std::vector<InputFunction> functions;
    for (const std::string& name : root.list(INPUTS)) {
        InputFunction function;
        function.folder = INPUTS + name;
        function.sysPath = root.resolved(function.folder);
        if (!name.starts_with("input") || function.sysPath.empty() || isVirtualFolder(function.sysPath) ||
            root.text(function.folder + "/id/bustype") == BLUETOOTH) {
            continue;
        }
        function.kind = kindOf(root, function.folder);
        function.path = cleanName(root.text(function.folder + "/phys"));
        function.path.erase(std::min(function.path.rfind("/input"), function.path.size()));
        if (!function.kind.empty()) {
            functions.push_back(std::move(function));
        }
    }
    std::stable_sort(functions.begin(), functions.end(),
                     [](const InputFunction& a, const InputFunction& b) { return rankOf(a.kind) < rankOf(b.kind); });
    return functions;
}

DeviceRecord newInput(const RootFolder& root, const InputFunction& function) {
    const std::string name = cleanName(root.text(function.folder + "/name"));
    DeviceRecord input;
    input.type = function.kind;
    input.name = name.empty() ? "Input device" : name;
    input.hwLocator = "input:" + function.path;
    input.osLocator = "/proc/bus/input/devices#" + function.path;
    input.sysPath = function.sysPath;
    input.text(property::MODEL, name);
    for (const auto& [key, file] :
         {std::pair(property::VENDOR_ID, "/id/vendor"), std::pair(property::DEVICE_ID, "/id/product")}) {
        if (const std::string id = root.text(function.folder + file); id != "0000") {
            input.text(key, id);
        }
    }
    return input;
}

}  // namespace

void collectInput(CollectContext& context) {
    std::map<std::string, std::size_t> byPath;
    for (const InputFunction& function : readInputFunctions(context.root)) {
        const std::size_t above = context.recording.nearest(function.sysPath);
        if (above != Recording::NONE && context.recording.at(above).hwLocator.starts_with("usb:")) {
            context.recording.amend(above).isAlso(function.kind);
        } else if (const auto known = byPath.find(function.path); known != byPath.end()) {
            context.recording.amend(known->second).isAlso(function.kind);
        } else if (!function.path.empty()) {
            byPath.emplace(function.path, context.recording.add(newInput(context.root, function)));
        }
    }
}

}  // namespace vrx
