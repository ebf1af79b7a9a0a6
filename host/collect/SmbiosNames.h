#pragma once

#include <string_view>

/// Names behind the numbers of SMBIOS tables; empty for "other", "unknown" and numbers that have none.
namespace vrx::host {

std::string_view chassisTypeName(unsigned number) noexcept;
std::string_view memoryTypeName(unsigned number) noexcept;
std::string_view memoryFormFactorName(unsigned number) noexcept;
std::string_view errorCorrectionName(unsigned number) noexcept;

}  // namespace vrx::host
