#pragma once

#include <cstdint>
#include <memory>

#include "libInventory/engine/AlternativeList.h"

namespace vrx {

/// The run state of one script element, hung on the element through its user-data pointer.
struct ElementContext {
    /// Findings of the element are written into the script only while this is true; matching flips it for content
    /// whose failure was expected.
    bool m_errorsVisible = true;

    /// For an alternative (a child of an `or`): the association set that its subtree fills, always above 0.
    /// -1: none yet.
    std::int32_t m_associationIndex = -1;

    /// For an `or`: its children, as the first pass of the present run found them.
    std::unique_ptr<const AlternativeList> m_alternatives;

    /// For an `or`: 0-based index of the chosen child.
    std::uint32_t m_selectedChild = 0;

    /// For an `or`: the chosen child is the last one; the odometer's digit is at its top.
    bool m_atLastChild = false;

    /// 1-based position among the children of an `and`; 0 for everything else.
    std::uint32_t m_andIndex = 0;

    /// For an alternative: the first pass could not satisfy it. For an `or`: none of its children could be satisfied.
    bool m_pruned = false;

    /// For a pruned `or`: the second pass has descended into it once.
    bool m_visited = false;
};

}  // namespace vrx
