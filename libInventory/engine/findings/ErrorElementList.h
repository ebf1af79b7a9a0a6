#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>

namespace vrx {

class XmlElement;

/// The elements of one error slot that are themselves unsatisfied. An element may stand in it more than once. Nothing
/// ever reads the order, only whether an element is in it, so it is kept as a count per element.
class ErrorElementList {
public:
    void prepend(XmlElement* element) { ++m_counts[element]; }
    void append(XmlElement* element) { ++m_counts[element]; }
    bool contains(XmlElement* element) const { return m_counts.contains(element); }
    std::size_t size() const noexcept { return m_counts.size(); }
    bool isEmpty() const noexcept { return m_counts.empty(); }
    void clear() noexcept { m_counts.clear(); }

    /// Calls `visit` with each element once, in no order.
    template <typename Visit>
    void forEach(const Visit& visit) const {
        for (const auto& [element, count] : m_counts) {
            visit(element);
        }
    }

    /// Takes one occurrence away.
    void removeFirst(XmlElement* element) {
        const auto at = m_counts.find(element);
        if (at != m_counts.end() && --at->second == 0) {
            m_counts.erase(at);
        }
    }

private:
    boost::unordered_flat_map<XmlElement*, std::uint32_t> m_counts;
};

}  // namespace vrx
