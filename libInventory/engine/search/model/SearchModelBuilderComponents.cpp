/// Components as the search works with them: elements and devices have numbers of their own. What all combinations have
/// in common or look through is a set of bits; what is told of each alternative or group is a list, since there may be
/// tens of thousands of these with one device each.
///
/// Within a component, groups of devices stand for what belongs together in every combination. Two alternatives have to
/// do with one another when they share a group, so a combination of a component may again fall into parts that have
/// nothing to do with one another.

#include <algorithm>
#include <utility>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/search/model/SearchModelBuilder.h"
#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

/// Rows of bits of a component beyond which they would take more memory than a search may: the loop takes less.
constexpr std::size_t MOST_WORDS = std::size_t{1} << 25;

/// The same, where the loop has no more to do than the search.
constexpr std::size_t MOST_WORDS_OF_FEW = std::size_t{1} << 23;

/// So many combinations the loop tries in no time.
constexpr unsigned FEW_COMBINATIONS_OF_ALL = 100000;

/// Digits of a component, each of which takes its share of the stack.
constexpr std::size_t MOST_DIGITS = 2000;

}  // namespace

/// Makes one component.
class SearchModelBuilder::ComponentMaker {
public:
    ComponentMaker(SearchModelBuilder& builder, std::size_t component, Share& share)
        : m_builder(builder),
          m_share(share),
          m_tops(builder.m_tops[component]),
          m_frame(builder.m_frameOf[component]),
          m_sets(share.devices.size() + m_tops.size()),
          m_isTied(m_tops.size()) {
        m_tieOf.assign(share.digits.size(), NONE);
        m_topsOf.resize(share.digits.size());
    }

    SearchComponent make() {
        tie();
        numberGroups();
        SearchComponent component{makeTrial(), {}, {}, BitRow(m_share.devices.size()), m_frame};
        makeGroups(component);
        makeDigits(component);
        for (std::size_t device = 0; device < m_share.devices.size(); ++device) {
            if (m_builder.m_isExtra[m_share.devices[device]]) {
                component.extras.set(device);
            }
        }
        return component;
    }

private:
    static constexpr std::size_t NONE = SearchDigitPart::NONE;

    std::size_t deviceNumber(std::uint32_t device) const {
        return static_cast<std::size_t>(std::lower_bound(m_share.devices.begin(), m_share.devices.end(), device) -
                                        m_share.devices.begin());
    }
    std::size_t digitNumber(std::size_t digit) const {
        return static_cast<std::size_t>(std::lower_bound(m_share.digits.begin(), m_share.digits.end(), digit) -
                                        m_share.digits.begin());
    }
    const std::vector<std::uint32_t>& listOf(std::uint32_t element) const {
        return m_builder.m_lists[m_builder.m_elements[element].list];
    }

    /// Puts together what elements outside of alternatives link, and what a node of several members looks at.
    void tie() {
        for (const std::uint32_t element : m_share.elements) {
            if (m_builder.m_elements[element].digit == NOBODY) {
                const std::size_t first = deviceNumber(listOf(element).front());
                for (const std::uint32_t device : listOf(element)) {
                    m_sets.join(first, deviceNumber(device));
                }
            }
        }
        for (std::size_t top = 0; top < m_tops.size(); ++top) {
            std::vector<std::size_t> devices;
            std::vector<std::size_t> digits;
            collect(m_tops[top], devices, digits);
            tieTop(top, devices, digits);
        }
    }

    void collect(std::uint32_t at, std::vector<std::size_t>& devices, std::vector<std::size_t>& digits) const {
        const SearchNode& node = m_builder.m_model.nodes[at];
        switch (node.kind) {
            case SearchNode::Kind::Constant: break;
            case SearchNode::Kind::Leaf: devices.push_back(deviceNumber(listOf(node.number).front())); break;
            case SearchNode::Kind::Or: digits.push_back(digitNumber(node.number)); break;
            default:
                for (const std::uint32_t child : node.children) {
                    collect(child, devices, digits);
                }
        }
    }

    void tieTop(std::size_t top, const std::vector<std::size_t>& devices, const std::vector<std::size_t>& digits) {
        if (devices.empty() && digits.size() == 1) {
            m_topsOf[digits.front()].push_back(m_tops[top]);
            return;
        }
        const std::size_t knot = m_share.devices.size() + top;
        m_isTied[top] = true;
        for (const std::size_t device : devices) {
            m_sets.join(knot, device);
        }
        for (const std::size_t digit : digits) {
            m_tieOf[digit] = knot;
        }
    }

    void numberGroups() {
        m_groupOf.assign(m_share.devices.size() + m_tops.size(), NONE);
        for (std::size_t number = 0; number < m_groupOf.size(); ++number) {
            const bool isUsed = number < m_share.devices.size() || m_isTied[number - m_share.devices.size()];
            const std::size_t set = m_sets.find(number);
            if (isUsed && m_groupOf[set] == NONE) {
                m_groupOf[set] = m_groups++;
            }
            m_groupOf[number] = m_groupOf[set];
        }
    }

