/// What is filed within a subtree: counting it, and forgetting it.
///
/// Both are asked of every element of every combination, also of a script with an `or` of very many alternatives, of
/// which a combination files findings against one. So the subtree is only walked while it is not much larger than what
/// is filed; otherwise one goes from what is filed up the tree. The lines of the log are those of the walk either way.

#include <boost/unordered/unordered_flat_set.hpp>
#include <optional>
#include <vector>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

namespace {

using FiledElements = std::vector<XmlElement*>;

/// The lines of a clearing, whether or not there is something to clear.
void logClearing(const XmlElement& element) {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"clearErrors() - " << placeOf(&element) << element.Name());
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        logClearing(*child);
    }
}

/// The lines of a count.
void logCounting(XmlElement& element, const InventoryState::FindingTable& findings,
                 const ErrorElementList& errorElements) {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    const ElementContext* const context = InventoryState::existingContext(&element);
    if (context != nullptr && (findings.contains(&element) || errorElements.contains(&element))) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"getErrorCount(" << element.Name() << u") index: " << context->m_andIndex);
    }
    for (XmlElement* const child : childElements(&element)) {
        logCounting(*child, findings, errorElements);
    }
}

/// Takes the elements of a subtree off the budget; false once there are more.
bool takesAtMost(std::size_t& budget, const XmlElement& element) {
    if (budget == 0) {
        return false;
    }
    --budget;
    for (const XmlElement* const child : childElements(element)) {
        if (!takesAtMost(budget, *child)) {
            return false;
        }
    }
    return true;
}

const XmlElement* parentOf(const XmlElement& element) {
    const XmlContainer* const parent = element.Parent();
    return parent != nullptr ? parent->ToElement() : nullptr;
}

bool isWithin(const XmlElement* element, const XmlElement& root) {
    while (element != nullptr && element != &root) {
        element = parentOf(*element);
    }
    return element != nullptr;
}

/// The elements of the subtree that something is filed against, each once; none when a walk over the subtree is the
/// shorter way.
std::optional<FiledElements> filedWithin(const XmlElement& root, const InventoryState::FindingTable& findings,
                                         const ErrorElementList& errorElements) {
    std::size_t budget = 8 + 4 * (findings.size() + errorElements.size());
    if (takesAtMost(budget, root)) {
        return std::nullopt;
    }
    FiledElements filed;
    for (const auto& entry : findings) {
        if (isWithin(entry.key, root)) {
            filed.push_back(entry.key);
        }
    }
    errorElements.forEach([&](XmlElement* element) {
        if (!findings.contains(element) && isWithin(element, root)) {
            filed.push_back(element);
        }
    });
    return filed;
}

std::uint32_t andIndexOf(const XmlElement& element) {
    const ElementContext* const context = InventoryState::existingContext(&element);
    return context != nullptr ? context->m_andIndex : 0;
}

}  // namespace

void ErrorFiling::clear(XmlElement* element, unsigned slot) {
    if (element == nullptr) {
        return;
    }
    InventoryState::FindingTable& findings = m_state.m_tipTables[slot];
    ErrorElementList& errorElements = m_state.m_errorElementLists[slot];
    logClearing(*element);
    if (findings.isEmpty() && errorElements.isEmpty()) {
        return;
    }
    if (const auto within = filedWithin(*element, findings, errorElements)) {
        for (XmlElement* const one : *within) {
            clearOne(one, slot);
        }
    } else {
        clearDownwards(element, slot);
    }
}

void ErrorFiling::clearDownwards(XmlElement* element, unsigned slot) {
    clearOne(element, slot);
    for (XmlElement* const child : childElements(element)) {
        clearDownwards(child, slot);
    }
}

void ErrorFiling::clearOne(XmlElement* element, unsigned slot) {
    if (FiledFindings* const filed = m_state.m_tipTables[slot].find(element)) {
        filed->clear();
    }
    m_state.m_errorElementLists[slot].removeFirst(element);
}

void ErrorFiling::count(XmlElement* element, unsigned slot, Inventory::ErrorSpec& spec) const {
    if (element == nullptr) {
        return;
    }
    const InventoryState::FindingTable& findings = m_state.m_tipTables[slot];
    const ErrorElementList& errorElements = m_state.m_errorElementLists[slot];
    if (findings.isEmpty() && errorElements.isEmpty()) {
        return;
    }
    logCounting(*element, findings, errorElements);
    if (const auto within = filedWithin(*element, findings, errorElements)) {
        countUpwards(*element, *within, slot, spec);
    } else {
        countDownwards(element, slot, spec);
    }
}

void ErrorFiling::countDownwards(XmlElement* element, unsigned slot, Inventory::ErrorSpec& spec) const {
    const std::uint32_t andIndex = andIndexOf(*element);
    countOne(element, slot, spec);
    for (XmlElement* const child : childElements(element)) {
        Inventory::ErrorSpec ofChild;
        countDownwards(child, slot, ofChild);
        spec.numErrors += ofChild.numErrors;
        spec.indexSum += ofChild.indexSum + (ofChild.numErrors != 0 ? andIndex : 0);
    }
}

/// Adds what is filed against the element itself.
void ErrorFiling::countOne(XmlElement* element, unsigned slot, Inventory::ErrorSpec& spec) const {
    const FiledFindings* const filed = m_state.m_tipTables[slot].find(element);
    const bool isErrorElement = m_state.m_errorElementLists[slot].contains(element);
    spec.numErrors += filed != nullptr ? static_cast<std::uint32_t>(filed->count()) : 0;
    spec.numErrors += isErrorElement ? 1 : 0;
    spec.indexSum += filed != nullptr || isErrorElement ? andIndexOf(*element) : 0;
}

/// The same sums: every element above an error, up to the root, adds the index of its parent once.
void ErrorFiling::countUpwards(const XmlElement& root, const std::vector<XmlElement*>& filed, unsigned slot,
                               Inventory::ErrorSpec& spec) const {
    boost::unordered_flat_set<const XmlElement*> counted;
    for (XmlElement* const element : filed) {
        const std::uint32_t before = spec.numErrors;
        countOne(element, slot, spec);
        const XmlElement* at = spec.numErrors != before ? element : &root;
        while (at != &root && counted.insert(at).second) {
            at = parentOf(*at);
            spec.indexSum += andIndexOf(*at);
        }
    }
}

}  // namespace vrx
