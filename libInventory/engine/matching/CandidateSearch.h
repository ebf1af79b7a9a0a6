#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <span>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libInventory/engine/matching/ElementFilters.h"
#include "libSystemState/DeviceRange.h"
#include "libSystemState/Forward.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// Finds the devices of a type that pass a list of filters (name, locators).
///
/// A short list that an index of the store offers is tested against all filters at once, so that a script with a
/// locator in every element costs no scan of the store.
class CandidateSearch {
public:
    using DeviceArray = Array<boost::shared_ptr<IDeviceImp>>;

    static constexpr std::size_t NO_FILTER = static_cast<std::size_t>(-1);

    /// Everything is borrowed.
    CandidateSearch(const StateManager& store, const CapabilityImp& capability, std::span<const ElementFilter> filters)
        : m_store(store), m_capability(capability), m_filters(filters) {}

    /// Finds the devices that pass all filters, in the store's order. The result is valid until the search or the store
    /// changes.
    const DeviceArray& find();

    /// The only device that passes all filters, where an index of the store shows quickly that it is the only one; null
    /// otherwise. Several threads may search one store so.
    const boost::shared_ptr<IDeviceImp>* findOnly() const;

    /// After a `find` without result: the first filter that left no device.
    std::size_t firstExhaustedFilter() const;

    /// Tests of patterns that were given up while lines were made for the log.
    std::size_t givenUpInTrace() const noexcept { return m_givenUpInTrace; }

private:
    bool passes(const IDeviceImp& device, const ElementFilter& filter) const;
    bool passesFirst(const IDeviceImp& device, std::size_t filterCount) const;
    DeviceRange smallList(DeviceRange most, std::size_t filterCount) const;
    DeviceRange indexed(const ElementFilter& filter, const DeviceRange& most) const;
    DeviceRange indexedByName(StringView pattern, const DeviceRange& most) const;
    void logRemovals();
    void logRemoval(const IDeviceImp& device, const ElementFilter& filter) const;

    const StateManager& m_store;
    const CapabilityImp& m_capability;
    std::span<const ElementFilter> m_filters;
    DeviceArray m_found;
    std::size_t m_givenUpInTrace = 0;
};

}  // namespace vrx
