#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>

#include "libCommon/containers/Array.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Devices of a store that have something in common, in order of adding. Borrows from the store: valid until a device
/// is added.
///
///     for (const auto& device : store.withHwLocator(u"fan:1")) {
///         std::cout << device->name().toUtf8() << '\n';
///     }
class DeviceRange {
public:
    using DevicePointer = boost::shared_ptr<IDeviceImp>;

    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = DevicePointer;
        using difference_type = std::ptrdiff_t;
        using pointer = const DevicePointer*;
        using reference = const DevicePointer&;

        Iterator(const DeviceRange& group, std::uint32_t at, std::uint32_t left) noexcept
            : m_devices(group.m_devices), m_next(group.m_next), m_at(at), m_left(left) {}
        reference operator*() const noexcept { return m_devices[m_at]; }
        Iterator& operator++() noexcept {
            m_at = m_next != nullptr ? m_next[m_at] : m_at + 1;
            --m_left;
            return *this;
        }
        bool operator==(const Iterator& other) const noexcept { return m_left == other.m_left; }

    private:
        const DevicePointer* m_devices;
        const std::uint32_t* m_next;
        std::uint32_t m_at;
        std::uint32_t m_left;
    };

    DeviceRange() noexcept = default;

    /// All devices of a list.
    DeviceRange(const Array<DevicePointer>& devices) noexcept
        : m_devices(std::to_address(devices.begin())), m_size(static_cast<std::uint32_t>(devices.size())) {}

    /// So many of the list, from the first on, each with the position of the one that follows it.
    DeviceRange(const Array<DevicePointer>& devices, const std::uint32_t* next, std::uint32_t first,
                std::uint32_t size) noexcept
        : m_devices(std::to_address(devices.begin())), m_next(next), m_first(first), m_size(size) {}

    std::size_t size() const noexcept { return m_size; }
    bool isEmpty() const noexcept { return m_size == 0; }
    Iterator begin() const noexcept { return {*this, m_first, m_size}; }
    Iterator end() const noexcept { return {*this, 0, 0}; }

private:
    const DevicePointer* m_devices = nullptr;
    const std::uint32_t* m_next = nullptr;  ///< null when one follows the other
    std::uint32_t m_first = 0;
    std::uint32_t m_size = 0;
};

}  // namespace vrx
