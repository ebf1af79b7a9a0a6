#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The type of a value: one of 17 codes.
///
///     DataTypeImp(DataTypeImp::UINT32).toString();     // "UINT32"
class VRX_EXPORT DataTypeImp {
public:
    enum Code : std::uint8_t {
        UINT32 = 0,
        INT32 = 1,
        UINT64 = 2,
        BOOLEAN = 3,
        DOUBLE = 4,
        STRING = 5,
        DATETIME = 6,
        PERCENT = 7,
        STRINGARRAY = 8,
        UINT32ARRAY = 9,
        INT32ARRAY = 10,
        DISCRETEMEASUREMENT = 11,
        UINT64ARRAY = 12,
        DOUBLEARRAY = 13,
        NONDISCRETEMEASUREMENT = 14,
        LOCALIZEDSTRING = 15,
        LOCALIZEDSTRINGARRAY = 16
    };
    static constexpr std::uint8_t COUNT = 17;

    constexpr DataTypeImp() noexcept = default;
    constexpr DataTypeImp(Code code) noexcept : m_code(code) {}

    constexpr Code code() const noexcept { return m_code; }
    friend constexpr bool operator==(DataTypeImp, DataTypeImp) noexcept = default;

    /// The code's name in capitals ("STRINGARRAY").
    const String& toString() const;

private:
    Code m_code = STRING;
};

}  // namespace vrx
