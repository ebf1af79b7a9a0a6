/// The engine describes a property that failed in messages, one after the other:
///
///     <hwLocator> - <key>                                      three messages for a value that differs
///      Expected (regular expression): <patterns>
///      did not match sysinfo value  : <value>
///     property key: <key> not found in Sysinfo <type> device: <name>      one message for a missing property
///
/// Locators, keys, names and values may hold any text, so a message is recognised by its fixed words and by the key,
/// which the element itself tells.

#include "libReport/writers/PropertyMismatch.h"

#include <optional>

#include "libInventory/script/ScriptElement.h"
#include "libReport/text/ReadablePattern.h"

namespace vrx {

namespace {

constexpr StringView EXPECTED = u" Expected (regular expression): ";
constexpr StringView FOUND = u" did not match sysinfo value  : ";
constexpr StringView DEVICE = u" device: ";

std::optional<PropertyMismatch> differingValue(const ScriptFinding& finding, std::size_t at, StringView key) {
    const Array<String>& messages = finding.messages;
    const String ending = concat(u" - ", key);
    const StringView header = messages[at];
    if (at + 2 >= messages.size() || !header.ends_with(ending.view()) ||
        !messages[at + 1].view().starts_with(EXPECTED) || !messages[at + 2].view().starts_with(FOUND)) {
        return std::nullopt;
    }
    PropertyMismatch mismatch{};
    mismatch.property = finding.element;
    mismatch.hwLocator = header.substr(0, header.size() - ending.size());
    mismatch.found = messages[at + 2].view().substr(FOUND.size());
    return mismatch;
}

std::optional<PropertyMismatch> missingProperty(const ScriptFinding& finding, StringView message, StringView key) {
    const String beginning = concat(u"property key: ", key, u" not found in Sysinfo ");
    const std::size_t device = message.find(DEVICE);
    if (!message.starts_with(beginning.view()) || device == StringView::npos || device < beginning.size()) {
        return std::nullopt;
    }
    PropertyMismatch mismatch{};
    mismatch.property = finding.element;
    mismatch.isAbsent = true;
    mismatch.deviceType = message.substr(beginning.size(), device - beginning.size());
    mismatch.deviceName = message.substr(device + DEVICE.size());
    return mismatch;
}

}  // namespace

std::vector<PropertyMismatch> mismatchesOf(const ScriptFinding& finding, Array<String>& rest) {
    std::vector<PropertyMismatch> mismatches;
    const StringView key = finding.element->Attribute(u"key");
    for (std::size_t at = 0; at < finding.messages.size(); ++at) {
        if (std::optional<PropertyMismatch> differing = differingValue(finding, at, key)) {
            mismatches.push_back(std::move(*differing));
            at += 2;
        } else if (std::optional<PropertyMismatch> missing = missingProperty(finding, finding.messages[at], key)) {
            mismatches.push_back(std::move(*missing));
        } else {
            rest.append(finding.messages[at]);
        }
    }
    return mismatches;
}

std::string expectedText(const XmlElement& property) {
    std::string text;
    const char* separator = "";
    for (const String& value : askedValues(property)) {
        text += separator + readablePattern(value);
        separator = ", ";
    }
    return *separator == '\0' ? "any value" : text;
}

}  // namespace vrx
