/// From an element without a device the search goes to all devices that it would take, from these to the elements that
/// have them, and on. Where it comes to a device that nobody has, or only an element under a `not`, another assignment
/// would have served the element, and there is no shortage. Else it ends with one element more than devices, and none
/// of the elements can be left out: each could have been the one without, by handing devices on along the way that led
/// to it.

#include "libInventory/engine/assignment/CompetitionSearch.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_set.hpp>
#include <tuple>
#include <utility>
#include <vector>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/KeptLinks.h"
#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

class CompetitionSearch {
public:
    CompetitionSearch(const InventoryState& state, const KeptLinks& links) : m_state(state), m_links(links) {}

    /// Whether the elements compete for too few devices.
    bool spreadFrom(const XmlElement& element) {
        m_elements.push_back(&element);
        for (std::size_t at = 0; at < m_elements.size(); ++at) {
            if (!spreadTo(*m_elements[at])) {
                return false;
            }
        }
        return !m_devices.isEmpty();
    }

    Competition competition() && {
        std::sort(m_elements.begin(), m_elements.end(), [](const XmlElement* a, const XmlElement* b) {
            return std::tuple(a->Row(), a->Column()) < std::tuple(b->Row(), b->Column());
        });
        Competition competition;
        competition.devices = std::move(m_devices);
        for (const XmlElement* const element : m_elements) {
            competition.elements.append(element);
        }
        return competition;
    }

private:
    /// Goes on to the holders of the element's devices; false when one of these is to be had.
    bool spreadTo(const XmlElement& element) {
        const Inventory::InventoryDeviceAssociations& set = m_state.setOf(element);
        if (!m_seenLists.insert(set.linksOf(&element)).second) {
            return true;
        }
        Array<boost::shared_ptr<IDeviceImp>> devices;
        set.getAssociatedDevices(&element, devices);
        for (const boost::shared_ptr<IDeviceImp>& device : devices) {
            if (!m_seenDevices.insert(device.get()).second) {
                continue;
            }
            const XmlElement* const holder = m_links.holderOf(*device);
            if (holder == nullptr || isUnderNot(*holder)) {
                return false;
            }
            m_devices.append(device);
            m_elements.push_back(holder);
        }
        return true;
    }

    const InventoryState& m_state;
    const KeptLinks& m_links;
    std::vector<const XmlElement*> m_elements;
    Array<boost::shared_ptr<IDeviceImp>> m_devices;
    boost::unordered_flat_set<const IDeviceImp*> m_seenDevices;
    boost::unordered_flat_set<const void*> m_seenLists;
};

}  // namespace

Competition findCompetition(const InventoryState& state, const KeptLinks& links, const XmlElement& element) {
    CompetitionSearch search(state, links);
    if (links.isSatisfied(element) || isUnderNot(element) || !search.spreadFrom(element)) {
        return Competition();
    }
    return std::move(search).competition();
}

}  // namespace vrx
