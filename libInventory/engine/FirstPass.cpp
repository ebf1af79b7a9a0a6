/// The first pass walks the script once, before any combination is tried. It matches every `device` element, records
/// the links in the association set of the nearest alternative, and settles the shape of the search: which alternatives
/// of each `or` can be met at all, how many combinations there are, which alternative of a `or` that cannot be met came
/// nearest, and which `fail-on-extra` rules are in force. Mistakes in the script are told to the observers.
///
/// Every child is evaluated even after one failed: the findings of all are wanted.

#include "libInventory/engine/FirstPass.h"

#include <limits>
#include <memory>
#include <utility>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/ScriptNotices.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

using vocabulary::ElementKind;

bool FirstPass::run(XmlElement* element, bool underNot, unsigned associationIndex) {
    if (element == nullptr) {
        return true;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runFirstPass() - " << placeOf(element) << element->Name());
    bool status = true;
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Part:
        case ElementKind::And:
        case ElementKind::InventoryCheck: status = ofAll(element, underNot, associationIndex); break;
        case ElementKind::Or: status = ofOr(element, underNot); break;
        case ElementKind::Not: status = ofNot(element, underNot, associationIndex); break;
        case ElementKind::Device: status = m_matcher.match(element, underNot, associationIndex); break;
        case ElementKind::TestSet: break;
        case ElementKind::FailOnExtra:
            if (!ofFailOnExtra(element)) {
                return false;
            }
            break;
        default: ScriptNotices(m_state).unknownElement(*element);
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"runFirstPass() - " << placeOf(element) << element->Name() << u" status = " << status);
    return status;
}

bool FirstPass::ofAll(XmlElement* element, bool underNot, unsigned associationIndex) {
    bool all = true;
    for (XmlElement* const child : childElements(element)) {
        all = run(child, underNot, associationIndex) && all;
    }
    return all;
}

bool FirstPass::ofOr(XmlElement* element, bool underNot) {
    ElementContext& context = m_state.contextOf(element);
    m_state.m_record.orElements.push_back(element);
    std::uint32_t possibleChildren = 0;
    std::uint32_t bestErrorPermutation = 0;
    Inventory::ErrorSpec previous;
    std::uint32_t position = 0;
    auto alternatives = std::make_unique<AlternativeList>();
    for (XmlElement* const child : childElements(element)) {
        const bool isPossible = ofAlternative(child, underNot);
        alternatives->append(child, !isPossible);
        if (isPossible) {
            ++possibleChildren;
        } else {
            Inventory::ErrorSpec current;
            m_filing.count(child, slot::MATCHING, current);
            if (position == 0) {
                previous = current;
            }
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"runFirstPass() currentErrors: " << current.numErrors << u"," << current.indexSum
                                                      << u" previousErrors: " << previous.numErrors << u","
                                                      << previous.indexSum);
            if (current.isBetterThan(previous)) {
                bestErrorPermutation = position;
                previous = current;
            }
        }
        ++position;
    }
    context.m_alternatives = std::move(alternatives);
    if (possibleChildren > 0) {
        multiplyCombinations(possibleChildren);
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runFirstPass() or branch, possibleChildren: " << possibleChildren);
    if (possibleChildren > 0) {
        return true;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"runFirstPass() pruning or branch, bestErrorPermutation: " << bestErrorPermutation);
    context.m_pruned = true;
    context.m_selectedChild = bestErrorPermutation;
    return false;
}

// Contract: the number that bounds the search is of 32 bits and may overflow. The one that people are told does not.
void FirstPass::multiplyCombinations(std::uint32_t alternatives) {
    m_state.m_totalCombinations *= alternatives;
    std::uint64_t& combinations = m_state.m_record.summary.combinations;
    constexpr std::uint64_t MOST = std::numeric_limits<std::uint64_t>::max();
    combinations = combinations > MOST / alternatives ? MOST : combinations * alternatives;
}

bool FirstPass::ofAlternative(XmlElement* child, bool underNot) {
    const std::size_t set = m_state.m_associationSets.size();
    m_state.m_associationSets.emplace();
    ElementContext& context = m_state.makeContext(child);
    context.m_associationIndex = static_cast<std::int32_t>(set);
    m_state.m_record.alternatives[child] = static_cast<unsigned>(set);
    const bool satisfied = run(child, underNot, static_cast<unsigned>(set));
    if (!satisfied) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"runFirstPass() pruning or child branch");
    }
    context.m_pruned = !satisfied;
    return satisfied;
}

bool FirstPass::ofNot(XmlElement* element, bool underNot, unsigned associationIndex) {
    if (underNot) {
        ScriptNotices(m_state).notUnderNot(*element);
    }
    if (element->FirstChildElement() == nullptr) {
        return true;
    }
    return !ofAll(element, true, associationIndex);
}

bool FirstPass::ofFailOnExtra(XmlElement* element) {
    const StringView type = element->Attribute(vocabulary::TYPE);
    const StringView capability = element->Attribute(vocabulary::CAPABILITY);
    if (CapabilityImp(type) == CapabilityImp::INVALID() && CapabilityImp(capability) == CapabilityImp::INVALID()) {
        m_filing.file(element, FindingKind::InvalidExtraRule, slot::SCRIPT);
        return false;
    }
    m_state.m_failOnExtraElements.append(element);
    return true;
}

}  // namespace vrx
