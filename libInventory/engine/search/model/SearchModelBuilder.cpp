/// What the end of the loop depends on, and how a search finds it without trying each combination.
///
/// A run that has tried all combinations shows of them: whether some combination passes, and which is the first; if
/// none does, whether some satisfies the script with devices left over, which one is the best (fewest errors, then the
/// larger index sum, then the earlier), and the devices that are missing in the last. All else (annotations, lists,
/// links, choices) is made from these few combinations, which are tried for real when they are known
/// (RunDriver::deduce). So all that is to be found out is the error measure of each combination, whether the second
/// pass holds, and whether a device is left over.
///
/// - The error measure is a sum over the elements that fail. Each of them is counted once at itself and once at every
///   element around it, up to the root or to the next `not`: whatever is around a failing element fails too, and what
///   is in a `not` that holds is forgotten. So each element has a cost that is the same in all combinations.
/// - A device element outside of every `not` holds when the reduction leaves it a device; in a `not`, when it ever had
///   one, which does not depend on the combination.
/// - The reduction works along links only, and in the order in which elements and devices became known. What no chain
///   of links connects has no influence on one another, and keeps its order whatever else is there. So alternatives
///   make components: those that any links connect, in whichever combination, decide together.
/// - A device is left over when nobody holds it, which its component decides.
/// - Beside the links, elements of the script tie components together: a `not` holds when one of those in it fails,
///   which is decided together; of an `and` or `part` only whether it fails is more than the sum of what is in it
///   (SearchFrame), but where a component lies partly in one, all in it are decided together.
/// - Once the first combination is over, an `or` that cannot be met fails without being looked into.
///
/// Nothing of this is known where parts are entered into a table, in every combination that is tried, where an `or`
/// lies in a `part`, and where an `or` that cannot be met lies in an alternative, which is looked into when that is
/// chosen for the first time. There the loop goes on one by one.

#include "libInventory/engine/search/model/SearchModelBuilder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "libInventory/engine/ExtraDeviceSearch.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libRegex/Regex.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using vocabulary::ElementKind;

SearchModelBuilder::SearchModelBuilder(InventoryState& state, const RunRecord::Links& links, bool isExact)
    : m_state(state) {
    m_model.isExact = isExact;
    for (const auto& [element, device] : links) {
        m_satisfied.insert(element);
        m_held.insert(device);
    }
}

std::optional<SearchModel> SearchModelBuilder::build() {
    XmlElement* const root = m_state.root();
    if (vocabulary::kindOf(*root) != ElementKind::InventoryCheck) {
        return std::nullopt;
    }
    addElements(m_state.m_associations, NOBODY, 0);
    m_root = compile(root, Place());
    if (m_isUnknown || m_model.digits.all().empty() || !isCountable() || !findExtras()) {
        return std::nullopt;
    }
    m_model.digits.settle(combinations());
    joinComponents();
    m_fails.resize(m_model.nodes.size());
    foldConstants(m_root);
    joinFrames();
    placeAll();
    if (!makeComponents()) {
        return std::nullopt;
    }
    return std::move(m_model);
}

/// How many combinations the loop would try if it could count them.
Rank SearchModelBuilder::combinations() const {
    Rank count = 1;
    for (const XmlElement* const element : m_state.m_record.orElements) {
        const std::size_t possible = InventoryState::existingContext(element)->m_alternatives->open().size();
        count *= std::max<std::size_t>(possible, 1);
    }
    return count;
}

/// Whether no combination can have more errors than the measure counts.
bool SearchModelBuilder::isCountable() const {
    SearchCost most;
    for (const SearchNode& node : m_model.nodes) {
        most += node.cost;
    }
    constexpr std::uint64_t MOST = std::numeric_limits<std::uint32_t>::max();
    return most.errors < MOST && most.indexSum < MOST;
}

void SearchModelBuilder::addElements(const Inventory::InventoryDeviceAssociations& set, std::uint32_t digit,
                                     std::uint32_t value) {
    std::vector<Inventory::InventoryDeviceAssociations::ListedElement> elements;
    std::vector<Inventory::InventoryDeviceAssociations::DeviceList> lists;
    set.getLists(elements, lists);
    const auto firstList = static_cast<std::uint32_t>(m_lists.size());
    for (const auto& listed : lists) {
        const auto list = static_cast<std::uint32_t>(m_lists.size());
        std::vector<std::uint32_t>& numbers = m_lists.emplace_back();
        for (const IDeviceImp* const device : listed.devices) {
            const auto number = static_cast<std::uint32_t>(m_devices.size());
            const auto at = m_deviceOf.try_emplace(device, number).first;
            if (at->second == number) {
                m_devices.push_back(device);
                m_latestLists.push_back(NOBODY);
            }
            m_isUnknown = m_isUnknown || std::exchange(m_latestLists[at->second], list) == list;
            numbers.push_back(at->second);
        }
    }
    for (const auto& listed : elements) {
        m_elementOf[listed.element] = static_cast<std::uint32_t>(m_elements.size());
        const std::uint32_t list = firstList + static_cast<std::uint32_t>(listed.list);
        const std::uint32_t share = shareOf(lists[listed.list].shared, list, digit != NOBODY);
        m_elements.push_back({listed.element, list, share, digit, value, NOBODY});
    }
}

/// Elements of one alternative share links with those of others, but not with those outside.
std::uint32_t SearchModelBuilder::shareOf(const void* shared, std::uint32_t list, bool isInAlternative) {
    if (shared == nullptr || !isInAlternative) {
        return shared == nullptr ? NOBODY : list;
    }
    return m_state.m_associations.keepsShares() ? m_shares.try_emplace(shared, list).first->second : NOBODY;
}

/// Finds the devices that are extra unless an element holds them; false where the answer is not that simple.
bool SearchModelBuilder::findExtras() {
    m_isExtra.resize(m_devices.size());
    ExtraDeviceSearch search(m_state);
    if (!search.canAskAll()) {
        return false;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    for (const boost::shared_ptr<IDeviceImp>& device : search.watched()) {
        const auto at = m_deviceOf.find(device.get());
        if (at != m_deviceOf.end()) {
            m_isExtra[at->second] = true;
        } else {
            m_model.hasConstantExtra = true;
        }
    }
    return Regex::exceededCount() == givenUpBefore;
}

}  // namespace vrx
