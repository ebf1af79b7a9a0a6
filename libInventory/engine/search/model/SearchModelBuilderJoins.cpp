/// What has to be decided together becomes one component; what is the same in all combinations becomes a constant.

#include <algorithm>

#include "libInventory/engine/search/model/SearchModelBuilder.h"

namespace vrx {

using Kind = SearchNode::Kind;

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

}  // namespace vrx
