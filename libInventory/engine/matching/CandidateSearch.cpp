#include "libInventory/engine/matching/CandidateSearch.h"

#include <algorithm>

#include "libInventory/Inventory.h"
#include "libInventory/engine/matching/Anchors.h"
#include "libInventory/support/InventoryLog.h"
#include "libRegex/Regex.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

constexpr std::size_t SHORT_ENOUGH = 4;  // for a list to be tested device by device

}  // namespace

/// Devices of the store among which are all that the filter lets pass; `most` when no index has them.
DeviceRange CandidateSearch::indexed(const ElementFilter& filter, const DeviceRange& most) const {
    switch (filter.kind) {
        case ElementFilter::Kind::Name: return indexedByName(filter.value, most);
        case ElementFilter::Kind::OsLocator: return m_store.withOsLocator(filter.value);
        case ElementFilter::Kind::HwLocator: return m_store.withHwLocator(filter.value);
    }
    return most;
}

/// A pattern that stands for one text is met by that very text, or, through the comparison without anchors and letter
/// case, by the pattern's own text; with escapes in it the two differ, and then the second must be a name of nobody for
/// one list to hold all that pass.
DeviceRange CandidateSearch::indexedByName(StringView pattern, const DeviceRange& most) const {
    String literal;
    if (!Regex::isAnchoredLiteral(pattern, literal)) {
        return most;
    }
    const StringView ownText = withoutAnchors(pattern);
    const bool oneListHoldsAll = equalNoCase(ownText, literal) || m_store.named(ownText).isEmpty();
    return oneListHoldsAll ? m_store.named(literal) : most;
}

const CandidateSearch::DeviceArray& CandidateSearch::find() {
    const DeviceArray& ofType = m_store.devicesCapableOf(m_capability);
    if (m_filters.empty()) {
        return ofType;
    }
    logRemovals();
    for (const auto& device : smallList(ofType, m_filters.size())) {
        if (passesFirst(*device, m_filters.size())) {
            m_found.append(device);
        }
    }
    return m_found;
}

const boost::shared_ptr<IDeviceImp>* CandidateSearch::findOnly() const {
    const DeviceRange list = smallList(m_store.devices(), m_filters.size());
    if (list.size() > SHORT_ENOUGH) {
        return nullptr;
    }
    const boost::shared_ptr<IDeviceImp>* only = nullptr;
    for (const auto& device : list) {
        if (passesFirst(*device, m_filters.size())) {
            if (only != nullptr) {
                return nullptr;
            }
            only = &device;
        }
    }
    return only;
}

std::size_t CandidateSearch::firstExhaustedFilter() const {
    const DeviceArray& ofType = m_store.devicesCapableOf(m_capability);
    for (std::size_t count = 1; count <= m_filters.size(); ++count) {
        const DeviceRange list = smallList(ofType, count);
        const bool somePasses =
            std::any_of(list.begin(), list.end(), [&](const auto& device) { return passesFirst(*device, count); });
        if (!somePasses) {
            return count - 1;
        }
    }
    return NO_FILTER;
}

bool CandidateSearch::passesFirst(const IDeviceImp& device, std::size_t filterCount) const {
    return m_capability.isCapable(device.type()) &&
           std::all_of(m_filters.begin(), m_filters.begin() + static_cast<std::ptrdiff_t>(filterCount),
                       [&](const ElementFilter& filter) { return passes(device, filter); });
}

bool CandidateSearch::passes(const IDeviceImp& device, const ElementFilter& filter) const {
    switch (filter.kind) {
        case ElementFilter::Kind::Name: return Inventory::matchString(filter.value, device.name());
        case ElementFilter::Kind::OsLocator: return device.osLocator() == filter.value;
        case ElementFilter::Kind::HwLocator: return device.hwLocator() == filter.value;
    }
    return false;
}

/// The shortest list found before one is short enough. An index is only asked, and so only made, when the ones before
/// it did not help; hardware locators come first, because they tell devices apart best.
DeviceRange CandidateSearch::smallList(DeviceRange most, std::size_t filterCount) const {
    for (const ElementFilter::Kind kind :
         {ElementFilter::Kind::HwLocator, ElementFilter::Kind::OsLocator, ElementFilter::Kind::Name}) {
        for (std::size_t i = 0; i < filterCount && most.size() > SHORT_ENOUGH; ++i) {
            if (m_filters[i].kind == kind) {
                const DeviceRange list = indexed(m_filters[i], most);
                most = list.size() < most.size() ? list : most;
            }
        }
    }
    return most;
}

/// The lines of the filters running one after the other over all devices of the type, each from the last device to the
/// first. What they would leave is what `find` finds by a shorter way.
void CandidateSearch::logRemovals() {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    DeviceArray left = m_store.devicesCapableOf(m_capability);
    for (const ElementFilter& filter : m_filters) {
        for (std::size_t i = left.size(); i-- > 0;) {
            if (!passes(*left[i], filter)) {
                logRemoval(*left[i], filter);
                left.remove(i);
            }
        }
    }
    m_givenUpInTrace += Regex::exceededCount() - givenUpBefore;
}

// Contract: the osLocator line prints the device's own locator twice, and the hwLocator line says "because of osloc".
void CandidateSearch::logRemoval(const IDeviceImp& device, const ElementFilter& filter) const {
    if (filter.kind == ElementFilter::Kind::Name) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchDevice: removing device because of name. name = " << device.name() << u" inventory name = "
                                                                         << filter.value);
        return;
    }
    const bool byOs = filter.kind == ElementFilter::Kind::OsLocator;
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchDevice: removing device because of osloc. osloc = "
                << device.osLocator() << u" hwloc=" << device.hwLocator()
                << (byOs ? u" inventory osLocator = " : u" inventory hwLocator = ")
                << (byOs ? device.osLocator().view() : filter.value));
}

}  // namespace vrx
