#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "libInventory/engine/search/BitRow.h"

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

    /// Whether a device is left for an element of the last reduction.
    bool isSatisfied(std::size_t element) const { return m_elementLinks[element] > 0; }

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

    template <std::size_t WORDS>
    void reduceIn(const BitRow& elements);
    template <std::size_t WORDS>
    void meetDevices(const BitRow& elements);
    template <std::size_t WORDS>
    void reduceDevice(std::uint32_t device);

    Word* rowOf(std::vector<Word>& rows, std::size_t index) { return rows.data() + index * m_words; }

    const Word* rowOf(const std::vector<Word>& rows, std::size_t index) const { return rows.data() + index * m_words; }
    std::uint32_t deviceOf(std::size_t element) const;
    void noteHolders(const BitRow& elements);
    bool couldServeMore(const BitRow& elements);
    bool couldCoverMore(const BitRow& elements, const BitRow& wanted);
    bool couldCover(std::uint32_t device, const BitRow& elements, const BitRow& wanted);

    std::vector<Element> m_elements;
    std::size_t m_deviceCount;
    std::size_t m_words;                        ///< of every row: enough for elements and for devices
    std::vector<Word> m_allRows;                ///< the devices of each element
    std::vector<Word> m_elementRows;            ///< those that are left
    std::vector<Word> m_deviceRows;             ///< the elements that are left of each device
    std::vector<std::uint32_t> m_elementLinks;  ///< how many are left
    std::vector<std::uint32_t> m_deviceLinks;
    std::vector<std::uint32_t> m_order;  ///< devices, in the order in which the graph would get to know them

    std::vector<std::uint32_t> m_holders;   ///< by device
    std::vector<std::uint32_t> m_deviceOf;  ///< by element: what it holds
    std::vector<std::uint32_t> m_queue;
    BitRow m_seen;
    std::shared_ptr<OwnLinks> m_ownLinks;  ///< of exact assignments; made for the first
};

}  // namespace vrx
