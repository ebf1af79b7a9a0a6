/// Trusted platform modules. The kernel tells the version of the interface; who made the module it tells only of those
/// of the first generation, for the others the firmware's table may. Modules that programs emulate are left out.

#include <fmt/format.h>

#include <algorithm>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

const std::string MODULES = "/sys/class/tpm/";

/// The text behind "LABEL: " in a file of such lines.
std::string labelledField(std::string_view text, std::string_view label) {
    const std::size_t at = text.find(label);
    if (at == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(at + label.size());
    return std::string(text.substr(0, text.find('\n')));
}

/// Four letters in a number: "0x53544d20" is "STM ".
std::string lettersOf(std::string_view number) {
    const auto value = parseNumber(number).value_or(0);
    std::string letters;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        const auto letter = static_cast<char>(value >> shift & 0xFF);
        if (letter > ' ' && letter < 0x7F) {
            letters.push_back(letter);
        }
    }
    return letters;
}

/// The module that the firmware's table has told of already; else a new one.
std::size_t placeOfModule(Recording& recording) {
    for (std::size_t place = 0; place < recording.size(); ++place) {
        if (recording.at(place).type == u"TrustedPlatformModule" &&
            recording.at(place).osLocator.find("tpm") == std::string::npos) {
            return place;
        }
    }
    DeviceRecord module;
    module.type = u"TrustedPlatformModule";
    module.name = "Trusted platform module";
    module.parent = 0;
    return recording.add(std::move(module));
}

void addMissing(DeviceRecord& module, StringView key, std::string_view value) {
    if (!module.has(key)) {
        module.text(key, value);
    }
}

}  // namespace

void collectSecurity(CollectContext& context) {
    const RootFolder& root = context.root;
    for (const std::string& name : root.list(MODULES)) {
        const std::string folder = MODULES + name;
        if (!name.starts_with("tpm") || name.starts_with("tpmrm") || isVirtualFolder(root.resolved(folder))) {
            continue;
        }
        const std::string capabilities = root.text(folder + "/device/caps");
        DeviceRecord& module = context.recording.amend(placeOfModule(context.recording));
        module.hwLocator = "tpm";
        module.osLocator = "/dev/" + name;
        const std::string major = root.text(folder + "/tpm_version_major");
        const std::string version = labelledField(capabilities, "TCG version: ");
        addMissing(module, property::VERSION, version.empty() && !major.empty() ? major + ".0" : version);
        addMissing(module, property::VENDOR, lettersOf(labelledField(capabilities, "Manufacturer: ")));
        addMissing(module, property::FIRMWARE_VERSION, labelledField(capabilities, "Firmware version: "));
    }
}

}  // namespace vrx
