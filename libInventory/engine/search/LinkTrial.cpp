/// The reduction of the association graph, done for very many combinations.
///
/// Devices come first, in the order in which they became known: each that has two links or more keeps the element with
/// the fewest links, the first of equals, and that element drops its other devices. After that every device has at most
/// one link, so the elements, which come next, only drop all but the first of their links; no other element notices.

#include "libInventory/engine/search/LinkTrial.h"

#include <algorithm>
#include <utility>

namespace vrx {

namespace {

constexpr std::uint32_t MANY_LINKS = 0xFFFFFFFF;

/// The words of a row, where their number is not known when this is compiled.
constexpr std::size_t ANY_WORDS = 0;

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

LinkTrial::LinkTrial(std::vector<Element> elements, std::size_t devices)
    : m_elements(std::move(elements)),
      m_deviceCount(devices),
      m_words(std::max<std::size_t>(1, BitRow::wordsFor(std::max(m_elements.size(), devices)))),
      m_allRows(m_elements.size() * m_words),
      m_elementRows(m_allRows.size()),
      m_deviceRows(devices * m_words),
      m_elementLinks(m_elements.size()),
      m_deviceLinks(devices),
      m_holders(devices),
      m_deviceOf(m_elements.size()) {
    for (std::size_t element = 0; element < m_elements.size(); ++element) {
        for (const std::uint32_t device : m_elements[element].devices) {
            setBit(rowOf(m_allRows, element), device);
        }
    }
    m_order.reserve(devices);
}

void LinkTrial::reduce(const BitRow& elements) {
    switch (m_words) {
        case 1: return reduceIn<1>(elements);
        case 2: return reduceIn<2>(elements);
        default: return reduceIn<ANY_WORDS>(elements);
    }
}

template <std::size_t WORDS>
void LinkTrial::reduceIn(const BitRow& elements) {
    meetDevices<WORDS>(elements);
    for (const std::uint32_t device : m_order) {
        if (m_deviceLinks[device] >= 2) {
            reduceDevice<WORDS>(device);
        }
    }
}

/// Puts the links of the elements up, and the devices in order.
template <std::size_t WORDS>
void LinkTrial::meetDevices(const BitRow& elements) {
    const std::size_t words = WORDS == ANY_WORDS ? m_words : WORDS;
    for (const std::uint32_t device : m_order) {
        m_deviceLinks[device] = 0;
    }
    m_order.resize(m_deviceCount);
    std::uint32_t* order = m_order.data();
    std::uint32_t* const links = m_deviceLinks.data();
    Word* const rows = m_deviceRows.data();
    elements.forEach([&](std::size_t element) {
        std::copy_n(rowOf(m_allRows, element), words, rowOf(m_elementRows, element));
        const std::vector<std::uint32_t>& devices = m_elements[element].devices;
        m_elementLinks[element] = static_cast<std::uint32_t>(devices.size());
        for (const std::uint32_t device : devices) {
            if (links[device]++ == 0) {
                *order++ = device;
                std::fill_n(rows + device * words, words, 0);
            }
            setBit(rows + device * words, element);
        }
    });
    m_order.resize(static_cast<std::size_t>(order - m_order.data()));
}

template <std::size_t WORDS>
void LinkTrial::reduceDevice(std::uint32_t device) {
    const std::size_t words = WORDS == ANY_WORDS ? m_words : WORDS;
    Word* const row = rowOf(m_deviceRows, device);
    std::size_t kept = 0;
    std::uint32_t fewest = MANY_LINKS;
    forEachBit(row, words, [&](std::size_t element) {
        if (m_elementLinks[element] < fewest) {
            fewest = m_elementLinks[element];
            kept = element;
        }
    });
    forEachBit(row, words, [&](std::size_t element) {
        if (element != kept) {
            clearBit(rowOf(m_elementRows, element), device);
            --m_elementLinks[element];
        }
    });
    Word* const keptRow = rowOf(m_elementRows, kept);
    if (fewest > 1) {
        forEachBit(keptRow, words, [&](std::size_t other) {
            if (other != device) {
                clearBit(rowOf(m_deviceRows, other), kept);
                --m_deviceLinks[other];
            }
        });
        std::fill_n(keptRow, words, 0);
        setBit(keptRow, device);
        m_elementLinks[kept] = 1;
    }
    std::fill_n(row, words, 0);
    setBit(row, kept);
    m_deviceLinks[device] = 1;
}

void LinkTrial::getHeld(const BitRow& elements, BitRow& devices) const {
    elements.forEach([&](std::size_t element) {
        if (const std::uint32_t device = deviceOf(element); device != NOBODY) {
            devices.set(device);
        }
    });
}

/// The first that is left.
std::uint32_t LinkTrial::deviceOf(std::size_t element) const {
    const Word* const row = rowOf(m_elementRows, element);
    const auto holds = [row](std::uint32_t device) {
        return (row[device / BitRow::BITS] >> (device % BitRow::BITS) & 1) != 0;
    };
    const std::vector<std::uint32_t>& devices = m_elements[element].devices;
    const auto first = std::find_if(devices.begin(), devices.end(), holds);
    return first != devices.end() ? *first : NOBODY;
}

}  // namespace vrx
