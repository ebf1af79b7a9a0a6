/// The reduction of the association graph, done for very many combinations.
///
/// Devices come first, in the order in which they became known: each that has two links or more keeps the element with
/// the fewest links, the first of equals, and that element drops its other devices. After that every device has at most
/// one link, so the elements, which come next, only drop all but the first of their links; no other element notices.

#include "libInventory/engine/search/links/LinkTrial.h"

#include <algorithm>
#include <utility>

namespace vrx {

LinkTrial::LinkTrial(std::vector<Element> elements, std::size_t devices)
    : m_elements(std::move(elements)),
      m_deviceCount(devices),
      m_words(BitRow::wordsFor(m_elements.size())),
      m_takers(devices * m_words),
      m_rows(devices * m_words),
      m_missing(m_elements.size()),
      m_holders(devices),
      m_deviceOf(m_elements.size()) {
    for (std::size_t element = 0; element < m_elements.size(); ++element) {
        for (const std::uint32_t device : m_elements[element].devices) {
            m_takers[device * m_words + element / BitRow::BITS] |= Word{1} << (element % BitRow::BITS);
        }
    }
    m_order.reserve(devices);
    if (isFew()) {
        prepareFew();
    } else {
        m_elementLinks.resize(m_elements.size());
        m_deviceLinks.resize(devices);
    }
}

void LinkTrial::reduce(const BitRow& elements) {
    if (!isFew()) {
        reduceMany(elements);
    } else if (m_words == 2) {
        reduceFew<2>(elements);
    } else {
        reduceFew<1>(elements);
    }
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
    const std::vector<std::uint32_t>& devices = m_elements[element].devices;
    const auto first =
        std::find_if(devices.begin(), devices.end(), [&](std::uint32_t device) { return isLinked(element, device); });
    return first != devices.end() ? *first : NOBODY;
}

}  // namespace vrx
