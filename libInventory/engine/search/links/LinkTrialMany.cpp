/// The reduction where there are many devices, of which an element has few.

#include <algorithm>

#include "libInventory/engine/search/links/LinkTrial.h"

namespace vrx {

namespace {

constexpr std::uint32_t MANY_LINKS = 0xFFFFFFFF;

template <typename Visit>
void forEachBit(const BitRow::Word* row, std::size_t words, const Visit& visit) {
    for (std::size_t i = 0; i < words; ++i) {
        for (BitRow::Word rest = row[i]; rest != 0; rest &= rest - 1) {
            visit(i * BitRow::BITS + static_cast<std::size_t>(std::countr_zero(rest)));
        }
    }
}

void setBit(BitRow::Word* row, std::size_t bit) { row[bit / BitRow::BITS] |= BitRow::Word{1} << (bit % BitRow::BITS); }

void clearBit(BitRow::Word* row, std::size_t bit) {
    row[bit / BitRow::BITS] &= ~(BitRow::Word{1} << (bit % BitRow::BITS));
}

}  // namespace

void LinkTrial::reduceMany(const BitRow& elements) {
    meetMany(elements);
    for (const std::uint32_t device : m_order) {
        if (m_deviceLinks[device] >= 2) {
            reduceDevice(device);
        }
    }
}

/// Puts the links of the elements up, and the devices in order.
void LinkTrial::meetMany(const BitRow& elements) {
    for (const std::uint32_t device : m_order) {
        m_deviceLinks[device] = 0;
    }
    m_missing.clear();
    m_order.clear();
    elements.forEach([&](std::size_t element) {
        const std::vector<std::uint32_t>& devices = m_elements[element].devices;
        m_elementLinks[element] = static_cast<std::uint32_t>(devices.size());
        if (devices.empty()) {
            m_missing.set(element);
        }
        for (const std::uint32_t device : devices) {
            if (m_deviceLinks[device]++ == 0) {
                m_order.push_back(device);
                std::fill_n(rowOf(device), m_words, 0);
            }
            setBit(rowOf(device), element);
        }
    });
}

void LinkTrial::reduceDevice(std::uint32_t device) {
    Word* const row = rowOf(device);
    std::size_t kept = 0;
    std::uint32_t fewest = MANY_LINKS;
    forEachBit(row, m_words, [&](std::size_t element) {
        if (m_elementLinks[element] < fewest) {
            fewest = m_elementLinks[element];
            kept = element;
        }
    });
    clearBit(row, kept);
    forEachBit(row, m_words, [this](std::size_t element) {
        if (--m_elementLinks[element] == 0) {
            m_missing.set(element);
        }
    });
    if (fewest > 1) {
        for (const std::uint32_t other : m_elements[kept].devices) {
            if (other != device && isLinked(kept, other)) {
                clearBit(rowOf(other), kept);
                --m_deviceLinks[other];
            }
        }
        m_elementLinks[kept] = 1;
    }
    std::fill_n(row, m_words, 0);
    setBit(row, kept);
    m_deviceLinks[device] = 1;
}

}  // namespace vrx
