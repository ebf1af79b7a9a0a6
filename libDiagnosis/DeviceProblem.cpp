/// What became of a device that is not there: the device at its place (the hardware locator that the element asks for,
/// else the operating-system locator), if that has the right type. What is different about it is what it failed when it
/// was tried; if it was not tried, its name or its other locator.

#include "libDiagnosis/DeviceProblem.h"

#include <algorithm>

#include "libCommon/text/UuCode.h"
#include "libDiagnosis/Breadth.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libRegex/Regex.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;
using DeviceText = const String& (IDeviceImp::*)() const;

constexpr std::size_t LOOKED_AT = 1000;  // enough to show some, however large the machine

bool holdsGroups(const XmlElement& device) {
    for (const XmlElement* const child : childElements(device)) {
        const ElementKind kind = vocabulary::kindOf(*child);
        if (kind == ElementKind::Not || kind == ElementKind::Or || kind == ElementKind::And) {
            return true;
        }
    }
    return false;
}

Inventory::DeviceSpec writtenIn(const XmlElement& element) {
    const auto decoded = [&element](StringView attribute) {
        return fromXmlSafe(attributeOf(element, attribute));
    };
    return {decoded(vocabulary::NAME), attributeOf(element, vocabulary::TYPE), decoded(vocabulary::HW_LOCATOR),
            decoded(vocabulary::OS_LOCATOR)};
}

DeviceText refusedText(FindingKind kind) noexcept {
    switch (kind) {
        case FindingKind::NoDeviceWithName: return &IDeviceImp::name;
        case FindingKind::NoDeviceWithOsLocator: return &IDeviceImp::osLocator;
        case FindingKind::NoDeviceWithHwLocator: return &IDeviceImp::hwLocator;
        default: return nullptr;
    }
}

void addPresent(Refusal& refusal, DeviceText textOf, const StateManager::DeviceArray& devices) {
    std::vector<StringView> texts;
    for (std::size_t i = 0; i < std::min(devices.size(), LOOKED_AT) && texts.size() <= Refusal::MOST_PRESENT; ++i) {
        const StringView text = ((*devices[i]).*textOf)();
        if (std::find(texts.begin(), texts.end(), text) == texts.end()) {
            texts.push_back(text);
        }
    }
    refusal.hasMorePresent = texts.size() > Refusal::MOST_PRESENT;
    texts.resize(std::min(texts.size(), Refusal::MOST_PRESENT));
    refusal.present.assign(texts.begin(), texts.end());
}

const IDeviceImp* deviceAt(const Inventory::DeviceSpec& asked, const CapabilityImp& type, const StateManager& machine) {
    const bool hasHwLocator = !asked.hwLocator.isEmpty();
    if (!hasHwLocator && asked.osLocator.isEmpty()) {
        return nullptr;
    }
    const IDeviceImp* found = nullptr;
    for (const auto& device :
         hasHwLocator ? machine.devicesByHwLocator(asked.hwLocator) : machine.devicesByOsLocator(asked.osLocator)) {
        if (type.isCapable(device->type()) && (found == nullptr || device->osLocator() == asked.osLocator)) {
            found = device.get();
        }
    }
    return found;
}

/// What an untried device has of a name and a locator in place of those that were asked for.
std::vector<Difference> differencesOf(const IDeviceImp& device, const Inventory::DeviceSpec& asked,
                                      const ElementPlace& place) {
    std::vector<Difference> differences;
    if (!asked.name.isEmpty() && !Regex::rangeMatches(asked.name, device.name(), Regex::CASE_SENSITIVE) &&
        asked.name != device.name()) {
        differences.push_back(
            {.what = Difference::What::Name, .place = place, .expected = {asked.name}, .found = device.name()});
    }
    if (!asked.osLocator.isEmpty() && asked.osLocator != device.osLocator()) {
        differences.push_back({.what = Difference::What::OsLocator,
                               .place = place,
                               .expected = {asked.osLocator},
                               .found = device.osLocator()});
    }
    return differences;
}

std::optional<NearDevice> nearDeviceAtPlace(const DeviceProblem& problem, const CapabilityImp& type,
                                            const StateManager& machine) {
    const IDeviceImp* const device = deviceAt(problem.asked, type, machine);
    if (device == nullptr || problem.candidates.nearest) {
        return device != nullptr ? problem.candidates.nearest : std::nullopt;
    }
    if (!problem.candidates.taken.empty()) {
        return NearDevice{problem.candidates.taken.front().device, {}};
    }
    return NearDevice{specOf(*device), differencesOf(*device, problem.asked, problem.place)};
}

}  // namespace

Inventory::DeviceSpec askedBy(const XmlElement& device) {
    return {askedFor(device, vocabulary::NAME), attributeOf(device, vocabulary::TYPE),
            askedFor(device, vocabulary::HW_LOCATOR), askedFor(device, vocabulary::OS_LOCATOR)};
}

std::optional<Refusal> refusalOf(const DeviceOutcome& outcome, const CapabilityImp& type, const StateManager* machine) {
    if (!outcome.refusal) {
        return std::nullopt;
    }
    const Finding& finding = *outcome.refusal;
    Refusal refusal{finding.kind, {}, {}, {}, false};
    if (!finding.expected.isEmpty()) {
        refusal.expected = finding.expected[0];
    }
    if (!finding.texts.isEmpty()) {
        refusal.words = finding.texts[0];
    }
    const DeviceText textOf = refusedText(finding.kind);
    if (textOf != nullptr && machine != nullptr) {
        addPresent(refusal, textOf, machine->devicesCapableOf(type));
    }
    return refusal;
}

DeviceProblem problemOf(const XmlElement& device, const Inventory& inventory, const StateManager* machine) {
    const CapabilityImp type(attributeOf(device, vocabulary::TYPE));
    const DeviceOutcome outcome = inventory.outcomeOf(device);
    DeviceProblem problem;
    problem.place = placeIn(device);
    problem.written = writtenIn(device);
    problem.asked = askedBy(device);
    problem.isKnownType = !type.isInvalid();
    problem.breadth = breadthOf(type);
    problem.hasGroups = holdsGroups(device);
    problem.candidates = summaryOf(outcome);
    problem.refusal = refusalOf(outcome, type, machine);
    if (machine != nullptr) {
        problem.atPlace = nearDeviceAtPlace(problem, type, *machine);
    }
    return problem;
}

}  // namespace vrx
