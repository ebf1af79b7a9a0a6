#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <memory>
#include <utility>

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"
#include "libCommon/text/TextHash.h"
#include "libInventory/engine/sweep/CandidateColumn.h"
#include "libInventory/support/SharedLists.h"

namespace vrx {

/// A list of devices among which more than one element chooses, with what the elements so far have asked of them.
class CandidatePool {
public:
    /// `cellsLeft` is how many values of devices may still be taken into columns; it outlives the pool.
    CandidatePool(SharedLists::Pointer devices, std::size_t& cellsLeft)
        : m_devices(std::move(devices)), m_cellsLeft(cellsLeft) {}

    const SharedLists::Pointer& devices() const noexcept { return m_devices; }

    /// What the devices hold under the key; null where that would take too much memory.
    CandidateColumn* column(StringView key);

private:
    SharedLists::Pointer m_devices;
    std::size_t& m_cellsLeft;
    boost::unordered_flat_map<String, std::unique_ptr<CandidateColumn>, TextHash> m_columns;
};

/// The pools of a pass, by the attributes of the elements that choose in them. Making columns pays from the second
/// element on.
class CandidatePools {
public:
    /// The pool of elements with such attributes; null when they have none yet. Once observers, who may change the
    /// store, have been told more than `tellings`, all pools are given up.
    CandidatePool* find(const XmlElement& element, std::size_t tellings);

    /// The same, with a new pool for the second such element, whose candidates are these.
    CandidatePool* add(const XmlElement& element, const SharedLists::DeviceArray& candidates, SharedLists& lists);

private:
    static constexpr std::size_t MOST_CELLS = 1U << 23U;

    /// The attributes of an element that was seen, and the pool from the second such element on.
    boost::unordered_flat_map<String, std::unique_ptr<CandidatePool>, TextHash> m_pools;
    std::size_t m_tellings = 0;
    std::size_t m_cellsLeft = MOST_CELLS;
};

}  // namespace vrx
