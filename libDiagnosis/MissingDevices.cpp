#include "libDiagnosis/MissingDevices.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptWalk.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;
using Texts = std::tuple<StringView, StringView, StringView, StringView>;

/// The texts of `device` elements under a `not`, and of those that are under none.
struct DeviceTexts {
    std::set<Texts> forbidden;
    std::set<Texts> wanted;
};

Texts textsOf(const XmlElement& device) {
    return {device.Attribute(vocabulary::NAME), device.Attribute(vocabulary::TYPE),
            device.Attribute(vocabulary::HW_LOCATOR), device.Attribute(vocabulary::OS_LOCATOR)};
}

Texts textsOf(const Inventory::DeviceSpec& device) {
    return {device.name, device.type, device.hwLocator, device.osLocator};
}

void collect(const XmlElement& root, DeviceTexts& texts) {
    for (ScriptWalk walk(root); walk; ++walk) {
        if (walk->kind == ElementKind::Device) {
            (walk->isUnderNot() ? texts.forbidden : texts.wanted).insert(textsOf(*walk->element));
            walk.skipContent();
        }
    }
}

std::vector<const XmlElement*> wantedDevices(const XmlElement& root) {
    std::vector<const XmlElement*> devices;
    for (ScriptWalk walk(root); walk; ++walk) {
        if (walk->kind == ElementKind::Device && !walk->isUnderNot()) {
            devices.push_back(walk->element);
        }
        if (walk->kind == ElementKind::Device || walk->kind == ElementKind::Not) {
            walk.skipContent();
        }
    }
    return devices;
}

bool hasFinding(const XmlElement& element) { return hasElement(element, ElementKind::Error); }

}  // namespace

Array<Inventory::DeviceSpec> missingDevices(const Array<Inventory::DeviceSpec>& unsatisfied,
                                            const XmlDocument& script) {
    DeviceTexts texts;
    const XmlElement* const root = script.RootElement();
    if (root != nullptr && !unsatisfied.isEmpty()) {
        collect(*root, texts);
    }
    Array<Inventory::DeviceSpec> missing;
    for (const Inventory::DeviceSpec& device : unsatisfied) {
        const Texts of = textsOf(device);
        if (!texts.forbidden.contains(of) || texts.wanted.contains(of)) {
            missing.append(device);
        }
    }
    return missing;
}

std::vector<const XmlElement*> missingElements(const Array<Inventory::DeviceSpec>& missing, const XmlDocument& script) {
    std::map<Texts, std::size_t> counts;
    for (const Inventory::DeviceSpec& device : missing) {
        ++counts[textsOf(device)];
    }
    std::vector<const XmlElement*> wanted;
    if (const XmlElement* const root = script.RootElement()) {
        wanted = wantedDevices(*root);
    }
    std::set<const XmlElement*> chosen;
    for (const bool isWithFinding : {true, false}) {
        for (const XmlElement* const device : wanted) {
            const auto count = counts.find(textsOf(*device));
            if (count != counts.end() && count->second > 0 && hasFinding(*device) == isWithFinding) {
                --count->second;
                chosen.insert(device);
            }
        }
    }
    std::erase_if(wanted, [&chosen](const XmlElement* device) { return !chosen.contains(device); });
    return wanted;
}

}  // namespace vrx
