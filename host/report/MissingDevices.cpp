#include "host/report/MissingDevices.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "host/script/ScriptElement.h"

namespace vrx::host {

namespace {

using Texts = std::tuple<StringView, StringView, StringView, StringView>;

/// The texts of `device` elements under a `not`, and of those that are under none.
struct DeviceTexts {
    std::set<Texts> forbidden;
    std::set<Texts> wanted;
};

void collect(const XmlElement& element, bool isUnderNot, DeviceTexts& texts) {
    if (isNamed(element, u"device")) {
        (isUnderNot ? texts.forbidden : texts.wanted)
            .emplace(element.Attribute(u"name"), element.Attribute(u"type"), element.Attribute(u"hwlocator"),
                     element.Attribute(u"oslocator"));
        return;
    }
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        collect(*child, isUnderNot || isNamed(element, u"not"), texts);
    }
}

}  // namespace

Array<Inventory::DeviceSpec> missingDevices(const Array<Inventory::DeviceSpec>& unsatisfied,
                                            const XmlDocument& script) {
    DeviceTexts texts;
    if (const XmlElement* const root = script.RootElement()) {
        collect(*root, false, texts);
    }
    Array<Inventory::DeviceSpec> missing;
    for (const Inventory::DeviceSpec& device : unsatisfied) {
        const Texts of(device.name, device.type, device.hwLocator, device.osLocator);
        if (!texts.forbidden.contains(of) || texts.wanted.contains(of)) {
            missing.append(device);
        }
    }
    return missing;
}

}  // namespace vrx::host
