/// The nodes of the model: what each element of the script costs when it fails, and what it takes for it to hold.

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/search/model/SearchModelBuilder.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

using vocabulary::ElementKind;
using Kind = SearchNode::Kind;

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

}  // namespace vrx
