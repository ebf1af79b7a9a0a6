#include "libSystemState/values/ValueImp.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "libCommon/error/StructuredException.h"
#include "libCommon/values/VRXValue.h"
#include "tests/libSystemState/TestDevices.h"

namespace vrx {
namespace {

template <typename M>
M measured(double number, const char16_t* unitText) {
    const std::optional<Unit> unit = Unit::lookupByString(unitText);
    return M(unit.value().type(), number, unit.value().magnitude());
}

struct TextForms {
    ValueImp value;
    const char* type;
    const char* text;
    const char* entries;  ///< joined with one blank
    std::size_t size;
};

TEST(ValueImpTest, hasTheTextFormsOfItsType) {
    const Array<String> texts = {u"a", u"", u"c"};
    const TextForms cases[] = {
        {ValueImp(std::uint32_t{4294967295u}), "UINT32", "4294967295", "4294967295", 1},
        {ValueImp(std::int32_t{-7}), "INT32", "-7", "-7", 1},
        {ValueImp(std::uint64_t{18446744073709551615u}), "UINT64", "18446744073709551615", "18446744073709551615", 1},
        {ValueImp(true), "BOOLEAN", "true", "true", 1},
        {ValueImp(2999.7), "DOUBLE", "2999.7", "2999.7", 1},
        {ValueImp(u"x y"), "STRING", "x y", "x y", 1},
        {ValueImp(DateTime(0)), "DATETIME", "1970-01-01T00:00:00Z", "1970-01-01T00:00:00Z", 1},
        {ValueImp(Percent{12.5}), "PERCENT", "12.5%", "12.5", 1},
        {ValueImp(texts), "STRINGARRAY", "a, , c", "a  c", 3},
        {ValueImp(Array<std::uint32_t>{1, 2}), "UINT32ARRAY", "1, 2", "1 2", 2},
        {ValueImp(Array<std::int32_t>{-1, 2}), "INT32ARRAY", "-1, 2", "-1 2", 2},
        {ValueImp(measured<DiscreteMeasurement>(500, u"GB")), "DISCRETEMEASUREMENT", "500 GB", "500 GB", 1},
        {ValueImp(Array<std::uint64_t>{}), "UINT64ARRAY", "", "", 0},
        {ValueImp(Array<double>{0.5, 2700}), "DOUBLEARRAY", "0.5, 2700", "0.5 2700", 2},
        {ValueImp(measured<NonDiscreteMeasurement>(3000, u"MHz")), "NONDISCRETEMEASUREMENT", "3000 MHz", "3000 MHz", 1},
        {ValueImp(LocalizedString{u"ja"}), "LOCALIZEDSTRING", "ja", "ja", 1},
        {ValueImp(LocalizedStringArray{texts}), "LOCALIZEDSTRINGARRAY", "a, , c", "a  c", 3}};
    static_assert(std::size(cases) == DataTypeImp::COUNT);
    for (std::size_t code = 0; code < std::size(cases); ++code) {
        const TextForms& expected = cases[code];
        SCOPED_TRACE(expected.type);
        EXPECT_EQ(expected.value.type().code(), code);
        EXPECT_EQ(expected.value.type().toString().toUtf8(), expected.type);
        EXPECT_EQ(expected.value.toString(true).toUtf8(), expected.text);
        const Array<String> entries = expected.value.toStringArray(false);
        EXPECT_EQ(test::joined(entries, [](const String& entry) { return entry; }), expected.entries);
        EXPECT_EQ(entries.size(), expected.size);
        EXPECT_EQ(expected.value.arraySize(), expected.size);
        EXPECT_EQ(expected.value.isArray(), std::string(expected.type).ends_with("ARRAY"));
    }
}

TEST(ValueImpTest, givesItsContentOnlyAsWhatItIs) {
    EXPECT_EQ(ValueImp(Percent{1.5}).valuePercent(), 1.5);
    EXPECT_EQ(ValueImp(std::int32_t{-3}).valueInt32(), -3);
    EXPECT_EQ(ValueImp(Array<std::int32_t>{4, -5}).getInt32InArray(1), -5);
    EXPECT_EQ(ValueImp(measured<DiscreteMeasurement>(3, u"GHz")).valueDiscreteMeasurement().value(UnitMagnitude()), 3);
    EXPECT_THROW(ValueImp(std::int32_t{1}).valueUint32(), StructuredException);
    EXPECT_THROW(ValueImp(1.5).valuePercent(), StructuredException);
    EXPECT_THROW(ValueImp(Array<std::uint32_t>{1}).getUint32InArray(1), StructuredException);

    EXPECT_EQ(*ValueImp(LocalizedString{u"ja"}).text(), u"ja");
    EXPECT_EQ(*ValueImp().text(), u"");
    EXPECT_EQ(ValueImp(Array<String>{u"a"}).text(), nullptr);
}

// A pointer converts to bool by itself, so each of these would be one.
static_assert(!std::is_constructible_v<ValueImp, const char*>);
static_assert(!std::is_constructible_v<ValueImp, String*>);
static_assert(!std::is_constructible_v<VRXValue, const char*>);
static_assert(std::is_constructible_v<ValueImp, StringView>);

}  // namespace
}  // namespace vrx
