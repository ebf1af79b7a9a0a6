/// Which guids somebody may have meant: those with the smallest edit distance without letter case. A guid that contains
/// the asked text, or is contained in it, counts as near whatever is missing, because half of a guid (one locator) is
/// what people know.

#include "cli/input/NearGuids.h"

#include <algorithm>

#include "libCommon/text/EditDistance.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx::cli {

namespace {

constexpr std::size_t SHOWN = 3;
constexpr std::size_t LONGEST_COMPARED = 200;

/// How far the two are apart; more than `asked.size()` when they have nothing in common.
std::size_t distanceOf(StringView asked, StringView guid) {
    if (asked.empty() || guid.find(asked) != StringView::npos || asked.find(guid) != StringView::npos) {
        return 0;
    }
    const std::size_t distance = editDistance(asked.substr(0, LONGEST_COMPARED), guid.substr(0, LONGEST_COMPARED));
    return distance <= std::max(asked.size(), guid.size()) / 2 ? distance : asked.size() + LONGEST_COMPARED;
}

using NearTexts = std::vector<std::pair<std::size_t, String>>;

/// Enters the text when it is near.
void consider(const String& asked, const String& text, NearTexts& near) {
    const std::size_t distance = distanceOf(asked, foldCase(text));
    if (!text.isEmpty() && distance <= asked.size()) {
        near.emplace_back(distance, text);
    }
}

/// The nearest ones, each once.
std::vector<std::string> nearestOf(NearTexts& near) {
    std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < near.size() && texts.size() < SHOWN; ++i) {
        std::string text = near[i].second.toUtf8();
        if (std::find(texts.begin(), texts.end(), text) == texts.end()) {
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

}  // namespace

std::vector<std::string> nearGuids(const String& guid, const StateManager& store) {
    const String asked = foldCase(guid);
    NearTexts near;
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        consider(asked, device->guid(), near);
    }
    return nearestOf(near);
}

std::vector<std::string> nearDevices(const String& text, const StateManager& store) {
    const String asked = foldCase(text);
    NearTexts near;
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        for (const String* const own : {&device->hwLocator(), &device->osLocator(), &device->name()}) {
            consider(asked, *own, near);
        }
    }
    return nearestOf(near);
}

}  // namespace vrx::cli
