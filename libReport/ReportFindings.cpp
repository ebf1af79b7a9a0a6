#include "libReport/ReportFindings.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "libDiagnosis/Breadth.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

namespace {

using Elements = std::vector<const XmlElement*>;
using Indexes = std::unordered_map<const XmlElement*, std::size_t>;

bool comesBefore(const XmlElement* a, const XmlElement* b) {
    return std::tuple(a->Row(), a->Column()) < std::tuple(b->Row(), b->Column());
}

/// In document order, but what sums up much of the machine behind what sums up less.
void putPartsFirst(Elements& devices) {
    std::vector<std::pair<unsigned, const XmlElement*>> ranked;
    ranked.reserve(devices.size());
    for (const XmlElement* const device : devices) {
        ranked.emplace_back(breadthOf(CapabilityImp(attributeOf(*device, vocabulary::TYPE))), device);
    }
    std::ranges::stable_sort(ranked, {}, &std::pair<unsigned, const XmlElement*>::first);
    std::ranges::transform(ranked, devices.begin(), &std::pair<unsigned, const XmlElement*>::second);
}

/// The devices that are missing or in which something was found.
Elements devicesToTell(const Array<const XmlElement*>& missing, const Array<Finding>& findings) {
    Elements devices(missing.begin(), missing.end());
    for (const Finding& finding : findings) {
        if (const XmlElement* const device = deviceAround(*finding.element)) {
            devices.push_back(device);
        }
    }
    std::ranges::sort(devices, comesBefore);
    const auto repeated = std::ranges::unique(devices);
    devices.erase(repeated.begin(), repeated.end());
    putPartsFirst(devices);
    return devices;
}

ReportFinding reported(const Finding& finding, const Indexes& indexes) {
    ReportFinding result;
    result.kind = finding.kind;
    result.place = placeIn(*finding.element);
    result.element = finding.element->Name();
    result.texts = finding.texts;
    if (const XmlElement* const device = deviceAround(*finding.element)) {
        result.device = indexes.at(device);
    } else if (finding.kind == FindingKind::UnsatisfiedPart) {
        result.part = attributeOf(*finding.element, vocabulary::NAME);
    }
    return result;
}

}  // namespace

void addFindings(const Array<Finding>& found, const Inventory& inventory, const StateManager* machine,
                 std::vector<ReportFinding>& findings, std::vector<DeviceProblem>& devices) {
    const Array<const XmlElement*> missing = inventory.missingElements();
    const std::unordered_set<const XmlElement*> isMissing(missing.begin(), missing.end());
    Indexes indexes;
    for (const XmlElement* const device : devicesToTell(missing, found)) {
        indexes.emplace(device, devices.size());
        devices.push_back(problemOf(*device, inventory, machine));
        devices.back().isMissing = isMissing.contains(device);
    }
    for (const Finding& finding : found) {
        findings.push_back(reported(finding, indexes));
    }
}

}  // namespace vrx
