#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

constexpr const char* MACHINE = R"(<SysInfo>
<Device type="MemoryModule" name="M-16" hwLocator="dimm:A1" osLocator=""><property key="Size" value="16" units="GB"/></Device>
<Device type="MemoryModule" name="M-16" hwLocator="dimm:A2" osLocator=""><property key="Size" value="15.68" units="GB"/></Device>
<Device type="Ethernet" name="Heron" hwLocator="pci:1" osLocator="eth0"/>
<Device type="Ethernet" name="" hwLocator="" osLocator="eth1"/>
</SysInfo>)";

/// The first line of the report of a check of that script, without the verdict.
std::string headlineOf(const std::string& content, const std::string& switches = "",
                       const std::vector<std::string>& options = {}) {
    const auto folder = std::filesystem::path(testing::TempDir()) / ("vrx-headline-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "s.xml") << "<inventory-check" << switches << ">" << content << "</inventory-check>";
    std::ofstream(folder / "m.xml") << MACHINE;
    TestConsole console;
    std::vector<std::string> usage{"check", folder / "s.xml", "--state", folder / "m.xml"};
    usage.insert(usage.end(), options.begin(), options.end());
    EXPECT_EQ(runWith(console, usage), 1) << console.out;
    std::filesystem::remove_all(folder);
    return console.out.substr(0, console.out.find('\n')).substr(console.out.find("  ") + 2);
}

TEST(CheckHeadlineTest, NamesTheFirstFaultAndCountsTheOthers) {
    EXPECT_EQ(headlineOf("<device type='Fan' name='^Fan 1$' hwlocator='fan:1'/><device type='Battery'/>"),
              "Battery is missing, and 1 more fault");
    EXPECT_EQ(headlineOf("<device type='Ethernet' name='^H.*n$' oslocator='eth2'/>"),
              "eth2: Ethernet pattern H.*n is missing");
    EXPECT_EQ(headlineOf("<device type='MemoryModule' hwlocator='dimm:A2'><property key='Size' value='^16 GB$'/>"
                         "<property key='Speed'/></device>"),
              "dimm:A2: MemoryModule is 15.68 GB, expected 16 GB, and 1 more difference");
    EXPECT_EQ(headlineOf("<device type='Ethernet' hwlocator='pci:1' oslocator='/sys/x'/>"),
              "pci:1: Ethernet OS locator is eth0, expected /sys/x");
    EXPECT_EQ(headlineOf("<device type='Lamp' name='^L$'/>", "", {"--plain"}),
              "Lamp \"L\" cannot be found: that is no device type");
}

TEST(CheckHeadlineTest, IsCutAtAWord) {
    const std::string name = "a rather long name that goes on and on until nobody wants to read any more of it";
    EXPECT_EQ(headlineOf("<device type='Fan' name='^" + name + "$' hwlocator='fan:1'/><device type='Fan'/>"),
              "fan:1: Fan \"a rather long name that goes on and on until nobody wants..., and 1 more fault");
}

TEST(CheckHeadlineTest, PassesOverWhatTheScriptSwitchesOff) {
    EXPECT_EQ(headlineOf("<device type='Ethernet' hwlocator='pci:1' oslocator='x'><property key='K'/></device>"
                         "<device type='Ethernet'/><device type='Ethernet'/><device type='Ethernet'/>",
                         " check-osLocators='false'"),
              "pci:1: Ethernet has no K, and 1 more fault");
}

TEST(CheckHeadlineTest, TakesTheTwoSidesOfAChangedDeviceForOneFault) {
    EXPECT_EQ(
        headlineOf("<device type='MemoryModule' hwlocator='dimm:A1'><property key='Size' value='^8 GB$'/></device>"
                   "<fail-on-extra type='Memory'/>"),
        "dimm:A1: MemoryModule is 16 GB, expected 8 GB, and 1 more fault");
}

}  // namespace
}  // namespace vrx::cli
