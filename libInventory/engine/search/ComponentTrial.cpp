#include "libInventory/engine/search/ComponentTrial.h"

#include <algorithm>

namespace vrx {

using Kind = SearchNode::Kind;

ComponentTrial::ComponentTrial(const SearchModel& model, SearchComponent& component)
    : m_model(model),
      m_component(component),
      m_values(component.digits.size()),
      m_numberOf(model.digits.all().size()),
      m_elements(component.trial.elementCount()),
      m_missing(component.trial.elementCount()),
      m_extras(component.trial.deviceCount()),
      m_held(component.trial.deviceCount()) {
    for (std::size_t number = 0; number < component.digits.size(); ++number) {
        const SearchDigitPart& digit = component.digits[number];
        m_numberOf[digit.digit] = static_cast<std::uint32_t>(number);
        m_undisturbed.emplace_back(digit.elements.size());
    }
    for (const SearchDigitPart& digit : component.digits) {
        for (const std::uint32_t top : digit.tops) {
            prepare(top);
        }
    }
    for (const SearchGroup& group : component.groups) {
        for (const std::uint32_t top : group.tops) {
            prepare(top);
        }
    }
    m_isPreparing = false;
}

bool ComponentTrial::holdsDigit(std::uint32_t at) const {
    const SearchNode& node = m_model.nodes[at];
    return node.kind == Kind::Or || std::any_of(node.children.begin(), node.children.end(),
                                                [this](std::uint32_t child) { return holdsDigit(child); });
}

/// Decides alternatives as they are while nothing is missing, which is mostly so.
void ComponentTrial::prepare(std::uint32_t at) {
    const SearchNode& node = m_model.nodes[at];
    for (std::size_t value = 0; value < node.children.size(); ++value) {
        prepare(node.children[value]);
        if (node.kind == Kind::Or && !holdsDigit(node.children[value])) {
            Undisturbed& known = m_undisturbed[m_numberOf[node.number]][value];
            known.isKnown = true;
            known.isMet = decide(node.children[value], known.cost);
        }
    }
}

bool ComponentTrial::isActive(std::size_t digit) const {
    for (std::size_t at = digit; m_component.digits[at].holder != SearchDigitPart::NONE;) {
        at = m_component.digits[at].holder;
        if (m_values[at] != 0) {
            return false;
        }
    }
    return true;
}

void ComponentTrial::gather(const Numbers& digits, const Numbers& groups) {
    m_elements.clear();
    m_extras.clear();
    for (const std::uint32_t group : groups) {
        m_elements |= m_component.groups[group].elements;
        m_extras |= m_component.groups[group].devices;
    }
    for (const std::uint32_t digit : digits) {
        if (isActive(digit)) {
            m_elements |= m_component.digits[digit].elements[m_values[digit]];
        }
    }
    m_extras &= m_component.extras;
}

/// As LinkAssignment::settle. What a choice comes to here does not depend on anything beyond, so it is made whether or
/// not it is asked for beyond; where nothing is missing it only makes fewer devices extra.
void ComponentTrial::assign() {
    LinkTrial& trial = m_component.trial;
    trial.reduce(m_elements);
    if (m_model.isExact && trial.couldDoBetter(m_elements, m_extras)) {
        trial.assignExactly(m_elements, m_extras);
    }
}

ComponentTrial::Result ComponentTrial::run(const Numbers& digits, const Numbers& groups) {
    gather(digits, groups);
    assign();
    const LinkTrial& trial = m_component.trial;
    m_missing.clear();
    m_elements.forEach([&](std::size_t element) {
        if (!trial.isSatisfied(element)) {
            m_missing.set(element);
        }
    });
    Result result;
    const auto decideTops = [&](const std::vector<std::uint32_t>& tops) {
        for (const std::uint32_t top : tops) {
            result.isMet = decide(top, result.cost) && result.isMet;
        }
    };
    for (const std::uint32_t group : groups) {
        decideTops(m_component.groups[group].tops);
    }
    for (const std::uint32_t digit : digits) {
        decideTops(m_component.digits[digit].tops);
    }
    if (m_extras.any()) {
        m_held.clear();
        trial.getHeld(m_elements, m_held);
        result.hasExtras = !m_extras.isWithin(m_held);
    }
    return result;
}

/// As SecondPass::run: whether the node is satisfied; what fails in it adds to the cost.
bool ComponentTrial::decide(std::uint32_t at, SearchCost& cost) const {
    const SearchNode& node = m_model.nodes[at];
    bool isMet = true;
    switch (node.kind) {
        case Kind::Constant: cost += node.cost; return node.isMet;
        case Kind::Leaf: isMet = m_isPreparing || !m_missing.test(node.number); break;
        case Kind::Or: isMet = decideChoice(node, cost); break;
        default:
            for (const std::uint32_t child : node.children) {
                isMet = decide(child, cost) && isMet;
            }
            isMet = node.kind == Kind::All ? isMet : !isMet || node.children.empty();
    }
    if (!isMet) {
        cost += node.cost;
    }
    return isMet;
}

bool ComponentTrial::decideChoice(const SearchNode& node, SearchCost& cost) const {
    const std::size_t digit = m_numberOf[node.number];
    const std::uint32_t value = m_values[digit];
    const Undisturbed& known = m_undisturbed[digit][value];
    if (known.isKnown && !m_missing.meets(m_component.digits[digit].elements[value])) {
        cost += known.cost;
        return known.isMet;
    }
    return decide(node.children[value], cost);
}

}  // namespace vrx
