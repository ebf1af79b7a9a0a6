#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libInventory/engine/search/BitRow.h"

namespace vrx {

/// Reduces the links of some elements as the association graph would (InventoryDeviceAssociationsReduction.cpp), on
/// sets of bits that are made once for all combinations.
///
/// Elements are numbered in the order in which the graph would get to know them.
class LinkTrial {
public:
    /// For each element its devices, in order.
    using Candidates = std::vector<std::vector<std::uint32_t>>;

    /// Requires: no device stands twice in a list.
    LinkTrial(Candidates candidates, std::size_t devices);

    std::size_t elementCount() const noexcept { return m_candidates.size(); }
    std::size_t deviceCount() const noexcept { return m_deviceCount; }

    /// Reduces the links of those elements alone.
    void reduce(const BitRow& elements);

    /// Whether a device is left for an element of the last reduction.
    bool isSatisfied(std::size_t element) const { return m_elementLinks[element] > 0; }

    /// The devices that elements of the last reduction hold.
    void getHeld(const BitRow& elements, BitRow& devices) const;

private:
    using Word = BitRow::Word;

    template <std::size_t WORDS>
    void reduceIn(const BitRow& elements);
    template <std::size_t WORDS>
    void meetDevices(const BitRow& elements);
    template <std::size_t WORDS>
    void reduceDevice(std::uint32_t device);

    Word* rowOf(std::vector<Word>& rows, std::size_t index) { return rows.data() + index * m_words; }

    Candidates m_candidates;
    std::size_t m_deviceCount;
    std::size_t m_words;                        ///< of every row: enough for elements and for devices
    std::vector<Word> m_allRows;                ///< the devices of each element
    std::vector<Word> m_elementRows;            ///< those that are left
    std::vector<Word> m_deviceRows;             ///< the elements that are left of each device
    std::vector<std::uint32_t> m_elementLinks;  ///< how many are left
    std::vector<std::uint32_t> m_deviceLinks;
    std::vector<std::uint32_t> m_order;  ///< devices, in the order in which the graph would get to know them
};

}  // namespace vrx
