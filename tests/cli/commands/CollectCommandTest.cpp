#include <gmock/gmock.h>

#include "tests/cli/TestConsole.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx::cli {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class CollectCommandTest : public testing::Test {
protected:
    int run(const std::vector<std::string>& arguments) {
        console.out.clear();
        console.err.clear();
        return runWith(console, arguments);
    }

    TestConsole console;
};

TEST_F(CollectCommandTest, recordsASavedMachineInParts) {
    const SavedMachine machine("laptop");
    EXPECT_EQ(run({"collect", "--root", machine.folder(), "--exclude", "sensors,Battery", "--log-level", "off"}), 0);
    EXPECT_THAT(console.out, HasSubstr("hwLocator=\"power:AC\""));
    EXPECT_THAT(console.out, Not(HasSubstr("type=\"Battery\"")));
    EXPECT_THAT(console.out, Not(HasSubstr("Sensor\" name=")));
    EXPECT_THAT(console.out, HasSubstr("<UnreadSource source=\"sources sensors\" reason=\"not asked for\">"));
    EXPECT_EQ(run({"collect", "--root", machine.folder(), "--source", "power", "--all-categories"}), 0);
    EXPECT_THAT(console.out, HasSubstr("\"battery:BAT0\""));
    EXPECT_THAT(console.out, HasSubstr("\"Discharging\""));
    EXPECT_EQ(run({"collect", "--root", machine.folder(), "--anonymize", "--source", "power"}), 0);
    EXPECT_THAT(console.out, Not(HasSubstr("1234")));
}

TEST_F(CollectCommandTest, refusesNamesThatItDoesNotKnow) {
    EXPECT_EQ(run({"collect", "--exclude", "sensors,Batery"}), 2);
    EXPECT_EQ(console.err,
              "vrx-inventory: --exclude: \"Batery\" is neither a source nor a device type; did you mean "
              "\"Battery\"?\n");
    EXPECT_EQ(run({"collect", "--root", "/nowhere"}), 2);
    EXPECT_EQ(run({"collect", "--smbios", "/nowhere"}), 2);
    EXPECT_EQ(run({"collect", "--list-sources"}), 0);
    EXPECT_THAT(console.out, StartsWith("system      the machine as a whole\n"));
}

TEST_F(CollectCommandTest, saysWhenThereIsNothing) {
    const SavedMachine machine;
    EXPECT_EQ(run({"collect", "--root", machine.folder()}), 3);
    EXPECT_THAT(console.err, HasSubstr("neither /sys nor /proc"));
}

}  // namespace
}  // namespace vrx::cli
