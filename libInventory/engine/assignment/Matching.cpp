/// Completing is the algorithm of Hopcroft and Karp with groups in the place of single elements: a breadth-first search
/// lays out how far each group is from one with room, going from a group over a device that it might have to the group
/// that has it; then depth-first searches along these layers find paths to free devices, and every device on a path
/// moves up to the group before it. With paths of one length found at once, few layers suffice: some square root of the
/// number of devices.
///
/// Covering goes the other way, from a device that must not be left over: a group that may have it has room, or gives
/// up one that may be left over, or one that another group can have. Elements that have a device keep one, so both
/// demands are met together wherever each can be met alone. What one search without success has looked at leads nowhere
/// afterwards either, and is not looked at again.
///
/// Nothing here is recursive: a path may lead over all groups.

#include "libInventory/engine/assignment/Matching.h"

#include <limits>
#include <optional>

namespace vrx {

Matching::Matching(const AssociationLinks& links)
    : m_links(links), m_groupOf(links.deviceCount, NONE), m_used(links.groups.size(), 0) {}

void Matching::give(Index device, Index group) {
    m_groupOf[device] = group;
    ++m_used[group];
}

class Matching::Layers {
public:
    Layers(Matching& matching, const std::vector<bool>& takesPart)
        : m_matching(matching), m_takesPart(takesPart), m_groups(matching.m_links.groups) {}

    /// Whether some group with room is connected with a free device.
    bool layOut() {
        m_level.assign(m_groups.size(), UNKNOWN);
        m_next.assign(m_groups.size(), 0);
        m_last = UNKNOWN;
        std::vector<Index> queue;
        for (Index group = 0; group < m_groups.size(); ++group) {
            if (isOpen(group)) {
                m_level[group] = 0;
                queue.push_back(group);
            }
        }
        for (std::size_t at = 0; at < queue.size() && m_level[queue[at]] < m_last; ++at) {
            reachFrom(queue[at], queue);
        }
        return m_last != UNKNOWN;
    }

    void fill() {
        for (Index group = 0; group < m_groups.size(); ++group) {
            while (isOpen(group) && extend(group)) {
            }
        }
    }

private:
    static constexpr Index UNKNOWN = std::numeric_limits<Index>::max();

    bool isOpen(Index group) const { return m_takesPart[group] && m_matching.hasRoom(group); }

    void reachFrom(Index group, std::vector<Index>& queue) {
        for (const Index device : m_groups[group].devices) {
            const Index holder = m_matching.m_groupOf[device];
            if (holder == NONE) {
                m_last = m_level[group] + 1;
            } else if (m_level[holder] == UNKNOWN) {
                m_level[holder] = m_level[group] + 1;
                queue.push_back(holder);
            }
        }
    }

    Index deviceAt(Index group) const { return m_groups[group].devices[m_next[group]]; }

    /// Gives the group one more device, when a path along the layers leads to a free one.
    bool extend(Index group) {
        std::vector<Index> path{group};
        while (!path.empty()) {
            const Index last = path.back();
            if (m_next[last] == m_groups[last].devices.size()) {
                path.pop_back();
                if (!path.empty()) {
                    ++m_next[path.back()];
                }
                continue;
            }
            const Index holder = m_matching.m_groupOf[deviceAt(last)];
            if (holder == NONE) {
                moveUp(path);
                return true;
            }
            if (m_level[holder] == m_level[last] + 1 && m_level[holder] < m_last) {
                path.push_back(holder);
            } else {
                ++m_next[last];
            }
        }
        return false;
    }

    void moveUp(const std::vector<Index>& path) {
        for (const Index group : path) {
            m_matching.m_groupOf[deviceAt(group)] = group;
        }
        ++m_matching.m_used[path.front()];
    }

