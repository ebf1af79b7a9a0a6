#include "libMachine/ids/HardwareIds.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(HardwareIdsTest, findsWhatWasAskedForAmongNamesakes) {
    HardwareIds ids;
    ids.wantDevice(0x1d01, 0x0100);
    ids.wantDevice(0x1d02, 0x0200);
    ids.wantSubsystem(0x1d01, 0x0100, 0x1d02, 0x0007);
    ids.wantClass(0x020000);
    ids.wantClass(0x029900);
    ids.wantDevice(0x0004, 0x0001);
    ids.scan(
        "# comment\n"
        "\t0100  A device before any vendor\n"
        "1d00  Another Vendor\n"
        "\t0100  Another device of that number\n"
        "\t\t1d02 0007  Another subsystem\n"
        "1d01  Right Vendor \xC3\xA9\n"
        "\t00ff  Not asked for\n"
        "\t\t1d02 0007  Of another device\n"
        "\t0100  Right device  with two blanks\n"
        "\t\t1d02 0008  Wrong subsystem\n"
        "\t\t1d02 0007  Right subsystem\n"
        "R 04  No vendor of ours\n"
        "\t0001  Nor its device\n"
        "C 02  Network controller\n"
        "\t00  Ethernet controller\n"
        "\t\t00  An interface\n"
        "1d02  Last Vendor");
    EXPECT_EQ(ids.vendor(0x1d01), "Right Vendor \xC3\xA9");
    EXPECT_EQ(ids.device(0x1d01, 0x0100), "Right device  with two blanks");
    EXPECT_EQ(ids.subsystem(0x1d01, 0x0100, 0x1d02, 0x0007), "Right subsystem");
    EXPECT_EQ(ids.vendor(0x1d02), "Last Vendor");
    EXPECT_EQ(ids.device(0x1d02, 0x0200), "");
    EXPECT_EQ(ids.vendor(0x1d00), "") << "nobody asked";
    EXPECT_EQ(ids.vendor(0x0004), "");
    EXPECT_EQ(ids.device(0x0004, 0x0001), "");
    EXPECT_EQ(ids.className(0x020000), "Ethernet controller");
    EXPECT_EQ(ids.className(0x029900), "Network controller") << "the base class stands in";
}

}  // namespace
}  // namespace vrx
