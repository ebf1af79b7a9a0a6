#include "libInventory/engine/search/ComponentTrial.h"

#include <algorithm>

namespace vrx {

using Kind = SearchNode::Kind;

namespace {

constexpr std::uint32_t NO_DIGIT = 0xFFFFFFFF;

}  // namespace

ComponentTrial::ComponentTrial(const SearchModel& model, SearchComponent& component)
    : m_model(model),
      m_component(component),
      m_values(component.digits.size()),
      m_numberOf(model.digits.all().size()),
      m_digitOf(component.trial.elementCount(), NO_DIGIT),
      m_canHaveExtras(component.extras.any()),
      m_elements(component.trial.elementCount()),
      m_missing(component.trial.elementCount()),
      m_isDisturbed(component.digits.size()),
      m_extras(component.trial.deviceCount()),
      m_held(component.trial.deviceCount()) {
    for (std::size_t number = 0; number < component.digits.size(); ++number) {
        const SearchDigitPart& digit = component.digits[number];
        m_numberOf[digit.digit] = static_cast<std::uint32_t>(number);
        m_undisturbed.emplace_back(digit.elements.size());
        m_isSimple.push_back(digit.tops.size() == 1 && model.nodes[digit.tops.front()].kind == Kind::Or);
        for (const NumberList& elements : digit.elements) {
            std::ranges::for_each(
                elements, [&](std::uint32_t element) { m_digitOf[element] = static_cast<std::uint32_t>(number); });
        }
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
        if (m_canHaveExtras) {
            m_extras |= m_component.groups[group].devices;
        }
    }
    for (const std::uint32_t digit : digits) {
        if (isActive(digit)) {
            m_elements |= m_component.digits[digit].elements[m_values[digit]];
        }
    }
    m_extras &= m_component.extras;
}

const BitRow& ComponentTrial::reduce(const Numbers& digits, const Numbers& groups) {
    gather(digits, groups);
    m_component.trial.reduce(m_elements);
    noteMissing();
    return m_missing;
}

/// As LinkAssignment::settle. What a choice comes to here does not depend on anything beyond, so it is made whether or
/// not it is asked for beyond; where nothing is missing it only makes fewer devices extra. Whether it is another.
bool ComponentTrial::assignExactly() {
    LinkTrial& trial = m_component.trial;
    const bool isBetter = m_model.isExact && trial.couldDoBetter(m_elements, m_extras);
    if (isBetter) {
        trial.assignExactly(m_elements, m_extras);
    }
    return isBetter;
}

ComponentTrial::Result ComponentTrial::decide(const Numbers& digits, const Numbers& groups) {
    if (assignExactly()) {
        noteMissing();
    }
    Result result;
    for (const std::uint32_t group : groups) {
        for (const std::uint32_t top : m_component.groups[group].tops) {
            result.isMet = decide(top, result.cost) && result.isMet;
        }
    }
    for (const std::uint32_t digit : digits) {
        decideDigit(digit, result);
    }
    if (m_extras.any()) {
        m_held.clear();
        m_component.trial.getHeld(m_elements, m_held);
        result.hasExtras = !m_extras.isWithin(m_held);
    }
    return result;
}

void ComponentTrial::noteMissing() {
    m_missing.clear();
    m_isDisturbed.assign(m_isDisturbed.size(), false);
    m_elements.forEach([&](std::size_t element) {
        if (!m_component.trial.isSatisfied(element)) {
            m_missing.set(element);
            if (m_digitOf[element] != NO_DIGIT) {
                m_isDisturbed[m_digitOf[element]] = true;
            }
        }
    });
}

/// Decides what is decided with the digit; mostly nothing is missing of what it has chosen.
void ComponentTrial::decideDigit(std::uint32_t digit, Result& result) const {
    if (!m_isDisturbed[digit] && isSimple(digit) && knownOf(digit).isMet) {
        result.cost += knownOf(digit).cost;
        return;
    }
    for (const std::uint32_t top : m_component.digits[digit].tops) {
        result.isMet = decide(top, result.cost) && result.isMet;
    }
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
    if (known.isKnown && !m_isDisturbed[digit]) {
        cost += known.cost;
        return known.isMet;
    }
    return decide(node.children[value], cost);
}

}  // namespace vrx
