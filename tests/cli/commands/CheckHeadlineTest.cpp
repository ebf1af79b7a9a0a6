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

TEST(CheckHeadlineTest, NamesTheDeviceThatIsMissing) {
    EXPECT_EQ(headlineOf("<device type='Fan' name='^Fan 1$' hwlocator='fan:1'/><device type='Battery'/>"),
              "Fan \"Fan 1\" (fan:1) is missing, and 1 more problem");
    EXPECT_EQ(headlineOf("<device type='MemoryModule'/><device type='MemoryModule'/><device type='MemoryModule'/>"),
              "MemoryModule is missing");
    EXPECT_EQ(headlineOf("<device type='Ethernet' name='^H.*n$' oslocator='eth2'/>"),
              "Ethernet pattern H.*n (eth2) is missing");
}

TEST(CheckHeadlineTest, SaysWhatIsDifferentAboutADeviceThatIsThere) {
    const std::string size = "<property key='Size' value='^16 GB$'/><property key='Speed'/>";
    EXPECT_EQ(headlineOf("<device type='MemoryModule' hwlocator='dimm:A2'>" + size + "</device>"),
              "MemoryModule \"M-16\" (dimm:A2) differs: Size: expected 16 GB, found 15.68 GB");
    EXPECT_EQ(
        headlineOf("<device type='MemoryModule'>" + size + "</device>"),
        "MemoryModule is missing; nearest is MemoryModule \"M-16\" (dimm:A1), Speed: expected any value, found no "
        "such property");
    EXPECT_EQ(headlineOf("<device type='Ethernet' name='^Crane$' hwlocator='pci:1'/>"),
              "Ethernet \"Crane\" (pci:1) differs: name: expected Crane, found Heron");
    EXPECT_EQ(headlineOf("<device type='Ethernet' hwlocator='pci:1' oslocator='eth2'/>"),
              "Ethernet \"Heron\" (pci:1) differs: OS locator: expected eth2, found eth0");
    EXPECT_EQ(headlineOf("<device type='Ethernet' name='^" + std::string(80, 'x') + "$' hwlocator='pci:1'/>"),
              "Ethernet \"" + std::string(80, 'x') + "\" (pci:1) differs: name: expected " + std::string(60, 'x') +
                  "..., found Heron");
}

TEST(CheckHeadlineTest, PassesOverWhatTheScriptSwitchesOff) {
    EXPECT_EQ(headlineOf("<device type='Ethernet' hwlocator='pci:1' oslocator='x'><property key='K'/></device>"
                         "<device type='Ethernet'/><device type='Ethernet'/><device type='Ethernet'/>",
                         " check-osLocators='false'"),
              "Ethernet \"Heron\" (pci:1) differs: K: expected any value, found no such property, and 1 more problem");
}

TEST(CheckHeadlineTest, TakesTheTwoSidesOfAChangedDeviceForOneProblem) {
    const std::string changed =
        "<device type='MemoryModule' hwlocator='dimm:A1'><property key='Size' value='^8 GB$'/></device>";
    EXPECT_EQ(headlineOf(changed + "<device type='MemoryModule' hwlocator='dimm:A2'/><fail-on-extra type='Memory'/>"),
              "MemoryModule \"M-16\" (dimm:A1) differs: Size: expected 8 GB, found 16 GB");
    EXPECT_EQ(headlineOf(changed + "<fail-on-extra type='Memory'/>"),
              "MemoryModule \"M-16\" (dimm:A1) differs: Size: expected 8 GB, found 16 GB, and 1 more problem");
}

TEST(CheckHeadlineTest, NamesThePartBeforeWhatSumsItUp) {
    const std::string sums =
        "<device type='Computer'><property key='K'/></device><device type='Memory' hwlocator='m'/>";
    EXPECT_EQ(headlineOf(sums + "<device type='Fan'/>"), "Fan is missing, and 2 more problems");
    EXPECT_EQ(headlineOf(sums + "<fail-on-extra type='Fan'/><fail-on-extra type='MemoryModule'/>"),
              "MemoryModule \"M-16\" (dimm:A1) is too many, and 3 more problems");
    EXPECT_EQ(headlineOf(sums), "Memory (m) is missing, and 1 more problem");
}

TEST(CheckHeadlineTest, NamesWhatIsTooManyOrForbidden) {
    EXPECT_EQ(headlineOf("<device type='Ethernet' hwlocator='pci:1'/><fail-on-extra type='Network'/>"),
              "Ethernet (eth1) is too many");
    EXPECT_EQ(headlineOf("<not><device type='Ethernet' name='^Heron$'/></not>"),
              "Ethernet \"Heron\" is there and must not be");
    EXPECT_EQ(headlineOf("<device type='Lamp' name='^L$'/>", "", {"--plain"}),
              "Lamp \"L\" cannot be found: that is no device type");
}

}  // namespace
}  // namespace vrx::cli
