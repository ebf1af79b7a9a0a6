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

#include "libInventory/engine/search/SearchModelBuilder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libRegex/Regex.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using vocabulary::ElementKind;
using Kind = SearchNode::Kind;

SearchModelBuilder::SearchModelBuilder(InventoryState& state) : m_state(state) {
    for (const auto& [element, device] : state.m_record.keptLinks) {
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
    std::vector<std::vector<const IDeviceImp*>> lists;
    set.getLists(elements, lists);
    const auto firstList = static_cast<std::uint32_t>(m_lists.size());
    for (const std::vector<const IDeviceImp*>& devices : lists) {
        const auto list = static_cast<std::uint32_t>(m_lists.size());
        std::vector<std::uint32_t>& numbers = m_lists.emplace_back();
        for (const IDeviceImp* const device : devices) {
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
        m_elements.push_back(
            {listed.element, firstList + static_cast<std::uint32_t>(listed.list), digit, value, NOBODY});
    }
}

std::uint32_t SearchModelBuilder::compile(XmlElement* element, const Place& place) {
    const ElementKind kind = vocabulary::kindOf(*element);
    const ElementContext* const context = InventoryState::existingContext(element);
    const std::uint64_t index = context != nullptr ? context->m_andIndex : 0;
    const std::uint64_t depth = place.parentDepth + 1;
    SearchNode node;
    if (kind != ElementKind::InventoryCheck) {
        node.cost = {depth, depth * index};
    }
    node.cost.indexSum += place.parentDepth * place.parentIndex;
    Place inner = place;
    inner.parentDepth = depth;
    inner.parentIndex = index;
    switch (kind) {
        case ElementKind::Part: inner.isInPart = true; [[fallthrough]];
        case ElementKind::And:
        case ElementKind::InventoryCheck: node.kind = Kind::All; return compileGroup(element, std::move(node), inner);
        case ElementKind::Not:
            node.kind = Kind::Not;
            inner.isUnderNot = true;
            inner.parentDepth = 0;
            if (place.digit == NOBODY && place.outerNot == NOBODY) {
                inner.outerNot = m_nots++;
            }
            return compileGroup(element, std::move(node), inner);
        case ElementKind::Or: return compileOr(element, std::move(node), place, inner);
        case ElementKind::Device: return compileDevice(element, std::move(node), place);
        default: return addNode(SearchNode());
    }
}

std::uint32_t SearchModelBuilder::addNode(SearchNode node) {
    m_model.nodes.push_back(std::move(node));
    return static_cast<std::uint32_t>(m_model.nodes.size() - 1);
}

std::uint32_t SearchModelBuilder::compileGroup(XmlElement* element, SearchNode node, const Place& inner) {
    for (XmlElement* const child : childElements(element)) {
        node.children.push_back(compile(child, inner));
    }
    return addNode(std::move(node));
}

std::uint32_t SearchModelBuilder::compileDevice(XmlElement* element, SearchNode node, const Place& place) {
    const auto at = m_elementOf.find(element);
    if (at == m_elementOf.end()) {
        m_isUnknown = true;
        return addNode(std::move(node));
    }
    const bool hasMatched = !m_lists[m_elements[at->second].list].empty();
    if (hasMatched && !place.isUnderNot) {
        node.kind = Kind::Leaf;
        node.number = at->second;
    } else {
        node.isMet = hasMatched;
        node.cost = hasMatched ? SearchCost() : node.cost;
    }
    return addNode(std::move(node));
}

std::uint32_t SearchModelBuilder::compileOr(XmlElement* element, SearchNode node, const Place& place,
                                            const Place& inner) {
    const ElementContext* const context = InventoryState::existingContext(element);
    if (place.isInPart || context == nullptr || !context->m_alternatives) {
        m_isUnknown = true;
        return addNode(std::move(node));
    }
    if (context->m_pruned) {
        return compileHopeless(element, std::move(node), place);
    }
    const AlternativeList& alternatives = *context->m_alternatives;
    if (!place.isStepped) {
        node.kind = Kind::All;
        XmlElement* const child = alternatives.at(alternatives.open().front());
        node.children.push_back(compileAlternative(child, inner, place.digit, place.value));
        return addNode(std::move(node));
    }
    std::vector<std::uint32_t> positions = alternatives.open();
    for (std::uint32_t behind = positions.back() + 1; behind < alternatives.size(); ++behind) {
        positions.push_back(behind);
    }
    const std::uint32_t digit = addDigit(element, place, positions, 0);
    node.kind = Kind::Or;
    node.number = digit;
    for (std::uint32_t value = 0; value < positions.size(); ++value) {
        Place within = inner;
        within.isStepped = value == 0;
        node.children.push_back(compileAlternative(alternatives.at(positions[value]), within, digit, value));
    }
    return addNode(std::move(node));
}

std::uint32_t SearchModelBuilder::compileAlternative(XmlElement* child, const Place& inner, std::uint32_t digit,
                                                     std::uint32_t value) {
    const auto set = static_cast<std::size_t>(InventoryState::existingContext(child)->m_associationIndex);
    addElements(m_state.m_associationSets[set], digit, value);
    Place place = inner;
    place.digit = digit;
    place.value = value;
    return compile(child, place);
}

namespace {

bool holdsOr(const XmlElement& element) {
    switch (vocabulary::kindOf(element)) {
        case ElementKind::Or: return true;
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Not:
        case ElementKind::Part: break;
        default: return false;
    }
    for (const XmlElement* const child : childElements(element)) {
        if (holdsOr(*child)) {
            return true;
        }
    }
    return false;
}

}  // namespace

/// An `or` that cannot be met fails in all combinations but perhaps the first; its alternatives still take devices.
std::uint32_t SearchModelBuilder::compileHopeless(XmlElement* element, SearchNode node, const Place& place) {
    m_model.digits.isFirstApart = true;
    m_isUnknown = m_isUnknown || place.digit != NOBODY;
    const ElementContext& context = *InventoryState::existingContext(element);
    const AlternativeList& alternatives = *context.m_alternatives;
    std::vector<std::uint32_t> positions;
    for (std::uint32_t position = 0; position < alternatives.size(); ++position) {
        m_isUnknown = m_isUnknown || holdsOr(*alternatives.at(position));
        positions.push_back(position);
    }
    if (!positions.empty() && !m_isUnknown) {
        const std::uint32_t digit = addDigit(element, place, positions, context.m_selectedChild);
        for (const std::uint32_t position : positions) {
            const ElementContext* const child = InventoryState::existingContext(alternatives.at(position));
            addElements(m_state.m_associationSets[static_cast<std::size_t>(child->m_associationIndex)], digit,
                        position);
        }
    }
    node.isMet = false;
    return addNode(std::move(node));
}

std::uint32_t SearchModelBuilder::addDigit(XmlElement* element, const Place& place,
                                           std::vector<std::uint32_t> positions, std::uint32_t start) {
    ElementContext* const context = InventoryState::existingContext(element);
    SearchDigit& digit = m_model.digits.all().emplace_back();
    digit.context = context;
    digit.positions = std::move(positions);
    digit.childCount = static_cast<std::uint32_t>(context->m_alternatives->size());
    digit.start = start;
    digit.holder = place.digit == NOBODY ? SearchDigit::NONE : place.digit;
    m_outerNots.push_back(place.outerNot);
    return static_cast<std::uint32_t>(m_outerNots.size() - 1);
}

/// Puts together what links, alternatives and `not` elements connect.
void SearchModelBuilder::joinComponents() {
    const std::vector<SearchDigit>& digits = m_model.digits.all();
    m_sets = DisjointSets(m_devices.size() + digits.size());
    for (const std::vector<std::uint32_t>& list : m_lists) {
        for (const std::uint32_t device : list) {
            m_sets.join(list.front(), device);
        }
    }
    for (const Element& element : m_elements) {
        if (element.digit != NOBODY && !m_lists[element.list].empty()) {
            m_sets.join(setOfDigit(element.digit), m_lists[element.list].front());
        }
    }
    boost::unordered_flat_map<std::uint32_t, std::uint32_t> firstInNot;
    for (std::uint32_t digit = 0; digit < digits.size(); ++digit) {
        if (digits[digit].holder != SearchDigit::NONE) {
            m_sets.join(setOfDigit(digit), setOfDigit(static_cast<std::uint32_t>(digits[digit].holder)));
        }
        if (m_outerNots[digit] != NOBODY) {
            m_sets.join(setOfDigit(digit), setOfDigit(firstInNot.try_emplace(m_outerNots[digit], digit).first->second));
        }
    }
    for (std::uint32_t digit = 0; digit < digits.size(); ++digit) {
        m_varying.insert(m_sets.find(setOfDigit(digit)));
    }
}

/// Decides what is the same in all combinations; whether the node is.
bool SearchModelBuilder::foldConstants(std::uint32_t at) {
    SearchNode& node = m_model.nodes[at];
    switch (node.kind) {
        case Kind::Constant: return true;
        case Kind::Or: return false;
        case Kind::Leaf: {
            const Element& element = m_elements[node.number];
            if (m_varying.contains(m_sets.find(m_lists[element.list].front()))) {
                return false;
            }
            node.kind = Kind::Constant;
            node.isMet = m_satisfied.contains(element.element);
            node.cost = node.isMet ? SearchCost() : node.cost;
            return true;
        }
        default: break;
    }
    bool isConstant = true;
    bool areMet = true;
    bool failsHere = false;
    SearchCost inside;
    for (const std::uint32_t child : node.children) {
        const bool isConstantChild = foldConstants(child);
        isConstant = isConstantChild && isConstant;
        failsHere = failsHere || m_fails[child] || (isConstantChild && !m_model.nodes[child].isMet);
        areMet = areMet && (!isConstantChild || m_model.nodes[child].isMet);
        inside += isConstantChild ? m_model.nodes[child].cost : SearchCost();
    }
    m_fails[at] = node.kind == Kind::All && failsHere;
    if (!isConstant) {
        return false;
    }
    node.isMet = node.kind == Kind::All ? areMet : node.children.empty() || !areMet;
    inside += node.isMet ? SearchCost() : node.cost;
    node.cost = inside;
    node.kind = Kind::Constant;
    return true;
}

/// The components in an element outside of alternatives, and how often each.
SearchModelBuilder::Members SearchModelBuilder::membersOf(std::uint32_t at) const {
    Members members;
    addMembers(at, members);
    return members;
}

void SearchModelBuilder::addMembers(std::uint32_t at, Members& members) const {
    const SearchNode& node = m_model.nodes[at];
    switch (node.kind) {
        case Kind::Constant: break;
        case Kind::Leaf: ++members[m_sets.find(m_lists[m_elements[node.number].list].front())]; break;
        case Kind::Or: ++members[m_sets.find(setOfDigit(node.number))]; break;
        default:
            for (const std::uint32_t child : node.children) {
                addMembers(child, members);
            }
    }
}

void SearchModelBuilder::joinFrames() {
    bool hasJoined = true;
    while (hasJoined) {
        const Members all = membersOf(m_root);
        hasJoined = false;
        for (const std::uint32_t child : m_model.nodes[m_root].children) {
            hasJoined = joinWithin(child, all) || hasJoined;
        }
    }
}

/// Where a component lies in an element and beside it, puts it together with all others in the element.
bool SearchModelBuilder::joinWithin(std::uint32_t at, const Members& all) {
    const SearchNode& node = m_model.nodes[at];
    if (node.kind != Kind::All) {
        return false;
    }
    const Members members = membersOf(at);
    const bool liesBeside = std::any_of(members.begin(), members.end(), [&all](const auto& member) {
        const auto total = all.find(member.first);
        return total == all.end() || total->second != member.second;
    });
    if (members.size() > 1 && liesBeside && !m_fails[at]) {
        for (const auto& [set, count] : members) {
            m_sets.join(members.begin()->first, set);
        }
        return true;
    }
    bool hasJoined = false;
    for (const std::uint32_t child : node.children) {
        hasJoined = joinWithin(child, all) || hasJoined;
    }
    return hasJoined;
}

/// Gives each node that lies in one component to it.
void SearchModelBuilder::placeAll() {
    for (std::uint32_t digit = 0; digit < m_model.digits.all().size(); ++digit) {
        m_componentOf.try_emplace(m_sets.find(setOfDigit(digit)), m_componentOf.size());
    }
    m_tops.resize(m_componentOf.size());
    m_frameOf.resize(m_componentOf.size());
    m_model.frames.emplace_back();
    for (const std::uint32_t child : m_model.nodes[m_root].children) {
        place(child, 0);
    }
}

void SearchModelBuilder::place(std::uint32_t at, std::size_t frame) {
    const SearchNode& node = m_model.nodes[at];
    if (node.kind == Kind::Constant) {
        m_model.constantCost += node.cost;
        m_model.isConstantMet = m_model.isConstantMet && node.isMet;
        return;
    }
    const Members members = membersOf(at);
    if (members.size() == 1) {
        const std::size_t component = m_componentOf.at(members.begin()->first);
        m_tops[component].push_back(at);
        m_frameOf[component] = frame;
        return;
    }
    std::size_t inner = 0;
    if (m_fails[at]) {
        m_model.constantCost += node.cost;
        m_model.isConstantMet = false;
    } else {
        inner = m_model.frames.size();
        m_model.frames.push_back({node.cost, frame});
    }
    for (const std::uint32_t child : node.children) {
        place(child, inner);
    }
}

/// Finds the devices that are extra unless an element holds them; false where the answer is not that simple. The rules
/// are asked here what the first search for extra devices would ask them.
bool SearchModelBuilder::findExtras() {
    m_isExtra.resize(m_devices.size());
    if (m_state.m_failOnExtraElements.isEmpty()) {
        return true;
    }
    if (!m_state.m_extraDeviceRules) {
        m_state.m_extraDeviceRules =
            std::make_unique<ExtraDeviceRules>(m_state.m_failOnExtraElements, *m_state.m_stateManager);
    }
    ExtraDeviceRules& rules = *m_state.m_extraDeviceRules;
    const std::size_t givenUpBefore = Regex::exceededCount();
    for (std::size_t position = 0; position < rules.coveredDevices().size(); ++position) {
        const IDeviceImp& device = *rules.coveredDevices()[position];
        bool isExtra = false;
        for (std::size_t rule = 0; rule < rules.count() && !isExtra; ++rule) {
            if (rules.covers(rule, device)) {
                if (rules.hasConstraints(rule) && !rules.canAsk(position)) {
                    return false;
                }
                isExtra = rules.satisfiesConstraints(rule, position, m_state.m_record);
            }
        }
        const auto at = m_deviceOf.find(&device);
        if (isExtra && at != m_deviceOf.end()) {
            m_isExtra[at->second] = true;
        } else if (isExtra) {
            m_model.hasConstantExtra = true;
        }
    }
    return Regex::exceededCount() == givenUpBefore;
}

}  // namespace vrx