    LinkTrial makeTrial() {
        std::vector<LinkTrial::Element> elements;
        for (const std::uint32_t number : m_share.elements) {
            LinkTrial::Element& element = elements.emplace_back();
            element.share = m_builder.m_elements[number].share;
            element.needsDevice = !isUnderNot(*m_builder.m_elements[number].element);
            for (const std::uint32_t device : listOf(number)) {
                element.devices.push_back(static_cast<std::uint32_t>(deviceNumber(device)));
            }
        }
        return {std::move(elements), m_share.devices.size()};
    }

    void makeGroups(SearchComponent& component) const {
        component.groups.resize(m_groups);
        for (std::uint32_t device = 0; device < m_share.devices.size(); ++device) {
            component.groups[m_groupOf[device]].devices.push_back(device);
        }
        for (std::size_t top = 0; top < m_tops.size(); ++top) {
            if (m_isTied[top]) {
                component.groups[m_groupOf[m_share.devices.size() + top]].tops.push_back(m_tops[top]);
            }
        }
        for (std::uint32_t number = 0; number < m_share.elements.size(); ++number) {
            const std::uint32_t element = m_share.elements[number];
            if (m_builder.m_elements[element].digit == NOBODY) {
                component.groups[m_groupOf[deviceNumber(listOf(element).front())]].elements.push_back(number);
            }
        }
    }

    void makeDigits(SearchComponent& component) const {
        for (std::size_t number = 0; number < m_share.digits.size(); ++number) {
            const SearchDigit& digit = m_builder.m_model.digits.all()[m_share.digits[number]];
            NumberList groups;
            if (m_tieOf[number] != NONE) {
                groups.push_back(static_cast<std::uint32_t>(m_groupOf[m_tieOf[number]]));
            }
            component.digits.push_back({m_share.digits[number],
                                        digit.holder == SearchDigit::NONE ? NONE : digitNumber(digit.holder),
                                        std::vector<NumberList>(digit.radix()),
                                        std::vector<NumberList>(digit.radix(), groups), m_topsOf[number]});
        }
        for (std::uint32_t number = 0; number < m_share.elements.size(); ++number) {
            const Element& element = m_builder.m_elements[m_share.elements[number]];
            if (element.digit != NOBODY) {
                SearchDigitPart& digit = component.digits[digitNumber(element.digit)];
                digit.elements[element.value].push_back(number);
                for (const std::uint32_t device : listOf(m_share.elements[number])) {
                    const std::size_t group = m_groupOf[deviceNumber(device)];
                    digit.groups[element.value].push_back(static_cast<std::uint32_t>(group));
                }
            }
        }
        for (SearchDigitPart& digit : component.digits) {
            for (NumberList& groups : digit.groups) {
                std::sort(groups.begin(), groups.end());
                groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
            }
        }
    }

    SearchModelBuilder& m_builder;
    Share& m_share;
    const std::vector<std::uint32_t>& m_tops;
    std::size_t m_frame;
    DisjointSets m_sets;                               ///< of devices, and behind them of tops
    std::vector<bool> m_isTied;                        ///< by top: it is decided with a group
    std::vector<std::size_t> m_tieOf;                  ///< by digit
    std::vector<std::vector<std::uint32_t>> m_topsOf;  ///< by digit
    std::vector<std::size_t> m_groupOf;                ///< by number in the sets
    std::size_t m_groups = 0;
};

std::vector<SearchModelBuilder::Share> SearchModelBuilder::shareOut() {
    std::vector<Share> shares(m_componentOf.size());
    const auto shareOf = [&](std::size_t number) -> Share* {
        const auto at = m_componentOf.find(m_sets.find(number));
        return at == m_componentOf.end() ? nullptr : &shares[at->second];
    };
    for (std::uint32_t device = 0; device < m_devices.size(); ++device) {
        if (Share* const share = shareOf(device)) {
            share->devices.push_back(device);
        } else if (m_isExtra[device] && !m_held.contains(m_devices[device])) {
            m_model.hasConstantExtra = true;
        }
    }
    for (std::uint32_t number = 0; number < m_elements.size(); ++number) {
        Element& element = m_elements[number];
        const std::vector<std::uint32_t>& devices = m_lists[element.list];
        if (Share* const share = devices.empty() ? nullptr : shareOf(devices.front())) {
            element.number = static_cast<std::uint32_t>(share->elements.size());
            share->elements.push_back(number);
        }
    }
    for (std::uint32_t digit = 0; digit < m_model.digits.all().size(); ++digit) {
        shareOf(setOfDigit(digit))->digits.push_back(digit);
    }
    return shares;
}

/// False where that would take too much memory.
bool SearchModelBuilder::makeComponents() {
    std::vector<Share> shares = shareOut();
    const bool areFew = combinations() < FEW_COMBINATIONS_OF_ALL;
    const std::size_t mostWords = areFew ? MOST_WORDS_OF_FEW : MOST_WORDS;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        const std::size_t rows = shares[i].elements.size() + shares[i].devices.size();
        if (rows * BitRow::wordsFor(rows) > mostWords || shares[i].digits.size() > MOST_DIGITS) {
            return false;
        }
        m_model.components.push_back(ComponentMaker(*this, i, shares[i]).make());
    }
    // Leaves have the number that they have in their component from here on.
    for (SearchNode& node : m_model.nodes) {
        if (node.kind == SearchNode::Kind::Leaf) {
            node.number = m_elements[node.number].number;
        }
    }
    return true;
}

}  // namespace vrx
