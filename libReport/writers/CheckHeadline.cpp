/// The head line of a failed check.
///
/// Every missing device is looked for in the machine: the device at its place (the hardware locator it asks for, else
/// the operating-system locator), if that has the right type, is what became of it. Without a locator in the script the
/// candidate whose properties come nearest stands in, and then the line says so, because another device may have been
/// meant. A device that is there is said to differ, in the first thing that does: its name, its other locator, or the
/// first property that its nearest candidate fails.

#include "libReport/writers/CheckHeadline.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libDiagnosis/MissingDevices.h"
#include "libInventory/script/ScriptElement.h"
#include "libRegex/Regex.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/ReadablePattern.h"
#include "libReport/text/TextPieces.h"
#include "libReport/writers/NearestCandidate.h"
#include "libReport/writers/ScriptFinding.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

constexpr std::size_t LONGEST_TEXT = 60;

/// The text, or its beginning when it is too long for a head line. It is printable UTF-8.
std::string shortened(std::string text) {
    if (text.size() <= LONGEST_TEXT) {
        return text;
    }
    std::size_t end = LONGEST_TEXT;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return text.substr(0, end) + "...";
}

std::string expectedFound(const std::string& what, const std::string& expected, const std::string& found) {
    return what + ": expected " + shortened(expected) + ", found " + shortened(found);
}

/// The name that an element asks for, in quotes unless it is a true pattern; empty when it asks for none.
std::string askedName(const XmlElement& element) {
    const std::string name = readablePattern(askedFor(element, u"name"));
    if (name == "\"\"") {
        return {};
    }
    const bool isLiteral = !name.starts_with("pattern ") && !name.starts_with("begins with ") &&
                           !name.starts_with("ends with ") && !name.starts_with('"');
    return isLiteral ? "\"" + name + "\"" : name;
}

/// `TYPE "NAME" (LOCATOR)` of what an element asks for; `device`, if any, tells what the element leaves open.
std::string titleOf(const XmlElement& element, const IDeviceImp* device) {
    std::string title = printable(askedFor(element, u"type"));
    std::string name = askedName(element);
    if (device != nullptr && !device->name().isEmpty() && !name.starts_with('"')) {
        name = "\"" + printable(device->name()) + "\"";
    }
    title += (name.empty() ? "" : " ") + name;
    String locator = askedFor(element, u"hwlocator");
    if (locator.isEmpty() && device != nullptr) {
        locator = device->hwLocator();
    }
    if (locator.isEmpty()) {
        locator = askedFor(element, u"oslocator");
    }
    return (title.empty() ? "device without a type" : title) +
           (locator.isEmpty() ? "" : " (" + printable(locator) + ")");
}

/// The properties that candidates for the element failed.
std::vector<PropertyMismatch> mismatchesIn(const XmlElement& element) {
    std::vector<PropertyMismatch> mismatches;
    for (const ScriptFinding& finding : findingsIn(element)) {
        Array<String> rest;
        if (finding.element != &element) {
            for (PropertyMismatch& mismatch : mismatchesOf(finding, rest)) {
                mismatches.push_back(std::move(mismatch));
            }
        }
    }
    return mismatches;
}

/// The device of the right type at the place that the element asks for; null when it asks for none or none is there.
const IDeviceImp* deviceAtPlace(const XmlElement& element, const StateManager& machine) {
    const CapabilityImp type(attributeOf(element, u"type"));
    const String hwLocator = askedFor(element, u"hwlocator");
    const String osLocator = askedFor(element, u"oslocator");
    const bool hasHwLocator = !hwLocator.isEmpty();
    if (!hasHwLocator && osLocator.isEmpty()) {
        return nullptr;
    }
    const IDeviceImp* found = nullptr;
    for (const auto& device :
         hasHwLocator ? machine.devicesByHwLocator(hwLocator) : machine.devicesByOsLocator(osLocator)) {
        if (type.isCapable(device->type()) && (found == nullptr || device->osLocator() == osLocator)) {
            found = device.get();
        }
    }
    return found;
}

std::string firstMismatch(const std::vector<PropertyMismatch>& mismatches) {
    const PropertyMismatch& first = mismatches.front();
    return expectedFound(printable(first.property->Attribute(u"key")), expectedText(*first.property),
                         first.isAbsent ? "no such property" : printableValue(first.found));
}

/// What is different about a device that is where it should be.
std::string differenceOf(const XmlElement& element, const IDeviceImp& device, const StateManager& machine) {
    const std::vector<PropertyMismatch> mismatches = mismatchesIn(element);
    if (!mismatches.empty()) {
        const CapabilityImp type(attributeOf(element, u"type"));
        return firstMismatch(nearestOf(mismatches, type, &machine).mismatches);
    }
    const String name = askedFor(element, u"name");
    if (!name.isEmpty() && !Regex::rangeMatches(name, device.name(), Regex::CASE_SENSITIVE) && name != device.name()) {
        return expectedFound("name", readablePattern(name), printableValue(device.name()));
    }
    const String osLocator = askedFor(element, u"oslocator");
    return osLocator == device.osLocator()
               ? std::string()
               : expectedFound("OS locator", printableValue(osLocator), printableValue(device.osLocator()));
}

