#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <filesystem>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string MACHINE = VRX_TEST_DATA "/machines/workshop.xml";

class ShowCommandTest : public testing::Test {
protected:
    int show(const std::vector<std::string>& options) {
        std::vector<std::string> arguments{"show", "--state", MACHINE};
        arguments.insert(arguments.end(), options.begin(), options.end());
        console.out.clear();
        console.err.clear();
        return runWith(console, arguments);
    }

    std::size_t countInJson(std::vector<std::string> options) {
        options.insert(options.end(), {"--format", "json"});
        return show(options) == 0 ? boost::json::parse(console.out).at("devices").as_array().size() : 0;
    }

    TestConsole console;
};

TEST_F(ShowCommandTest, ChoosesDevicesByTypeOrByAnythingThatNamesThem) {
    EXPECT_EQ(countInJson({"--type", "disk"}), 3u);
    EXPECT_EQ(countInJson({"--device", "slot-0|/dev/nvme0n1"}), 1u);
    EXPECT_EQ(countInJson({"--device", "DIMM_A2"}), 1u);
    EXPECT_EQ(countInJson({"--device", "/dev/sdb"}), 1u);
    EXPECT_EQ(countInJson({"--device", "heron 10g"}), 2u);
    EXPECT_EQ(countInJson({"--device", "heron 10g", "--type", "Storage"}), 0u);
    EXPECT_EQ(show({"--type", "SSD", "--properties"}), 0);
    EXPECT_THAT(console.out, HasSubstr("2 of 10 devices\n\nSolidStateDrive  Flint S1 500GB\n"));
    EXPECT_EQ(show({"--type", "NIC", "--format", "xml"}), 0);
    EXPECT_THAT(console.out, HasSubstr("hwLocator=\"0000:3b:00.1\""));
    EXPECT_THAT(console.out, Not(HasSubstr("Storage")));
}

TEST_F(ShowCommandTest, SaysWhatMayHaveBeenMeant) {
    EXPECT_EQ(show({"--type", "DIM"}), 2);
    EXPECT_EQ(
        console.err,
        "vrx-inventory: --type: \"DIM\" is no device type; did you mean \"DIMM\"? (see vrx-inventory show --help)\n");
    EXPECT_EQ(show({"--device", "DIMM_A3"}), 2);
    EXPECT_THAT(console.err, HasSubstr("has no device \"DIMM_A3\"; expected a guid, a locator or a name, near ones are "
                                       "\"DIMM_A1\", \"DIMM_A2\", \"DIMM_B1\"\n"));
}

TEST_F(ShowCommandTest, RefusesComparisonsThatCannotBeMade) {
    EXPECT_EQ(show({"--changed-from", MACHINE, "--format", "xml"}), 2);
    EXPECT_EQ(show({"--changed-from", MACHINE, "--device", "DIMM_A3"}), 2);
    EXPECT_EQ(runWith(console, {"show", "--state", "-", "--changed-from", "-"}), 2);
    EXPECT_EQ(show({"--changed-from", MACHINE}), 0);
}

TEST_F(ShowCommandTest, DrawsTheTreeWhereLinesCanBeShown) {
    console.format.hasLines = true;
    console.format.isTerminal = true;
    console.format.width = 60;
    EXPECT_EQ(show({}), 0);
    EXPECT_THAT(console.out, HasSubstr("\nSystem              chassis       Workshop WS-4\n"
                                       "│                                 Serial WS4-0017\n"
                                       "├─ Processor        CPU0          Corvid C-8 2.70GHz\n"
                                       "│                                 8 cores, 2700 MHz\n"
                                       "├─ MemoryModule     DIMM_A1       MM-16G  16 GB\n"));
    EXPECT_THAT(console.out, HasSubstr("\n└─ Ethernet         0000:3b:00.1  Heron 10G\n"
                                       "                                  10 Gbit/s,\n"));
}

}  // namespace
}  // namespace vrx::cli
