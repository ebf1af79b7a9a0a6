#pragma once

#include <cstddef>
#include <numeric>
#include <vector>

namespace vrx {

/// Numbers that are put together into sets.
class DisjointSets {
public:
    explicit DisjointSets(std::size_t size = 0) : m_parents(size) {
        std::iota(m_parents.begin(), m_parents.end(), std::size_t{0});
    }

    /// The number that stands for the set of that one.
    std::size_t find(std::size_t number) const {
        while (m_parents[number] != number) {
            number = m_parents[number] = m_parents[m_parents[number]];
        }
        return number;
    }

    void join(std::size_t a, std::size_t b) {
        a = find(a);
        b = find(b);
        m_parents[a < b ? b : a] = a < b ? a : b;
    }

private:
    mutable std::vector<std::size_t> m_parents;  ///< shortened while they are followed
};

}  // namespace vrx
