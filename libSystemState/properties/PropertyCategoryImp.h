#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// A set of property categories. SysInfo properties describe the hardware; Internal ones serve programs; Volatile ones
/// change by themselves (a temperature); Group ones stand for a group of others.
///
///     device.properties(PropertyCategoryImp::SysInfo() | PropertyCategoryImp::Internal());
class VRX_EXPORT PropertyCategoryImp {
public:
    /// The empty set.
    constexpr PropertyCategoryImp() noexcept = default;

    static constexpr PropertyCategoryImp SysInfo() noexcept { return PropertyCategoryImp(1); }
    static constexpr PropertyCategoryImp Internal() noexcept { return PropertyCategoryImp(2); }
    static constexpr PropertyCategoryImp Volatile() noexcept { return PropertyCategoryImp(4); }
    static constexpr PropertyCategoryImp Group() noexcept { return PropertyCategoryImp(8); }
    static constexpr PropertyCategoryImp ALL() noexcept { return PropertyCategoryImp(15); }

    constexpr PropertyCategoryImp operator|(PropertyCategoryImp other) const noexcept {
        return PropertyCategoryImp(static_cast<std::uint8_t>(m_bits | other.m_bits));
    }
    constexpr bool intersect(PropertyCategoryImp other) const noexcept { return (m_bits & other.m_bits) != 0; }
    constexpr bool isEmpty() const noexcept { return m_bits == 0; }
    friend constexpr bool operator==(PropertyCategoryImp, PropertyCategoryImp) noexcept = default;

    /// The names joined with ", ".
    String toString() const;

private:
    constexpr explicit PropertyCategoryImp(std::uint8_t bits) noexcept : m_bits(bits) {}
    std::uint8_t m_bits = 0;
};

}  // namespace vrx
