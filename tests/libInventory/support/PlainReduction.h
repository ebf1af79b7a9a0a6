#pragma once

#include <algorithm>
#include <vector>

namespace vrx::test {

/// The reduction of links as its rules read, on plain lists: the slow reference for the fast one.
class PlainReduction {
public:
    using List = std::vector<int>;
    PlainReduction(std::size_t elements, std::size_t devices)
        : m_sides{std::vector<List>(elements), std::vector<List>(devices)} {}

    void link(int element, int device) {
        m_sides[1][device].push_back(element);
        m_sides[0][element].push_back(device);
        note(m_deviceOrder, device);
        note(m_elementOrder, element);
    }
    void run() {
        for (const int device : m_deviceOrder) {
            reduce(1, device);
        }
        for (const int element : m_elementOrder) {
            reduce(0, element);
        }
    }
    const List& partners(int element) const { return m_sides[0][element]; }
    const List& elementsOf(int device) const { return m_sides[1][device]; }

private:
    static void note(List& order, int index) {
        if (std::find(order.begin(), order.end(), index) == order.end()) {
            order.push_back(index);
        }
    }
    static int lastIndex(const List& list, int partner) {
        const auto at = std::find(list.rbegin(), list.rend(), partner);
        return static_cast<int>(list.rend() - at) - 1;
    }
    void removeLink(int side, int node, int partner) {
        List& list = m_sides[side][node];
        if (const int index = lastIndex(list, partner); index >= 0) {
            list.erase(list.begin() + index);
        }
    }
    void removeAllLinksExcept(int side, int node, int kept) {
        List& list = m_sides[side][node];
        const int keptIndex = lastIndex(list, kept);
        for (int i = 0; i < static_cast<int>(list.size()); ++i) {
            if (i != keptIndex) {
                removeLink(1 - side, list[i], node);
            }
        }
        if (keptIndex >= 0) {
            list = {kept};
        }
    }
    void reduce(int side, int node) {
        List& list = m_sides[side][node];
        if (list.size() < 2) {
            return;
        }
        std::size_t least = 0;
        for (std::size_t i = 1; i < list.size(); ++i) {
            if (m_sides[1 - side][list[i]].size() < m_sides[1 - side][list[least]].size()) {
                least = i;
            }
        }
        for (std::size_t i = 0; i < list.size(); ++i) {
            if (i == least) {
                removeAllLinksExcept(1 - side, list[i], node);
            } else {
                removeLink(1 - side, list[i], node);
            }
        }
        removeAllLinksExcept(side, node, list[least]);
    }

    std::vector<List> m_sides[2];
    List m_elementOrder;
    List m_deviceOrder;
};

}  // namespace vrx::test
