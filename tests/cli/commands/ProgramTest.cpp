#include "cli/program/Program.h"

#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <filesystem>
#include <fstream>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string MACHINE = VRX_TEST_DATA "/machines/workshop.xml";

/// A folder of its own for each test.
class ProgramTest : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(m_folder); }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string pathOf(const std::string& name) const { return m_folder / name; }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(pathOf(name)) << text;
        return pathOf(name);
    }

    std::string read(const std::string& name) const {
        std::ifstream file(pathOf(name));
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    int run(const std::vector<std::string>& arguments) {
        console.out.clear();
        console.err.clear();
        return runWith(console, arguments);
    }

    TestConsole console;

private:
    std::filesystem::path m_folder =
        std::filesystem::path(testing::TempDir()) / ("vrx-program-" + std::to_string(getpid()));
};

TEST_F(ProgramTest, AnswersWrongUsageInOneLine) {
    const std::vector<std::string> usages[] = {{"--loud"},
                                               {"chek"},
                                               {"check"},
                                               {"check", "a.xml", "b.xml"},
                                               {"check", "a.xml", "--loud"},
                                               {"check", "a.xml", "--state"},
                                               {"check", "a.xml", "--format", "yaml"},
                                               {"show", "--log-level", "loud"},
                                               {"parts"},
                                               {"match", "a"},
                                               {"match", "", "a"},
                                               {"check", ""},
                                               {"check", "a.xml", "--state", ""},
                                               {"check", "a.xml", "--state="},
                                               {"check", "a.xml", "-o", ""},
                                               {"check", "a.xml", "--log-file", ""},
                                               {"show", "--format", ""},
                                               {"show", "--type", ""},
                                               {"generate", "--filter", ""},
                                               {"collect", "--root", ""},
                                               {"collect", "--exclude", ""},
                                               {"parts", "generate", "a.xml", "--base", ""}};
    for (const std::vector<std::string>& usage : usages) {
        EXPECT_EQ(run(usage), 2) << testing::PrintToString(usage);
        EXPECT_THAT(console.out, IsEmpty());
        EXPECT_THAT(console.err, StartsWith("vrx-inventory: "));
        EXPECT_THAT(console.err, EndsWith(" --help)\n"));
        EXPECT_EQ(std::count(console.err.begin(), console.err.end(), '\n'), 1) << console.err;
    }
}

TEST_F(ProgramTest, WritesResultsToAFileInOneStep) {
    const std::string script = write("s.xml", "<inventory-check><device type='Fan'/></inventory-check>");
    const std::string report = write("report.json", "old");
    EXPECT_EQ(run({"check", script, "--state", MACHINE, "--format", "json", "-o", report, "--annotated",
                   pathOf("annotated.xml")}),
              1);
    EXPECT_THAT(console.out, IsEmpty());
    const boost::json::value json = boost::json::parse(read("report.json"));
    EXPECT_FALSE(json.at("passed").as_bool());
    EXPECT_EQ(json.at("findings").at(0).at("location").as_string(), "(1:18)");
    EXPECT_THAT(read("annotated.xml"), HasSubstr("        <error>No device of type: Fan</error>\n"));
    const auto entries = std::filesystem::directory_iterator(std::filesystem::path(report).parent_path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 3);
}

TEST_F(ProgramTest, RefusesToWriteOverWhatItReads) {
    const std::string text = "<inventory-check><device type='Fan'/></inventory-check>";
    const std::string script = write("s.xml", text);
    const std::string machine = write("m.xml", "<SysInfo><Device type='Fan'/></SysInfo>");
    std::filesystem::create_hard_link(script, pathOf("hard"));
    std::filesystem::create_symlink(machine, pathOf("soft"));
    for (const std::vector<std::string>& usage : {std::vector<std::string>{"check", script, "-o", pathOf("hard")},
                                                  {"check", script, "--annotated", script},
                                                  {"show", "--state", machine, "--log-file", pathOf("soft")},
                                                  {"check-device", "@" + script, "--device", "a", "-o", script},
                                                  {"generate", "--filter", machine, "-o", machine}}) {
        EXPECT_EQ(run(usage), 2) << testing::PrintToString(usage);
        EXPECT_THAT(console.err, HasSubstr(" would be read and overwritten; name another file"));
    }
    EXPECT_EQ(read("s.xml"), text);
    EXPECT_EQ(run({"show", "--state", machine, "-o", "/dev/stdout"}), 0);
    EXPECT_THAT(console.out, HasSubstr("Fan"));
}

TEST_F(ProgramTest, FailsWhenStandardOutputCannotBeWritten) {
    console.outError = "No space left on device";
    for (const std::vector<std::string>& usage :
         {std::vector<std::string>{"show", "--state", MACHINE}, {"--version"}}) {
        EXPECT_EQ(run(usage), 2);
        EXPECT_EQ(console.err, "vrx-inventory: cannot write to standard output: No space left on device\n");
    }
}

