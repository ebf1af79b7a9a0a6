#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
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

    enum class FilterKind { Name, OsLocator, HwLocator };
    static constexpr std::size_t NO_FILTER = static_cast<std::size_t>(-1);

    CandidateSearch(const StateManager& store, const CapabilityImp& capability);

    /// Adds a filter; filters count in the order in which they were added.
    void addFilter(FilterKind kind, String value);

    /// Finds the devices that pass all filters, in the store's order. The result is valid until the search or the store
    /// changes.
    const DeviceArray& find();

    /// The only device that passes all filters, where indexes alone show quickly that it is the only one; null
    /// otherwise.
    const boost::shared_ptr<IDeviceImp>* findOnly() const;

    /// After a `find` without result: the first filter that left no device.
    std::size_t firstExhaustedFilter() const;

    /// Tests of patterns that were given up while lines were made for the log.
    std::size_t givenUpInTrace() const noexcept { return m_givenUpInTrace; }

private:
    struct Filter {
        FilterKind kind;
        String value;
    };

    bool passes(const IDeviceImp& device, const Filter& filter) const;
    bool passesFirst(const IDeviceImp& device, std::size_t filterCount) const;
    const DeviceArray& smallList(std::size_t filterCount) const;
    const DeviceArray* indexed(const Filter& filter) const;
    const DeviceArray* indexedByName(const String& pattern) const;
    void logRemovals();
    void logRemoval(const IDeviceImp& device, const Filter& filter) const;

    const StateManager& m_store;
    const CapabilityImp& m_capability;
    const DeviceArray& m_ofType;
    std::vector<Filter> m_filters;
    DeviceArray m_found;
    std::size_t m_givenUpInTrace = 0;
};

}  // namespace vrx
