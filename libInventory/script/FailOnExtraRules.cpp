#include "libInventory/script/FailOnExtraRules.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/UuCode.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"

namespace vrx {

namespace {

using Guids = std::unordered_set<String, HashFunc<String>>;

/// What the script names: its device types in the order in which they come, and the devices by their locators.
struct NamedDevices {
    std::vector<String> types;
    Guids guids;
    Guids places;  ///< type and hardware locator, of elements that ask for no OS locator
};

/// A generated script holds the locators also where its root switches their check off.
String guidOf(const XmlElement& device) {
    const auto decoded = [&device](StringView attribute) {
        return fromXmlSafe(attributeOf(device, attribute));
    };
    return DeviceImp::guid(decoded(vocabulary::HW_LOCATOR), decoded(vocabulary::OS_LOCATOR));
}

String placeOf(const String& type, const String& hwLocator) { return concat(type, u" ", hwLocator); }

NamedDevices namedDevices(const XmlElement& root) {
    NamedDevices named;
    for (const XmlElement* const element : childElements(root)) {
        if (vocabulary::kindOf(*element) == vocabulary::ElementKind::Device) {
            const String type(attributeOf(*element, vocabulary::TYPE));
            if (element->FindAttribute(vocabulary::OS_LOCATOR) == nullptr) {
                named.places.insert(placeOf(type, fromXmlSafe(attributeOf(*element, vocabulary::HW_LOCATOR))));
            } else {
                named.guids.insert(guidOf(*element));
            }
            if (std::find(named.types.begin(), named.types.end(), type) == named.types.end()) {
                named.types.push_back(type);
            }
        }
    }
    return named;
}

bool namesAll(const NamedDevices& named, const StateManager& machine, const CapabilityImp& type) {
    const auto mayHide = [&type](const UnreadSource& unread) {
        return unread.mayHide(type);
    };
    const auto& devices = machine.devicesCapableOf(type);
    const auto isNamed = [&named](const auto& device) {
        return named.guids.contains(device->guid()) ||
               named.places.contains(placeOf(device->type().toString(0, false), device->hwLocator()));
    };
    return std::none_of(machine.unread().begin(), machine.unread().end(), mayHide) &&
           std::all_of(devices.begin(), devices.end(), isNamed);
}

}  // namespace

String withFailOnExtraRules(const String& script, const StateManager& machine) {
    const String end = concat(u"</", vocabulary::INVENTORY_CHECK, u">");
    const std::size_t at = script.view().rfind(end);
    XmlDocument document;
    if (at == StringView::npos || !document.Parse(toXmlSafe(script))) {
        return script;
    }
    const NamedDevices named = namedDevices(*document.RootElement());
    String text(script.view().substr(0, at));
    for (const String& name : named.types) {
        const CapabilityImp type(name);
        if (!type.isInvalid() && !type.isEmpty() && namesAll(named, machine, type)) {
            text += concat(u"    <", vocabulary::FAIL_ON_EXTRA, u" ", vocabulary::TYPE, u"=\"", name, u"\"/>\n");
        }
    }
    return text + script.view().substr(at);
}

}  // namespace vrx