TEST_F(ProgramTest, EscapesWhatFilesHold) {
    const std::string script =
        write("s.xml", "<inventory-check><device type='Fan' name='\033[31m'/><x y='\u202E'/></inventory-check>");
    EXPECT_EQ(run({"check", script, "--state", MACHINE, "--plain"}), 1);
    EXPECT_THAT(console.out, HasSubstr("Fan pattern \\u001B[31m"));
    EXPECT_THAT(console.out, HasSubstr("unknown element <x y=\"\\u202E\"/>"));
    EXPECT_EQ(console.out.find_first_of("\033\u202E"), std::string::npos);
}

TEST_F(ProgramTest, SaysNothingOfTheMachineWhenItRefusesTheScript) {
    const std::string damaged = write("m.xml", "<SysInfo><Device type='Fan'>");
    const std::string broken = write("broken.xml", "<inventory-check><device type='Fan'></inventory-check>");
    const std::string mistaken = write("mistaken.xml", "<inventory-check><device typ='Fan'/></inventory-check>");
    for (const char* const threads : {"1", "2"}) {
        for (const std::string& script : {broken, mistaken}) {
            EXPECT_EQ(run({"check", script, "--state", damaged, "--threads", threads}), 2);
            EXPECT_THAT(console.err, HasSubstr(script));
            EXPECT_EQ(console.err.find(damaged), std::string::npos) << console.err;
        }
        const std::string good = write("s.xml", "<inventory-check><device type='Fan'/></inventory-check>");
        EXPECT_EQ(run({"check", good, "--state", damaged, "--threads", threads}), 2);
        EXPECT_THAT(console.err, HasSubstr(damaged));
    }
    EXPECT_EQ(run({"check", broken, "--threads", "0"}), 2);
    EXPECT_THAT(console.err, HasSubstr("--threads"));
}

TEST_F(ProgramTest, KeepsTheEnginesLinesForThoseWhoAsk) {
    const std::string script = write("s.xml", "<inventory-check><device type='Fan'/></inventory-check>");
    const std::string machine =
        write("m.xml",
              "<SysInfo><Device type='Fan' name='F'><property key='S' value='1' units='fathoms'/>"
              "</Device></SysInfo>");
    EXPECT_EQ(run({"check", script, "--state", machine}), 0);
    EXPECT_EQ(console.err, "vrx-inventory: error: Could not find UnitType for string: fathoms\n");
    EXPECT_EQ(run({"check", script, "--state", machine, "--log-level", "off"}), 0);
    EXPECT_THAT(console.err, IsEmpty());
    EXPECT_EQ(run({"check", script, "--state", machine, "--log-level", "info"}), 0);
    EXPECT_THAT(console.err, HasSubstr("vrx-inventory: info: First Pass: totalCombinations = 1\n"));
}

TEST_F(ProgramTest, ShowsProgressOnATerminalAndWipesItAway) {
    const std::string script = write("s.xml",
                                     "<inventory-check><or><device type='Ethernet'/><device type='Storage'/></or>"
                                     "<device type='Fan'/></inventory-check>");
    console.isWatched = true;
    console.tick = std::chrono::seconds(1);
    EXPECT_EQ(run({"check", script, "--state", MACHINE}), 1);
    EXPECT_EQ(
        console.err,
        "\r\033[K0 tried of 2 combinations or fewer\r\033[K1 tried of 2 combinations or fewer, 0.3 a second\r\033[K");
    console.isWatched = false;
    EXPECT_EQ(run({"check", script, "--state", MACHINE}), 1);
    EXPECT_THAT(console.err, IsEmpty());
}

TEST_F(ProgramTest, GivesNoAnswerWhenAPatternTakesTooMuchWork) {
    const std::string value(60, 'a');
    const std::string machine = write("m.xml", "<SysInfo><Device type='Fan' name='" + value + "b'/></SysInfo>");
    const std::string device = "<device type='Fan' name='^(a+)+$'/>";
    const std::string asked = write("s.xml", "<inventory-check>" + device + "</inventory-check>");
    const std::string forbidden = write("n.xml", "<inventory-check><not>" + device + "</not></inventory-check>");
    EXPECT_EQ(run({"check", asked, "--state", machine}), 3);
    EXPECT_THAT(console.out, StartsWith("UNDETERMINED"));
    EXPECT_EQ(run({"check", forbidden, "--state", machine, "--format", "json", "--log-level", "off"}), 3);
    EXPECT_FALSE(boost::json::parse(console.out).at("passed").as_bool());
    EXPECT_EQ(run({"match", "^(a+)+$", value + "b"}), 3);
}

}  // namespace
}  // namespace vrx::cli
