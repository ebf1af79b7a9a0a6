#include "libMachine/ids/Edid.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/libMachine/ids/ExampleEdid.h"

namespace vrx {
namespace {

TEST(EdidTest, tellsWhatTheMonitorIs) {
    const std::optional<Edid> edid = decodeEdid(exampleEdid() + std::string(128, 'x'));  // an extension is not read
    ASSERT_TRUE(edid);
    EXPECT_EQ(edid->vendorId, "XQA");
    EXPECT_EQ(edid->productCode, 0x1234U);
    EXPECT_EQ(edid->model, "Example 27Q");
    EXPECT_EQ(edid->serialNumber, "XQ000123456");
    EXPECT_EQ(edid->year, 2023U);
    EXPECT_EQ(edid->week, 14U);
    EXPECT_EQ(edid->width, 60U);
    EXPECT_EQ(edid->height, 34U);
    EXPECT_EQ(edid->nativeWidth, 2560U);
    EXPECT_EQ(edid->nativeHeight, 1440U);
    EXPECT_NEAR(edid->nativeRate, 59.95, 0.01);
}

TEST(EdidTest, takesWhatPanelsHaveInstead) {
    std::string bytes = exampleEdid();
    bytes[75] = '\xFE';  // free text, and no text with a serial number
    bytes[93] = '\x10';
    bytes[16] = '\xFF';  // the year of the model
    bytes[22] = '\0';    // a ratio, no size
    bytes[71] = '\x9A';  // interlaced
    const std::optional<Edid> edid = decodeEdid(withChecksum(bytes));
    ASSERT_TRUE(edid);
    EXPECT_EQ(edid->model, "Example 27Q");
    EXPECT_EQ(edid->serialNumber, "287454020") << "the number";
    EXPECT_EQ(edid->week, 0U);
    EXPECT_EQ(edid->width, 0U);
    EXPECT_EQ(edid->nativeHeight, 2880U);
}

TEST(EdidTest, damageIsNotBelieved) {
    const std::string good = exampleEdid();
    std::mt19937 random(20261121);
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_FALSE(decodeEdid(good.substr(0, size))) << size;
    }
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string bad = good;
        bad[at] = static_cast<char>(bad[at] + 1 + random() % 255);
        EXPECT_FALSE(decodeEdid(bad)) << at;
    }
    for (int round = 0; round < 2000; ++round) {  // whatever stands there is read within bounds
        std::string other = good;
        for (int change = 0; change < 6; ++change) {
            other[8 + random() % 119] = static_cast<char>(random());
        }
        const std::optional<Edid> edid = decodeEdid(withChecksum(other));
        ASSERT_TRUE(edid);
        EXPECT_LE(edid->model.size(), 13U);
        EXPECT_GE(edid->nativeRate, 0);
    }
}

}  // namespace
}  // namespace vrx
