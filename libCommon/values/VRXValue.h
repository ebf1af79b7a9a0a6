#pragma once

#include <cstdint>
#include <variant>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// A small variant value: what event variables hold and how numbers are printed.
///
///     event.setVariable(u"devices", VRXValue(std::uint32_t{12}));
///     VRXValue(0.5).toString();                          // "0.5"
class VRX_EXPORT VRXValue {
public:
    /// The nil value.
    VRXValue() noexcept = default;
    explicit VRXValue(bool value) : m_value(value) {}
    explicit VRXValue(std::int32_t value) : m_value(static_cast<std::int64_t>(value)) {}
    explicit VRXValue(std::uint32_t value) : m_value(static_cast<std::uint64_t>(value)) {}
    explicit VRXValue(std::int64_t value) : m_value(value) {}
    explicit VRXValue(std::uint64_t value) : m_value(value) {}
    explicit VRXValue(double value) : m_value(value) {}
    explicit VRXValue(String value) : m_value(std::move(value)) {}
    explicit VRXValue(const char16_t* text) : m_value(String(text)) {}
    explicit VRXValue(const void*) = delete;  ///< no other pointer is a value, least of all a truth value

    static const VRXValue& nilValue();

    bool isNil() const noexcept { return std::holds_alternative<std::monostate>(m_value); }

    /// The value as text: numbers in decimal (a double as its shortest text, see text/NumberText.h), booleans as
    /// "true" and "false", nil as the empty text. `format` selects a presentation; nil, the only one, is the plain
    /// form.
    String toString(const VRXValue& format = nilValue()) const;

private:
    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, String> m_value;
};

}  // namespace vrx
