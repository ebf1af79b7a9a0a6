#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "libCommon/Forward.h"

namespace vrx {

/// The children of an `or` in order, so that no combination has to walk to the one that it chooses.
class AlternativeList {
public:
    void append(XmlElement* child, bool isPruned) {
        if (!isPruned) {
            m_open.push_back(static_cast<std::uint32_t>(m_children.size()));
        }
        m_children.push_back(child);
    }

    /// The child at the position, the last one for positions behind it; null when there are no children.
    XmlElement* at(std::uint32_t position) const noexcept {
        return m_children.empty() ? nullptr : m_children[std::min<std::size_t>(position, m_children.size() - 1)];
    }

    std::size_t size() const noexcept { return m_children.size(); }

    /// The positions of the children that are not pruned, in order.
    const std::vector<std::uint32_t>& open() const noexcept { return m_open; }

    /// The first position from that one on whose child is not pruned; the very position when there is none.
    std::uint32_t skipPruned(std::uint32_t position) const noexcept {
        const auto next = std::lower_bound(m_open.begin(), m_open.end(), position);
        return next == m_open.end() ? position : *next;
    }

private:
    std::vector<XmlElement*> m_children;
    std::vector<std::uint32_t> m_open;  ///< positions of the children that are not pruned, in order
};

}  // namespace vrx
