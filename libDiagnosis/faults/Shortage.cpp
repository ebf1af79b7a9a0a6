#include "libDiagnosis/faults/Shortage.h"

#include <algorithm>

#include "libDiagnosis/WantedDevices.h"
#include "libInventory/Finding.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_SEARCHES = 100;
constexpr std::size_t MOST_LISTED = 100;

}  // namespace

std::optional<Shortage> Shortages::shortageOf(const Competition& competition, std::size_t sort) {
    if (competition.elements.isEmpty()) {
        return std::nullopt;
    }
    Shortage shortage;
    shortage.elements = competition.elements.size();
    shortage.devices = competition.devices.size();
    for (const XmlElement* const element : competition.elements) {
        shortage.isOfOneKind = shortage.isOfOneKind && m_asked.of(*element).placedSort == sort;
        if (shortage.elementPlaces.size() < MOST_LISTED) {
            shortage.elementPlaces.push_back(placeIn(*element));
        }
    }
    for (std::size_t i = 0; i < std::min(shortage.devices, MOST_LISTED); ++i) {
        shortage.deviceSpecs.push_back(specOf(*competition.devices[i]));
    }
    return shortage;
}

std::optional<Shortage> Shortages::of(const XmlElement& element) {
    const std::size_t sort = m_asked.of(element).placedSort;
    const auto known = m_known.find(sort);
    if (known != m_known.end()) {
        return known->second;
    }
    if (m_known.size() == MOST_SEARCHES) {
        return std::nullopt;
    }
    return m_known.emplace(sort, shortageOf(m_inventory.competitionFor(element), sort)).first->second;
}

}  // namespace vrx
