#include "libReport/TypeCounts.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "libDiagnosis/TypeOrder.h"
#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;
using ElementSet = std::unordered_set<const XmlElement*>;

bool isChosen(const XmlElement& element, const ElementSet& chosen) {
    const XmlContainer* const parent = element.Parent();
    const XmlElement* const group = parent == nullptr ? nullptr : parent->ToElement();
    return group == nullptr || vocabulary::kindOf(*group) != ElementKind::Or || chosen.contains(&element);
}

void add(std::map<String, TypeCount>& counts, const XmlElement& device, bool isMet) {
    const CapabilityImp type(attributeOf(device, vocabulary::TYPE));
    TypeCount& count = counts[type.toString()];
    count.type = type.toString();
    ++count.asked;
    count.met += isMet ? 1 : 0;
}

}  // namespace

std::vector<TypeCount> typeCounts(const Inventory& inventory) {
    const Array<const XmlElement*> all = inventory.missingElements();
    const ElementSet missing(all.begin(), all.end());
    ElementSet chosen;
    for (const ChosenAlternative& choice : inventory.chosenAlternatives()) {
        chosen.insert(choice.alternative);
    }
    std::map<String, TypeCount> counts;
    for (ScriptWalk walk(*inventory.script().RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        const bool isDevice = walk->kind == ElementKind::Device;
        if (walk->kind == ElementKind::Not || !isChosen(*walk->element, chosen)) {
            walk.skipContent();
        } else if (isDevice) {
            add(counts, *walk->element, !missing.contains(walk->element));
            walk.skipContent();
        }
    }
    std::vector<TypeCount> ordered;
    for (auto& [type, count] : counts) {
        ordered.push_back(std::move(count));
    }
    std::ranges::stable_sort(ordered, {}, [](const TypeCount& count) { return typeRank(CapabilityImp(count.type)); });
    return ordered;
}

}  // namespace vrx
