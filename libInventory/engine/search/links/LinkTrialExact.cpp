/// The exact assignment of a trial. Most trials need none: whether it would be another choice than the reduction's is
/// found out on the sets of bits, and only then it is made, as for the graph itself.
///
/// An element without a device can be served when a way leads from it to a free device, over devices that it would take
/// and those who have them. A device that is left over can be covered when a way leads from it, over elements that
/// would take it and the devices that these have, to an element without one or to a device that may be left over.

#include <algorithm>
#include <iterator>
#include <utility>

#include "libInventory/engine/assignment/ExactAssignment.h"
#include "libInventory/engine/search/links/LinkTrial.h"

namespace vrx {

bool LinkTrial::couldDoBetter(const BitRow& elements, const BitRow& wanted) {
    noteHolders(elements);
    return couldServeMore(elements) || couldCoverMore(elements, wanted);
}

void LinkTrial::noteHolders(const BitRow& elements) {
    for (const std::uint32_t device : m_order) {
        m_holders[device] = NOBODY;
    }
    elements.forEach([this](std::size_t element) {
        m_deviceOf[element] = deviceOf(element);
        if (m_deviceOf[element] != NOBODY) {
            m_holders[m_deviceOf[element]] = static_cast<std::uint32_t>(element);
        }
    });
}

/// Elements that need no device have theirs only as far as nobody else needs it.
bool LinkTrial::couldServeMore(const BitRow& elements) {
    m_queue.clear();
    elements.forEach([this](std::size_t element) {
        if (m_elements[element].needsDevice && m_deviceOf[element] == NOBODY) {
            m_queue.push_back(static_cast<std::uint32_t>(element));
        }
    });
    m_seen = BitRow(m_deviceCount);
    for (std::size_t at = 0; at < m_queue.size(); ++at) {
        for (const std::uint32_t device : m_elements[m_queue[at]].devices) {
            if (m_seen.test(device)) {
                continue;
            }
            m_seen.set(device);
            const std::uint32_t holder = m_holders[device];
            if (holder == NOBODY || !m_elements[holder].needsDevice) {
                return true;
            }
            m_queue.push_back(holder);
        }
    }
    return false;
}

bool LinkTrial::couldCoverMore(const BitRow& elements, const BitRow& wanted) {
    if (!wanted.any()) {
        return false;
    }
    m_seen = BitRow(m_elements.size());
    return std::any_of(m_order.begin(), m_order.end(), [&](std::uint32_t device) {
        return wanted.test(device) && m_holders[device] == NOBODY && couldCover(device, elements, wanted);
    });
}

bool LinkTrial::couldCover(std::uint32_t device, const BitRow& elements, const BitRow& wanted) {
    bool isFound = false;
    m_queue.assign(1, device);
    for (std::size_t at = 0; at < m_queue.size() && !isFound; ++at) {
        const std::uint32_t taken = m_queue[at];
        elements.forEach([&](std::size_t element) {
            if (!takes(element, taken) || m_seen.test(element)) {
                return;
            }
            m_seen.set(element);
            const std::uint32_t own = m_deviceOf[element];
            isFound = isFound || own == NOBODY || !wanted.test(own);
            m_queue.push_back(own);
        });
    }
    return isFound;
}

/// The links of some elements by themselves, with numbers of their own. Lists are used again for the next elements.
class LinkTrial::OwnLinks {
public:
    void begin(const LinkTrial& trial, const BitRow& wanted) {
        m_links.elementCount = m_links.deviceCount = 0;
        m_links.kept.clear();
        std::ranges::move(m_links.groups, std::back_inserter(m_spare));
        m_links.groups.clear();
        m_numberOf.resize(trial.m_deviceCount);
        m_isWanted.clear();
        m_members.clear();
        m_shares.clear();
        m_needs.clear();
        for (const std::uint32_t device : trial.m_order) {
            m_numberOf[device] = static_cast<std::uint32_t>(m_links.deviceCount++);
            m_isWanted.push_back(wanted.test(device));
        }
    }

    void add(const LinkTrial& trial, std::uint32_t number) {
        const Element& element = trial.m_elements[number];
        const auto member = static_cast<std::uint32_t>(m_members.size());
        groupOf(element).elements.push_back(member);
        m_members.push_back(number);
        m_needs.push_back(element.needsDevice ? ExactAssignment::Need::Device : ExactAssignment::Need::Cover);
        if (const std::uint32_t device = trial.deviceOf(number); device != NOBODY) {
            m_links.kept.push_back({member, m_numberOf[device]});
        }
        m_links.elementCount = m_members.size();
    }

    /// Calls `visit` with each element and the position of its device.
    template <typename Visit>
    void assign(const Visit& visit) {
        const ExactAssignment exact(m_links, m_needs, m_isWanted);
        for (const auto& [member, device] : exact.pairs()) {
            visit(m_members[member], device);
        }
    }

private:
    AssociationLinks::Group& groupOf(const Element& element) {
        const auto at = std::find(m_shares.begin(), m_shares.end(), element.share);
        if (element.share != NOBODY && at != m_shares.end()) {
            return m_links.groups[static_cast<std::size_t>(at - m_shares.begin())];
        }
        m_shares.push_back(element.share);
        AssociationLinks::Group& group = newGroup();
        for (const std::uint32_t device : element.devices) {
            group.devices.push_back(m_numberOf[device]);
        }
        return group;
    }

    AssociationLinks::Group& newGroup() {
        if (m_spare.empty()) {
            return m_links.groups.emplace_back();
        }
        AssociationLinks::Group& group = m_links.groups.emplace_back(std::move(m_spare.back()));
        m_spare.pop_back();
        group.elements.clear();
        group.devices.clear();
        return group;
    }

    AssociationLinks m_links;
    std::vector<AssociationLinks::Group> m_spare;
    std::vector<std::uint32_t> m_numberOf;  ///< by device
    std::vector<std::uint32_t> m_members;   ///< the elements
    std::vector<std::uint32_t> m_shares;    ///< by group
    std::vector<ExactAssignment::Need> m_needs;
    std::vector<bool> m_isWanted;
};

void LinkTrial::assignExactly(const BitRow& elements, const BitRow& wanted) {
    if (m_ownLinks == nullptr) {
        m_ownLinks = std::make_shared<OwnLinks>();
    }
    m_ownLinks->begin(*this, wanted);
    elements.forEach([&](std::size_t element) { m_ownLinks->add(*this, static_cast<std::uint32_t>(element)); });
    m_missing = elements;
    for (const std::uint32_t device : m_order) {
        std::fill_n(rowOf(device), m_words, 0);
    }
    m_ownLinks->assign([this](std::uint32_t element, std::uint32_t position) {
        rowOf(m_order[position])[element / BitRow::BITS] |= BitRow::Word{1} << (element % BitRow::BITS);
        m_missing.reset(element);
    });
}

}  // namespace vrx