/// What is wrong about a device element that the machine does not meet, and which device became of it.
struct Problem {
    std::string text;
    const IDeviceImp* device = nullptr;
};

Problem problemOfMissing(const XmlElement& element, const StateManager& machine) {
    if (const IDeviceImp* const device = deviceAtPlace(element, machine)) {
        const std::string difference = differenceOf(element, *device, machine);
        return {titleOf(element, device) + (difference.empty() ? " is missing" : " differs: " + difference), device};
    }
    const CapabilityImp type(attributeOf(element, u"type"));
    const std::vector<PropertyMismatch> mismatches = mismatchesIn(element);
    if (mismatches.empty()) {
        return {titleOf(element, nullptr) +
                (type.isInvalid() ? " cannot be found: that is no device type" : " is missing")};
    }
    const NearestCandidate nearest = nearestOf(mismatches, type, &machine);
    if (nearest.candidates == 1) {
        return {titleOf(element, nearest.device) + " differs: " + firstMismatch(nearest.mismatches), nearest.device};
    }
    const std::string near = nearest.device ? "; nearest is " + deviceTitle(*nearest.device) + ", " : "; ";
    return {titleOf(element, nullptr) + " is missing" + near + firstMismatch(nearest.mismatches), nearest.device};
}

std::string titleOf(const Inventory::DeviceSpec& device) {
    const String& locator = device.hwLocator.isEmpty() ? device.osLocator : device.hwLocator;
    return printable(device.type) + (device.name.isEmpty() ? "" : " \"" + printable(device.name) + "\"") +
           (locator.isEmpty() ? "" : " (" + printable(locator) + ")");
}

/// Extra devices that are not the other side of a missing one.
std::vector<const Inventory::DeviceSpec*> unpaired(const Array<Inventory::DeviceSpec>& extra,
                                                   const std::set<const IDeviceImp*>& changed) {
    std::set<std::pair<StringView, StringView>> places;
    for (const IDeviceImp* const device : changed) {
        places.emplace(device->hwLocator(), device->osLocator());
    }
    std::vector<const Inventory::DeviceSpec*> left;
    for (const Inventory::DeviceSpec& device : extra) {
        if (!places.contains({device.hwLocator, device.osLocator})) {
            left.push_back(&device);
        }
    }
    return left;
}

const XmlElement* firstDeviceIn(const XmlElement& element) {
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const XmlElement* const found = isNamed(*child, u"device") ? child : firstDeviceIn(*child);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

/// The first devices of every `not` whose content is there all the same.
std::vector<const XmlElement*> forbiddenDevices(const XmlDocument& script) {
    std::vector<const XmlElement*> devices;
    for (const ScriptFinding& finding : findingsOf(script)) {
        const XmlElement* const device = isNamed(*finding.element, u"not") ? firstDeviceIn(*finding.element) : nullptr;
        const Array<String>& messages = finding.messages;
        if (device != nullptr &&
            std::find(messages.begin(), messages.end(), u"matched device under not node") != messages.end()) {
            devices.push_back(device);
        }
    }
    return devices;
}

}  // namespace

std::string problemSentence(const CheckReport& report, const Array<Inventory::DeviceSpec>& missing) {
    const std::vector<const XmlElement*> elements = missingElements(missing, *report.annotatedScript);
    std::string first;
    std::set<const IDeviceImp*> changed;
    for (const XmlElement* const element : elements) {
        if (first.empty() || !report.extra.isEmpty()) {
            const Problem problem = problemOfMissing(*element, *report.machine);
            first = first.empty() ? problem.text : first;
            if (problem.device != nullptr) {
                changed.insert(problem.device);
            }
        }
    }
    const std::vector<const Inventory::DeviceSpec*> extra = unpaired(report.extra, changed);
    const std::vector<const XmlElement*> forbidden = forbiddenDevices(*report.annotatedScript);
    if (first.empty() && !extra.empty()) {
        first = titleOf(*extra.front()) + " is too many";
    } else if (first.empty() && !forbidden.empty()) {
        first = titleOf(*forbidden.front(), nullptr) + " is there and must not be";
    }
    const std::size_t count = elements.size() + extra.size() + forbidden.size();
    if (first.empty()) {
        return "the machine does not hold what the script asks for";
    }
    return count > 1 ? first + ", and " + counted(count - 1, "more problem") : first;
}

}  // namespace vrx
