#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

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

TEST_F(CollectCommandTest, recordsIntoAFolderWhatIsNew) {
    const SavedMachine machine("laptop");
    const std::string folder = testing::TempDir() + "vrx-into-" + std::to_string(getpid());
    const auto record = [&](const std::string& excluded) {
        return run(
            {"collect", "--root", machine.folder(), "--exclude", excluded, "--log-level", "off", "--into", folder});
    };
    ASSERT_EQ(record("sensors"), 0);
    EXPECT_THAT(console.err, HasSubstr("new recording: " + folder + "/"));
    std::vector<std::filesystem::path> files{std::filesystem::directory_iterator(folder), {}};
    ASSERT_EQ(files.size(), 1U);
    EXPECT_THAT(files[0].filename().string(), testing::EndsWith("_20260102T030405Z.xml"));
    const auto earlier = std::filesystem::path(folder) /
                         files[0].filename().string().replace(files[0].filename().string().rfind('_') + 1, 4, "2025");
    std::filesystem::rename(files[0], earlier);

    EXPECT_EQ(record("sensors"), 0);
    EXPECT_THAT(console.err, HasSubstr("nothing has changed since " + earlier.string()));
    EXPECT_FALSE(std::filesystem::exists(files[0]));
    EXPECT_EQ(record("sensors,Battery"), 0);
    EXPECT_TRUE(std::filesystem::exists(files[0]));

    EXPECT_EQ(record("sensors"), 0);  // within the same second
    EXPECT_THAT(console.err, HasSubstr("_20260102T030405Z-2.xml"));
    EXPECT_EQ(record("sensors"), 0);
    EXPECT_THAT(console.err, HasSubstr("nothing has changed since " + folder));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 3);
    EXPECT_EQ(run({"collect", "--root", machine.folder(), "--into", folder, "-o", "x.xml"}), 2);
    EXPECT_EQ(run({"collect", "--root", machine.folder(), "--into", earlier.string()}), 2);  // no folder
    std::filesystem::remove_all(folder);
}

TEST_F(CollectCommandTest, saysWhenThereIsNothing) {
    const SavedMachine machine;
    EXPECT_EQ(run({"collect", "--root", machine.folder()}), 3);
    EXPECT_THAT(console.err, HasSubstr("neither /sys nor /proc"));
}

}  // namespace
}  // namespace vrx::cli
