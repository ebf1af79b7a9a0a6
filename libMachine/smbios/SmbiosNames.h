#pragma once

#include <string>
#include <string_view>

/// Names behind the numbers of SMBIOS tables; empty for "other", "unknown" and numbers that have none.
namespace vrx {

std::string_view chassisTypeName(unsigned number) noexcept;
std::string_view memoryTypeName(unsigned number) noexcept;
std::string_view memoryTechnologyName(unsigned number) noexcept;
std::string_view memoryFormFactorName(unsigned number) noexcept;
std::string_view errorCorrectionName(unsigned number) noexcept;
std::string_view boardTypeName(unsigned number) noexcept;
std::string_view processorSocketName(unsigned number) noexcept;
std::string_view slotLengthName(unsigned number) noexcept;
std::string_view slotUsageName(unsigned number) noexcept;
std::string_view onboardDeviceName(unsigned number) noexcept;
std::string_view coolingTypeName(unsigned number) noexcept;
std::string_view batteryChemistryName(unsigned number) noexcept;
std::string_view managementInterfaceName(unsigned number) noexcept;

/// Type and width of an expansion slot in one: "x16 PCI Express 3", "32-bit PCI", "x8 PCI Express 3 x16" (electrically
/// 8 lanes in a slot of 16).
std::string slotTypeName(unsigned type, unsigned width);

}  // namespace vrx
