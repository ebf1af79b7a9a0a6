#include "libInventory/engine/search/ComponentTrial.h"

#include <algorithm>

namespace vrx {

using Kind = SearchNode::Kind;

namespace {

constexpr std::uint32_t NO_DIGIT = 0xFFFFFFFF;

/// Elements of an alternative for which all answers are known beforehand.
constexpr std::size_t FEW_ELEMENTS = 3;

}  // namespace

ComponentTrial::ComponentTrial(const SearchModel& model, SearchComponent& component)
    : m_model(model),
      m_component(component),
      m_values(component.digits.size()),
      m_numberOf(model.digits.all().size()),
      m_digitOf(component.trial.elementCount(), NO_DIGIT),
      m_canHaveExtras(component.extras.any()),
      m_fixed(component.trial.elementCount()),
      m_elements(component.trial.elementCount()),
      m_isDisturbed(component.digits.size()),
      m_extras(component.trial.deviceCount()),
      m_held(component.trial.deviceCount()) {
    for (std::size_t number = 0; number < component.digits.size(); ++number) {
        const SearchDigitPart& digit = component.digits[number];
        m_numberOf[digit.digit] = static_cast<std::uint32_t>(number);
        const SearchNode* const first = digit.tops.empty() ? nullptr : &model.nodes[digit.tops.front()];
        m_onlyNode.push_back(digit.tops.size() == 1 && first->kind == Kind::Or ? first : nullptr);
        std::vector<Alternative>& alternatives = m_alternatives.emplace_back();
        for (const NumberList& elements : digit.elements) {
            alternatives.push_back({&elements, {}});
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
    m_missing = &component.trial.missing();
}

bool ComponentTrial::holdsDigit(std::uint32_t at) const {
    const SearchNode& node = m_model.nodes[at];
    return node.kind == Kind::Or || std::any_of(node.children.begin(), node.children.end(),
                                                [this](std::uint32_t child) { return holdsDigit(child); });
}

void ComponentTrial::prepare(std::uint32_t at) {
    const SearchNode& node = m_model.nodes[at];
    for (std::size_t value = 0; value < node.children.size(); ++value) {
        prepare(node.children[value]);
        if (node.kind == Kind::Or && !holdsDigit(node.children[value])) {
            prepare(m_alternatives[m_numberOf[node.number]][value], node.children[value]);
        }
    }
}

/// Of an alternative of many elements only that nothing is missing, which is mostly so.
void ComponentTrial::prepare(Alternative& alternative, std::uint32_t at) {
    const NumberList& elements = *alternative.elements;
    const std::size_t known = elements.size() <= FEW_ELEMENTS ? elements.size() : 0;
    for (std::size_t subset = 0; subset >> known == 0; ++subset) {
        BitRow missing(m_component.trial.elementCount());
        for (std::size_t i = 0; i < known; ++i) {
            if ((subset >> i & 1) != 0) {
                missing.set(elements[i]);
            }
        }
        m_missing = &missing;
        Answer answer;
        answer.isMet = decide(at, answer.cost);
        alternative.answers.push_back(answer);
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

void ComponentTrial::setGroups(const Numbers& groups) {
    m_groups = &groups;
    m_fixed.clear();
    m_extras.clear();
    for (const std::uint32_t group : groups) {
        m_fixed |= m_component.groups[group].elements;
        if (m_canHaveExtras) {
            m_extras |= m_component.groups[group].devices;
        }
    }
    m_extras &= m_component.extras;
}

const BitRow& ComponentTrial::reduce(const Numbers& digits) {
    m_elements = m_fixed;
    for (const std::uint32_t digit : digits) {
        if (isActive(digit)) {
            m_elements |= m_component.digits[digit].elements[m_values[digit]];
        }
    }
    m_component.trial.reduce(m_elements);
    noteMissing();
    return *m_missing;
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

ComponentTrial::Result ComponentTrial::decide(const Numbers& digits) {
    if (assignExactly()) {
        noteMissing();
    }
    Result result;
    for (const std::uint32_t group : *m_groups) {
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
    m_isDisturbed.assign(m_isDisturbed.size(), false);
    m_missing->forEach([this](std::size_t element) {
        if (m_digitOf[element] != NO_DIGIT) {
            m_isDisturbed[m_digitOf[element]] = true;
        }
    });
}

/// What the chosen alternative comes to, where that is known beforehand.
const ComponentTrial::Answer* ComponentTrial::answerOf(std::uint32_t digit) const {
    const Alternative& alternative = m_alternatives[digit][m_values[digit]];
    if (alternative.answers.empty() || (m_isDisturbed[digit] && alternative.answers.size() == 1)) {
        return nullptr;
    }
    std::size_t subset = 0;
    for (std::size_t i = 0; m_isDisturbed[digit] && i < alternative.elements->size(); ++i) {
        subset |= static_cast<std::size_t>(m_missing->test((*alternative.elements)[i])) << i;
    }
    return &alternative.answers[subset];
}

/// Decides what is decided with the digit.
void ComponentTrial::decideDigit(std::uint32_t digit, Result& result) const {
    const Answer* const known = m_onlyNode[digit] != nullptr ? answerOf(digit) : nullptr;
    if (known != nullptr) {
        result.cost += known->cost;
        result.isMet = known->isMet && result.isMet;
        if (!known->isMet) {
            result.cost += m_onlyNode[digit]->cost;
        }
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
        case Kind::Leaf: isMet = !m_missing->test(node.number); break;
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
    const std::uint32_t digit = m_numberOf[node.number];
    if (const Answer* const known = answerOf(digit)) {
        cost += known->cost;
        return known->isMet;
    }
    return decide(node.children[m_values[digit]], cost);
}

}  // namespace vrx
