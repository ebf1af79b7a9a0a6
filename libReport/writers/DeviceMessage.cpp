#include "libReport/writers/DeviceMessage.h"

#include <algorithm>
#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libInventory/script/ScriptElement.h"
#include "libReport/text/ReadablePattern.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using DeviceText = const String& (IDeviceImp::*)() const;

constexpr std::size_t SHOWN_TEXTS = 3;
constexpr std::size_t LOOKED_AT = 1000;  // enough to show some, however large the machine

/// Some of the texts that devices of that type have, each once.
std::string textsOf(const CapabilityImp& type, DeviceText textOf, const StateManager* machine) {
    if (machine == nullptr) {
        return "others";
    }
    const auto& devices = machine->devicesCapableOf(type);
    std::vector<StringView> texts;
    for (std::size_t i = 0; i < std::min(devices.size(), LOOKED_AT) && texts.size() <= SHOWN_TEXTS; ++i) {
        const StringView text = ((*devices[i]).*textOf)();
        if (std::find(texts.begin(), texts.end(), text) == texts.end()) {
            texts.push_back(text);
        }
    }
    std::string out;
    for (std::size_t i = 0; i < std::min(texts.size(), SHOWN_TEXTS); ++i) {
        out += (i == 0 ? "" : ", ") + printableValue(texts[i]);
    }
    return out + (texts.size() > SHOWN_TEXTS ? ", ..." : "");
}

struct Filter {
    StringView words;
    const char* label;
    DeviceText textOf;
    bool isPattern;
};

const Filter FILTERS[] = {{u" with name: ", "name ", &IDeviceImp::name, true},
                          {u" with oslocator: ", "OS locator ", &IDeviceImp::osLocator, false},
                          {u" with hwlocator: ", "hardware locator ", &IDeviceImp::hwLocator, false}};

/// `rest` is what follows "No device of type: ".
DeviceMessage noDevice(StringView type, StringView rest, const StateManager* machine) {
    if (rest.starts_with(type)) {
        for (const Filter& filter : FILTERS) {
            const StringView asked = rest.substr(type.size());
            if (asked.starts_with(filter.words)) {
                const String text = String(asked.substr(filter.words.size())).uuDecode(true, true);
                return {"", filter.label + (filter.isPattern ? readablePattern(text) : printableValue(text)),
                        textsOf(CapabilityImp(type), filter.textOf, machine), filter.isPattern ? text : String()};
            }
        }
    }
    return {"", "a device of type " + printable(rest), "none", {}};
}

}  // namespace

std::optional<DeviceMessage> deviceMessage(const XmlElement& device, StringView message, const StateManager* machine) {
    constexpr StringView NO_DEVICE = u"No device of type: ";
    const StringView type = attributeOf(device, u"type");
    if (message.starts_with(u"Unsatisfied device of type: ")) {
        return std::nullopt;
    }
    if (message.starts_with(NO_DEVICE)) {
        return noDevice(type, message.substr(NO_DEVICE.size()), machine);
    }
    if (message.starts_with(u"Invalid device type: ")) {
        return DeviceMessage{"\"" + printable(type) + "\" is no device type", "", "", {}};
    }
    return DeviceMessage{printable(message), "", "", {}};
}

std::string deviceHeading(const XmlElement& device) {
    std::string text = printable(attributeOf(device, u"type"));
    const auto add = [&](StringView attribute, const char* before, bool isPattern) {
        const String value = String(attributeOf(device, attribute)).uuDecode(true, true);
        if (!value.isEmpty()) {
            text += before + (isPattern ? readablePattern(value) : printableValue(value));
        }
    };
    add(u"name", ", ", true);
    add(u"hwlocator", ", at ", false);
    add(u"oslocator", ", at ", false);
    return text.empty() ? "device without a type" : text;
}

}  // namespace vrx
