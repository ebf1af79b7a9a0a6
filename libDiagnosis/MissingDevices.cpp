#include "libDiagnosis/MissingDevices.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

using Texts = std::tuple<StringView, StringView, StringView, StringView>;

/// The texts of `device` elements under a `not`, and of those that are under none.
struct DeviceTexts {
    std::set<Texts> forbidden;
    std::set<Texts> wanted;
};

Texts textsOf(const XmlElement& device) {
    return {device.Attribute(u"name"), device.Attribute(u"type"), device.Attribute(u"hwlocator"),
            device.Attribute(u"oslocator")};
}

Texts textsOf(const Inventory::DeviceSpec& device) {
    return {device.name, device.type, device.hwLocator, device.osLocator};
}

void collect(const XmlElement& element, bool isUnderNot, DeviceTexts& texts) {
    if (isNamed(element, u"device")) {
        (isUnderNot ? texts.forbidden : texts.wanted).insert(textsOf(element));
        return;
    }
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        collect(*child, isUnderNot || isNamed(element, u"not"), texts);
    }
}

void collectWanted(const XmlElement& element, std::vector<const XmlElement*>& devices) {
    if (isNamed(element, u"device")) {
        devices.push_back(&element);
        return;
    }
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (!isNamed(*child, u"not")) {
            collectWanted(*child, devices);
        }
    }
}

bool hasFinding(const XmlElement& element) {
    if (isNamed(element, u"error")) {
        return true;
    }
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (hasFinding(*child)) {
            return true;
        }
    }
    return false;
}

}  // namespace

Array<Inventory::DeviceSpec> missingDevices(const Array<Inventory::DeviceSpec>& unsatisfied,
                                            const XmlDocument& script) {
    DeviceTexts texts;
    const XmlElement* const root = script.RootElement();
    if (root != nullptr && !unsatisfied.isEmpty()) {
        collect(*root, false, texts);
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
        collectWanted(*root, wanted);
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
