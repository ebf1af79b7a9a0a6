#include "libSystemState/capabilities/CapabilityImp.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <iterator>
#include <utility>
#include <vector>

#include "libSystemState/capabilities/CapabilityTree.h"

/// A capability is one of five things, told apart by its node number and the data kept aside:
///
///   empty     node 0, nothing aside             one node   its number, nothing aside
///   a set     node 0, its sorted nodes aside    ALL        a number of its own
///   invalid   a number of its own; the text as written aside, save for `INVALID()` itself
///
/// A set holds two nodes or more, so equal sets always have the same form and are compared without any normalisation.
/// A node and one below it may stand side by side in a set: names are listed as they were given.

namespace vrx {

using Node = CapabilityTree::Node;

struct CapabilityImp::More {
    String text;
    std::vector<Node> nodes;
};

CapabilityImp::CapabilityImp(const String& name) : CapabilityImp(name.view()) {}

CapabilityImp::CapabilityImp(StringView name) : m_node(CapabilityTree::instance().find(name)) {
    if (m_node == NO_NODE) {
        m_node = INVALID_NODE;
        m_more = boost::make_shared<More>(More{String(name), {}});
    }
}

const CapabilityImp& CapabilityImp::INVALID() {
    static const CapabilityImp invalid = [] {
        CapabilityImp made;
        made.m_node = INVALID_NODE;
        return made;
    }();
    return invalid;
}

const CapabilityImp& CapabilityImp::ALL() {
    static const CapabilityImp all = [] {
        CapabilityImp made;
        made.m_node = ALL_NODE;
        return made;
    }();
    return all;
}

bool CapabilityImp::define(const String& name, const String& parentName) {
    CapabilityTree& tree = CapabilityTree::instance();
    return tree.define(name, tree.find(parentName));
}

std::span<const Node> CapabilityImp::nodes() const noexcept {
    if (m_node == NO_NODE) {
        return m_more ? std::span<const Node>(m_more->nodes) : std::span<const Node>();
    }
    return m_node < FIRST_SPECIAL_NODE ? std::span<const Node>(&m_node, 1) : std::span<const Node>();
}

bool CapabilityImp::isCapable(const CapabilityImp& deviceType) const noexcept {
    if (isAll()) {
        return true;
    }
    const CapabilityTree& tree = CapabilityTree::instance();
    for (const Node mine : nodes()) {
        for (const Node type : deviceType.nodes()) {
            if (tree.isWithin(type, mine)) {
                return true;
            }
        }
    }
    return false;
}

bool CapabilityImp::intersect(const CapabilityImp& other) const noexcept {
    if (isAll() || other.isAll()) {
        const CapabilityImp& counterpart = isAll() ? other : *this;
        return !counterpart.isInvalid() && !counterpart.isEmpty();
    }
    return isCapable(other) || other.isCapable(*this);
}

CapabilityImp CapabilityImp::operator|(const CapabilityImp& other) const {
    if (isAll() || other.isAll()) {
        return ALL();
    }
    const std::span<const Node> mine = nodes();
    const std::span<const Node> others = other.nodes();
    if (others.empty()) {
        return isInvalid() ? CapabilityImp() : *this;
    }
    if (mine.empty()) {
        return other;
    }
    std::vector<Node> both;
    both.reserve(mine.size() + others.size());
    std::set_union(mine.begin(), mine.end(), others.begin(), others.end(), std::back_inserter(both));
    if (both.size() == mine.size()) {
        return *this;
    }
    CapabilityImp result;
    result.m_more = boost::make_shared<More>(More{String(), std::move(both)});
    return result;
}

bool CapabilityImp::operator==(const CapabilityImp& other) const noexcept {
    return m_node == other.m_node && std::ranges::equal(nodes(), other.nodes());
}

String CapabilityImp::toString(unsigned, bool) const {
    if (isInvalid()) {
        return m_more ? m_more->text : String(u"INVALID");
    }
    String text;
    for (const String& name : names()) {
        if (!text.isEmpty()) {
            text.append(u", ");
        }
        text.append(name);
    }
    return text;
}

Array<String> CapabilityImp::names() const {
    if (isAll()) {
        return {String(u"ALL")};
    }
    const CapabilityTree& tree = CapabilityTree::instance();
    Array<String> result;
    for (const Node node : nodes()) {
        result.append(tree.nameOf(node));
    }
    return result;
}

}  // namespace vrx
