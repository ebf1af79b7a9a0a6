#include "libSystemState/values/ValueImp.h"

#include <array>

#include "libCommon/Assertion.h"

/// The value's type is the index of its alternative: the variant lists them in the order of the type codes. Text forms
/// are in ValueImpText.cpp.

namespace vrx {

namespace {

constexpr auto TYPES = [] {
    std::array<DataTypeImp, DataTypeImp::COUNT> types;
    for (std::uint8_t code = 0; code < DataTypeImp::COUNT; ++code) {
        types[code] = DataTypeImp(static_cast<DataTypeImp::Code>(code));
    }
    return types;
}();

/// The content of a value that must be of type T.
template <typename T, typename Variant>
const T& held(const Variant& value) {
    const T* content = std::get_if<T>(&value);
    VRX_ASSERT_TEXT(content != nullptr, "the value is of the type that is asked for");
    return *content;
}

struct EntryCount {
    template <typename T>
    std::size_t operator()(const Array<T>& entries) const noexcept {
        return entries.size();
    }
    std::size_t operator()(const LocalizedStringArray& entries) const noexcept { return entries.texts.size(); }
    template <typename T>
    std::size_t operator()(const T&) const noexcept {
        return 1;
    }
};

}  // namespace

const DataTypeImp& ValueImp::type() const noexcept {
    static_assert(std::variant_size_v<decltype(m_value)> == DataTypeImp::COUNT);
    return TYPES[m_value.index()];
}

std::size_t ValueImp::arraySize() const noexcept { return std::visit(EntryCount(), m_value); }

bool ValueImp::isArray() const noexcept {
    switch (type().code()) {
        case DataTypeImp::STRINGARRAY:
        case DataTypeImp::UINT32ARRAY:
        case DataTypeImp::INT32ARRAY:
        case DataTypeImp::UINT64ARRAY:
        case DataTypeImp::DOUBLEARRAY:
        case DataTypeImp::LOCALIZEDSTRINGARRAY: return true;
        default: return false;
    }
}

const String* ValueImp::text() const noexcept {
    if (const auto* localized = std::get_if<LocalizedString>(&m_value)) {
        return &localized->text;
    }
    return std::get_if<String>(&m_value);
}

std::uint32_t ValueImp::valueUint32() const { return held<std::uint32_t>(m_value); }
std::uint64_t ValueImp::valueUint64() const { return held<std::uint64_t>(m_value); }
std::int32_t ValueImp::valueInt32() const { return held<std::int32_t>(m_value); }
double ValueImp::valueDouble() const { return held<double>(m_value); }
double ValueImp::valuePercent() const { return held<Percent>(m_value).value; }

const DiscreteMeasurement& ValueImp::valueDiscreteMeasurement() const { return held<DiscreteMeasurement>(m_value); }

const NonDiscreteMeasurement& ValueImp::valueNonDiscreteMeasurement() const {
    return held<NonDiscreteMeasurement>(m_value);
}

std::uint32_t ValueImp::getUint32InArray(std::size_t index) const { return held<Array<std::uint32_t>>(m_value)[index]; }
std::int32_t ValueImp::getInt32InArray(std::size_t index) const { return held<Array<std::int32_t>>(m_value)[index]; }

}  // namespace vrx
