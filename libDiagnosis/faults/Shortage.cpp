#include "libDiagnosis/faults/Shortage.h"

#include <algorithm>

#include "libDiagnosis/DeviceProblem.h"
#include "libDiagnosis/faults/MissingElement.h"
#include "libInventory/Finding.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_SEARCHES = 100;
constexpr std::size_t MOST_LISTED = 100;

String fullKeyOf(const XmlElement& element) {
    const Inventory::DeviceSpec asked = askedBy(element);
    return concat(askedKey(element), u"\x1F", asked.hwLocator, u"\x1F", asked.osLocator);
}

std::optional<Shortage> shortageOf(const Competition& competition, const String& key) {
    if (competition.elements.isEmpty()) {
        return std::nullopt;
    }
    Shortage shortage;
    shortage.elements = competition.elements.size();
    shortage.devices = competition.devices.size();
    for (const XmlElement* const element : competition.elements) {
        shortage.isOfOneKind = shortage.isOfOneKind && fullKeyOf(*element) == key;
        if (shortage.elementPlaces.size() < MOST_LISTED) {
            shortage.elementPlaces.push_back(placeIn(*element));
        }
    }
    for (std::size_t i = 0; i < std::min(shortage.devices, MOST_LISTED); ++i) {
        shortage.deviceSpecs.push_back(specOf(*competition.devices[i]));
    }
    return shortage;
}

}  // namespace

std::optional<Shortage> Shortages::of(const XmlElement& element) {
    const String key = fullKeyOf(element);
    const auto known = m_known.find(key);
    if (known != m_known.end()) {
        return known->second;
    }
    if (m_known.size() == MOST_SEARCHES) {
        return std::nullopt;
    }
    return m_known.emplace(key, shortageOf(m_inventory.competitionFor(element), key)).first->second;
}

}  // namespace vrx
