#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

/// Numbers as text and back, always independent of the locale.
///
///     toText(2999.7);                                    // "2999.7"
///     parseReal(u"1e3").value_or(0);                     // 1000
///     parseInteger(u"12 MB");                            // none
namespace vrx {

VRX_EXPORT String toText(std::uint64_t number);
VRX_EXPORT String toText(std::int64_t number);
inline String toText(std::uint32_t number) { return toText(static_cast<std::uint64_t>(number)); }
inline String toText(std::int32_t number) { return toText(static_cast<std::int64_t>(number)); }

/// The shortest decimal text that reads back to the same value, without an exponent when the magnitude lies in
/// [1e-5, 1e16) or is 0, and without a trailing ".0": 2700, 0.5, 2999.7. Outside that range as `std::to_chars` gives
/// it.
VRX_EXPORT String toText(double number);

/// The decimal number that the whole text is (no white space, no "inf", "nan" or hexadecimal); empty when it is none or
/// lies outside the range of a double.
VRX_EXPORT std::optional<double> parseReal(StringView text) noexcept;

/// The decimal integer that the whole text is; empty when it is none or does not fit.
VRX_EXPORT std::optional<std::int64_t> parseInteger(StringView text) noexcept;

}  // namespace vrx