    Matching& m_matching;
    const std::vector<bool>& m_takesPart;
    const std::vector<AssociationLinks::Group>& m_groups;
    std::vector<Index> m_level;       ///< steps from the nearest group with room
    std::vector<std::size_t> m_next;  ///< of each group the first of its devices that has not led nowhere
    Index m_last = UNKNOWN;           ///< the level that a free device would have, were it a group
};

void Matching::complete(const std::vector<bool>& takesPart) {
    Layers layers(*this, takesPart);
    while (layers.layOut()) {
        layers.fill();
    }
}

class Matching::Exchange {
public:
    Exchange(Matching& matching, const std::vector<bool>& isWanted, const std::vector<bool>& takesPart)
        : m_matching(matching),
          m_isWanted(isWanted),
          m_groupsOf(matching.m_groupOf.size()),
          m_devicesOf(matching.m_used.size()),
          m_place(matching.m_groupOf.size()),
          m_before(matching.m_groupOf.size()),
          m_isSeen(matching.m_used.size(), false) {
        for (Index group = 0; group < takesPart.size(); ++group) {
            for (const Index device : takesPart[group] ? matching.m_links.groups[group].devices : NO_DEVICES) {
                m_groupsOf[device].push_back(group);
            }
        }
        for (Index device = 0; device < matching.m_groupOf.size(); ++device) {
            if (const Index group = matching.m_groupOf[device]; group != NONE) {
                m_place[device] = m_devicesOf[group].size();
                m_devicesOf[group].push_back(device);
            }
        }
    }

    /// Gives the device to a group, if it can be.
    void cover(Index wanted) {
        m_before[wanted] = NONE;
        std::vector<Index> queue{wanted};
        std::vector<Index> seen;
        for (std::size_t at = 0; at < queue.size(); ++at) {
            for (const Index group : m_groupsOf[queue[at]]) {
                if (m_isSeen[group]) {
                    continue;
                }
                m_isSeen[group] = true;
                seen.push_back(group);
                if (takesFrom(group, queue[at], queue)) {
                    for (const Index one : seen) {
                        m_isSeen[one] = false;
                    }
                    return;
                }
            }
        }
    }

private:
    /// Whether the group can have the device without harm; if not, those that it has are to be tried elsewhere.
    bool takesFrom(Index group, Index device, std::vector<Index>& queue) {
        if (m_matching.hasRoom(group)) {
            ++m_matching.m_used[group];
            m_devicesOf[group].push_back(NONE);
            moveOn(device, group, m_devicesOf[group].size() - 1);
            return true;
        }
        for (const Index other : m_devicesOf[group]) {
            if (!m_isWanted[other]) {
                m_matching.m_groupOf[other] = NONE;
                moveOn(device, group, m_place[other]);
                return true;
            }
        }
        for (const Index other : m_devicesOf[group]) {
            m_before[other] = device;
            queue.push_back(other);
        }
        return false;
    }

    /// Puts the device at that place of the group, the one before it at its old place, and so on.
    void moveOn(Index device, Index group, std::size_t place) {
        while (device != NONE) {
            const Index oldGroup = m_matching.m_groupOf[device];
            const std::size_t oldPlace = m_place[device];
            m_matching.m_groupOf[device] = group;
            m_devicesOf[group][place] = device;
            m_place[device] = place;
            device = m_before[device];
            group = oldGroup;
            place = oldPlace;
        }
    }

    static inline const std::vector<Index> NO_DEVICES;

    Matching& m_matching;
    const std::vector<bool>& m_isWanted;
    std::vector<std::vector<Index>> m_groupsOf;   ///< of each device those that may have it
    std::vector<std::vector<Index>> m_devicesOf;  ///< of each group those that it has
    std::vector<std::size_t> m_place;             ///< of each device, among those of its group
    std::vector<Index> m_before;                  ///< on the way that is searched: who would take the device's place
    std::vector<bool> m_isSeen;
};

void Matching::cover(const std::vector<bool>& isWanted, const std::vector<bool>& takesPart) {
    std::optional<Exchange> exchange;  // mostly there is nothing to do
    for (Index device = 0; device < m_groupOf.size(); ++device) {
        if (isWanted[device] && m_groupOf[device] == NONE) {
            (exchange ? *exchange : exchange.emplace(*this, isWanted, takesPart)).cover(device);
        }
    }
}

}  // namespace vrx
