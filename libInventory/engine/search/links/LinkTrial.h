#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "libInventory/engine/search/links/BitRow.h"

namespace vrx {

/// Reduces the links of some elements as the association graph would (InventoryDeviceAssociationsReduction.cpp), on
/// sets of bits that are made once for all combinations.
///
/// Elements are numbered in the order in which the graph would get to know them.
class LinkTrial {
public:
    static constexpr std::uint32_t NOBODY = 0xFFFFFFFF;

    struct Element {
        std::vector<std::uint32_t> devices;  ///< in order
        std::uint32_t share = NOBODY;        ///< the same for elements that share their links
        bool needsDevice = true;             ///< it stands under no `not`
    };

    /// Requires: no device stands twice in a list.
    LinkTrial(std::vector<Element> elements, std::size_t devices);

    std::size_t elementCount() const noexcept { return m_elements.size(); }
    std::size_t deviceCount() const noexcept { return m_deviceCount; }

    const std::vector<std::uint32_t>& devicesOf(std::size_t element) const { return m_elements[element].devices; }
    bool needsDevice(std::size_t element) const { return m_elements[element].needsDevice; }
    std::uint32_t shareOf(std::size_t element) const { return m_elements[element].share; }

    /// Reduces the links of those elements alone.
    void reduce(const BitRow& elements);

    /// The elements of the last reduction for which no device is left.
    const BitRow& missing() const noexcept { return m_missing; }

    /// The devices that elements of the last reduction hold.
    void getHeld(const BitRow& elements, BitRow& devices) const;

    // ---- LinkTrialExact.cpp ----

    /// Whether an exact assignment of the elements of the last reduction would be another: serve more of them, or leave
    /// fewer of the wanted devices over.
    bool couldDoBetter(const BitRow& elements, const BitRow& wanted);

    /// Makes the exact assignment take the place of the reduction.
    void assignExactly(const BitRow& elements, const BitRow& wanted);

private:
    using Word = BitRow::Word;
    class OwnLinks;

    static constexpr std::size_t FEW_DEVICES = BitRow::BITS;

    // ---- LinkTrialFew.cpp: up to FEW_DEVICES, and elements in one or two words ----

    void prepareFew();
    template <std::size_t WORDS>
    void reduceFew(const BitRow& elements);
    void meetFew(const BitRow& elements);

    // ---- LinkTrialMany.cpp ----

    void reduceMany(const BitRow& elements);
    void meetMany(const BitRow& elements);
    void reduceDevice(std::uint32_t device);

    Word* rowOf(std::size_t device) { return m_rows.data() + device * m_words; }
    static bool holds(const std::vector<Word>& rows, std::size_t row, std::size_t words, std::size_t bit) {
        return (rows[row * words + bit / BitRow::BITS] >> (bit % BitRow::BITS) & 1) != 0;
    }
    bool isFew() const noexcept { return m_deviceCount <= FEW_DEVICES && (m_words == 1 || m_words == 2); }
    bool takes(std::size_t element, std::size_t device) const { return holds(m_takers, device, m_words, element); }
    bool isLinked(std::size_t element, std::size_t device) const { return holds(m_rows, device, m_words, element); }
    std::uint32_t deviceOf(std::size_t element) const;
    void noteHolders(const BitRow& elements);
    bool couldServeMore(const BitRow& elements);
    bool couldCoverMore(const BitRow& elements, const BitRow& wanted);
    bool couldCover(std::uint32_t device, const BitRow& elements, const BitRow& wanted);

    std::vector<Element> m_elements;
    std::size_t m_deviceCount;
    std::size_t m_words;         ///< of a set of elements
    std::vector<Word> m_takers;  ///< by device: the elements that would take it
    std::vector<Word> m_rows;    ///< those that are left of it

    std::vector<std::uint32_t> m_order;  ///< devices, in the order in which the graph would get to know them
    BitRow m_missing;

    // Of few devices. How many links elements have: the binary digits of all numbers, a set of elements for each digit.
    std::vector<Word> m_devicesOf;  ///< by element
    std::vector<Word> m_counts;

    // Of many devices.
    std::vector<std::uint32_t> m_elementLinks;  ///< how many are left
    std::vector<std::uint32_t> m_deviceLinks;

    std::vector<std::uint32_t> m_holders;   ///< by device
    std::vector<std::uint32_t> m_deviceOf;  ///< by element: what it holds
    std::vector<std::uint32_t> m_queue;
    BitRow m_seen;
    std::shared_ptr<OwnLinks> m_ownLinks;  ///< of exact assignments; made for the first
};

}  // namespace vrx
