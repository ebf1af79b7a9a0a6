#include "libInventory/engine/matching/CandidateSearch.h"

#include <algorithm>
#include <utility>

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

CandidateSearch::CandidateSearch(const StateManager& store, const CapabilityImp& capability)
    : m_store(store), m_capability(capability), m_ofType(store.devicesCapableOf(capability)) {}

void CandidateSearch::addFilter(FilterKind kind, String value) { m_filters.push_back({kind, std::move(value)}); }

/// A list of the store that holds every device that the filter lets pass; null when there is none.
const CandidateSearch::DeviceArray* CandidateSearch::indexed(const Filter& filter) const {
    switch (filter.kind) {
        case FilterKind::Name: return indexedByName(filter.value);
        case FilterKind::OsLocator: return &m_store.devicesByOsLocator(filter.value);
        case FilterKind::HwLocator: return &m_store.devicesByHwLocator(filter.value);
    }
    return nullptr;
}

/// A pattern that stands for one text is met by that very text, or, through the comparison without anchors and letter
/// case, by the pattern's own text; with escapes in it the two differ, and then the second must be a name of nobody for
/// one list to hold all that pass.
const CandidateSearch::DeviceArray* CandidateSearch::indexedByName(const String& pattern) const {
    String literal;
    if (!Regex::isAnchoredLiteral(pattern, literal)) {
        return nullptr;
    }
    const StringView ownText = withoutAnchors(pattern);
    const bool oneListHoldsAll = equalNoCase(ownText, literal) || m_store.devicesByName(ownText).isEmpty();
    return oneListHoldsAll ? &m_store.devicesByName(literal) : nullptr;
}

const CandidateSearch::DeviceArray& CandidateSearch::find() {
    if (m_filters.empty()) {
        return m_ofType;
    }
    logRemovals();
    const DeviceArray& list = smallList(m_filters.size());
    for (const auto& device : list) {
        if (passesFirst(*device, m_filters.size())) {
            m_found.append(device);
        }
    }
    return m_found;
}

const boost::shared_ptr<IDeviceImp>* CandidateSearch::findOnly() const {
    const DeviceArray& list = smallList(m_filters.size());
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
    for (std::size_t count = 1; count <= m_filters.size(); ++count) {
        const DeviceArray& list = smallList(count);
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
                       [&](const Filter& filter) { return passes(device, filter); });
}

bool CandidateSearch::passes(const IDeviceImp& device, const Filter& filter) const {
    switch (filter.kind) {
        case FilterKind::Name: return Inventory::matchString(filter.value, device.name());
        case FilterKind::OsLocator: return device.osLocator() == filter.value;
        case FilterKind::HwLocator: return device.hwLocator() == filter.value;
    }
    return false;
}

/// The shortest list found before one is short enough. An index is only asked, and so only made, when the ones before
/// it did not help; hardware locators come first, because they tell devices apart best.
const CandidateSearch::DeviceArray& CandidateSearch::smallList(std::size_t filterCount) const {
    const DeviceArray* smallest = &m_ofType;
    for (const FilterKind kind : {FilterKind::HwLocator, FilterKind::OsLocator, FilterKind::Name}) {
        for (std::size_t i = 0; i < filterCount && smallest->size() > SHORT_ENOUGH; ++i) {
            const DeviceArray* const list = m_filters[i].kind == kind ? indexed(m_filters[i]) : nullptr;
            if (list != nullptr && list->size() < smallest->size()) {
                smallest = list;
            }
        }
    }
    return *smallest;
}

/// The lines of the filters running one after the other over all devices of the type, each from the last device to the
/// first. What they would leave is what `find` finds by a shorter way.
void CandidateSearch::logRemovals() {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    DeviceArray left = m_ofType;
    for (const Filter& filter : m_filters) {
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
void CandidateSearch::logRemoval(const IDeviceImp& device, const Filter& filter) const {
    if (filter.kind == FilterKind::Name) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchDevice: removing device because of name. name = " << device.name() << u" inventory name = "
                                                                         << filter.value);
        return;
    }
    const bool byOs = filter.kind == FilterKind::OsLocator;
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchDevice: removing device because of osloc. osloc = "
                << device.osLocator() << u" hwloc=" << device.hwLocator()
                << (byOs ? u" inventory osLocator = " : u" inventory hwLocator = ")
                << (byOs ? device.osLocator() : filter.value));
}

}  // namespace vrx
