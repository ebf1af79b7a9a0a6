#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/time/DateTime.h"
#include "libCommon/values/Measurement.h"
#include "libSystemState/values/DataTypeImp.h"

namespace vrx {

/// Types that exist to tell a value's type apart from another with the same content.
struct Percent {
    double value = 0;
    friend bool operator==(const Percent&, const Percent&) = default;
};
struct LocalizedString {
    String text;
};
struct LocalizedStringArray {
    Array<String> texts;
};

/// A typed value. Its type is that of what it was made from.
///
///     ValueImp(u"4096").type() == DataTypeImp::STRING;   // a literal is a text
///     ValueImp(std::uint32_t{4096}).toString(false);     // "4096"
///     ValueImp(Array<String>{u"avx", u"sse"}).toString(false);  // "avx, sse"
class VRX_EXPORT ValueImp {
public:
    /// An empty string.
    ValueImp() : m_value(String()) {}

    explicit ValueImp(String value) : m_value(std::move(value)) {}
    explicit ValueImp(const char16_t* text) : m_value(String(text)) {}
    explicit ValueImp(const void*) = delete;  ///< no other pointer is a value, least of all a BOOLEAN
    explicit ValueImp(Array<String> value) : m_value(std::move(value)) {}
    explicit ValueImp(DiscreteMeasurement value) : m_value(value) {}
    explicit ValueImp(NonDiscreteMeasurement value) : m_value(value) {}
    explicit ValueImp(std::uint32_t value) : m_value(value) {}
    explicit ValueImp(std::int32_t value) : m_value(value) {}
    explicit ValueImp(std::uint64_t value) : m_value(value) {}
    explicit ValueImp(bool value) : m_value(value) {}
    explicit ValueImp(double value) : m_value(value) {}
    explicit ValueImp(Percent value) : m_value(value) {}
    explicit ValueImp(DateTime value) : m_value(value) {}
    explicit ValueImp(LocalizedString value) : m_value(std::move(value)) {}
    explicit ValueImp(LocalizedStringArray value) : m_value(std::move(value)) {}
    explicit ValueImp(Array<std::uint32_t> value) : m_value(std::move(value)) {}
    explicit ValueImp(Array<std::int32_t> value) : m_value(std::move(value)) {}
    explicit ValueImp(Array<std::uint64_t> value) : m_value(std::move(value)) {}
    explicit ValueImp(Array<double> value) : m_value(std::move(value)) {}

    const DataTypeImp& type() const noexcept;

    /// The value as one text: numbers in decimal (doubles as their shortest text), "true"/"false", ISO 8601, a percent
    /// with "%", a measurement as number, blank, unit; arrays joined with ", ". The flag selects localised text where a
    /// library has some; here both give the same.
    String toString(bool localized) const;

    /// One entry per array entry, one entry for a scalar. A percent gives its number alone.
    Array<String> toStringArray(bool localized) const;

    /// The text itself when the value is a STRING or LOCALIZEDSTRING, else null: spares `toString`'s copy.
    const String* text() const noexcept;

    /// Number of entries of an array value; 1 for a scalar.
    std::size_t arraySize() const noexcept;
    bool isArray() const noexcept;

    /// Typed getters. Requires: the value is of that type.
    std::uint32_t valueUint32() const;
    std::uint64_t valueUint64() const;
    std::int32_t valueInt32() const;
    double valueDouble() const;
    double valuePercent() const;
    const DiscreteMeasurement& valueDiscreteMeasurement() const;
    const NonDiscreteMeasurement& valueNonDiscreteMeasurement() const;
    std::uint32_t getUint32InArray(std::size_t index) const;
    std::int32_t getInt32InArray(std::size_t index) const;

private:
    /// The alternatives stand in the order of the type codes, so that the index is the code.
    std::variant<std::uint32_t, std::int32_t, std::uint64_t, bool, double, String, DateTime, Percent, Array<String>,
                 Array<std::uint32_t>, Array<std::int32_t>, DiscreteMeasurement, Array<std::uint64_t>, Array<double>,
                 NonDiscreteMeasurement, LocalizedString, LocalizedStringArray>
        m_value;
};

}  // namespace vrx
