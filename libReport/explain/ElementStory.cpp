#include "libReport/explain/ElementStory.h"

#include <algorithm>
#include <charconv>

#include "libDiagnosis/faults/DeviceTrial.h"
#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

std::optional<ElementPlace> placeFrom(std::string_view text) {
    ElementPlace place;
    const char* const end = text.data() + text.size();
    const auto row = std::from_chars(text.data(), end, place.row);
    if (row.ec != std::errc() || row.ptr == end || *row.ptr != ':') {
        return std::nullopt;
    }
    const auto column = std::from_chars(row.ptr + 1, end, place.column);
    return column.ec == std::errc() && column.ptr == end ? std::optional(place) : std::nullopt;
}

bool isAskedAt(const XmlElement& element, const String& where) {
    const Inventory::DeviceSpec asked = askedBy(element);
    return !where.isEmpty() && (asked.hwLocator == where || asked.osLocator == where || asked.guid() == where);
}

/// The element that has the device of that guid or locator.
const XmlElement* holderAt(const Inventory& inventory, const StateManager& machine, const String& where) {
    if (const StateManager::DevicePointer device = machine.deviceByGuid(where)) {
        return inventory.holderOf(*device);
    }
    for (const auto* const devices : {&machine.devicesByHwLocator(where), &machine.devicesByOsLocator(where)}) {
        for (const auto& device : *devices) {
            if (const XmlElement* const holder = inventory.holderOf(*device)) {
                return holder;
            }
        }
    }
    return nullptr;
}

struct Named {
    const XmlElement* element = nullptr;
    bool isForbidden = false;
};

Named elementNamed(const Inventory& inventory, const StateManager& machine, std::string_view where) {
    const std::optional<ElementPlace> place = placeFrom(where);
    const String text = String::UTF8Decode(where);
    const XmlElement* const holder = holderAt(inventory, machine, text);
    Named asked;
    Named holding;
    for (ScriptWalk walk(*inventory.script().RootElement()); walk; ++walk) {
        const XmlElement* const device = deviceAround(*walk->element);
        if (device == nullptr) {
            continue;
        }
        if (place && placeIn(*walk->element) == *place) {
            return {device, walk->isUnderNot()};
        }
        if (walk->kind == ElementKind::Device && asked.element == nullptr && isAskedAt(*device, text)) {
            asked = {device, walk->isUnderNot()};
        }
        if (device == holder) {
            holding = {device, false};
        }
    }
    return asked.element != nullptr ? asked : holding;
}

}  // namespace

std::optional<ElementStory> elementStory(const Inventory& inventory, const StateManager& machine,
                                         std::string_view where) {
    const auto [element, isForbidden] = elementNamed(inventory, machine, where);
    if (element == nullptr) {
        return std::nullopt;
    }
    const DeviceOutcome outcome = inventory.outcomeOf(*element);
    ElementStory story;
    story.place = placeIn(*element);
    story.asked = askedBy(*element);
    story.isSatisfied = outcome.isSatisfied;
    story.isForbidden = isForbidden;
    story.refusal = refusalOf(outcome, CapabilityImp(story.asked.type), &machine);
    for (const Candidate& candidate : outcome.candidates) {
        TriedDevice& tried = story.tried.emplace_back();
        tried.device = specOf(*candidate.device);
        tried.differences = differencesOf(candidate);
        if (candidate.holder != nullptr) {
            tried.holder = placeIn(*candidate.holder);
        }
    }
    return story;
}

}  // namespace vrx
