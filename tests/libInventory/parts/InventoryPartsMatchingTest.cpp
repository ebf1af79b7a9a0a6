#include <gtest/gtest.h>

#include "libInventory/parts/PartComparison.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using PartSpec = Inventory::PartSpec;

PartSpec part(const String& name, const Array<String>& devices = {}) {
    PartSpec spec(name, u"", u"", u"", u"");
    spec.devices = devices;
    return spec;
}

TEST(PartComparisonTest, setsCountNamesAndListsCompareDevicesInOrder) {
    const PartSpec a = part(u"A");
    const PartSpec b = part(u"B", {u"1", u"2"});
    EXPECT_FALSE(samePartSet({a, a, b}, {a, b, b}));
    EXPECT_FALSE(samePartSet({a}, {a, b}));
    EXPECT_TRUE(samePartSet({a, b}, {b, a}));
    EXPECT_TRUE(samePartSet({}, {}));
    EXPECT_TRUE(containsPart({b, a}, a));
    EXPECT_TRUE(containsPart({b}, part(u"B", {u"1", u"2"})));
    EXPECT_FALSE(containsPart({b}, part(u"B", {u"2", u"1"})));
    EXPECT_FALSE(containsPart({b}, part(u"b", {u"1", u"2"})));
    EXPECT_FALSE(containsPart({}, a));
}

TEST(MatchPartsTest, answersBeforeTheExtraDeviceCheck) {
    StateManager store;
    addDevice(store, "Fan", "one", "h1");
    addDevice(store, "Fan", "two", "h2");
    Inventory::DeviceToPartsTable table;
    Array<Inventory::DeviceSpec> extra{Inventory::DeviceSpec(u"kept", u"", u"", u"")};

    EXPECT_FALSE(Inventory::matchParts(u"<inventory-check>", table, &extra, &store));
    EXPECT_EQ(extra.size(), 1U);

    const String rule = u"<fail-on-extra type='Fan'/></inventory-check>";
    EXPECT_TRUE(Inventory::matchParts(u"<inventory-check><part name='P'><device type='Fan' name='one'/></part>" + rule,
                                      table, &extra, &store));
    ASSERT_EQ(extra.size(), 1U);
    EXPECT_EQ(extra[0].name, u"two");
    ASSERT_NE(table.find(u"h1|"), nullptr);
    EXPECT_EQ((*table.find(u"h1|"))[0].name, u"P");

    EXPECT_FALSE(Inventory::matchParts(u"<inventory-check><device type='Cache'/>" + rule, table, &extra, &store));
    EXPECT_EQ(extra.size(), 2U);
}

}  // namespace
}  // namespace vrx::test
