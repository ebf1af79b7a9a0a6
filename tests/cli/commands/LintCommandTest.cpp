#include <gmock/gmock.h>
#include <unistd.h>

#include <boost/json.hpp>
#include <filesystem>
#include <fstream>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

class LintCommandTest : public testing::Test {
protected:
    ~LintCommandTest() override { std::filesystem::remove(m_path); }

    int lint(const std::string& text, const std::vector<std::string>& options = {}) {
        std::ofstream(m_path) << text;
        std::vector<std::string> arguments{"lint", m_path};
        arguments.insert(arguments.end(), options.begin(), options.end());
        console = TestConsole();
        return runWith(console, arguments);
    }

    const std::string m_path = testing::TempDir() + "vrx-lint-" + std::to_string(getpid()) + ".xml";
    TestConsole console;
};

TEST_F(LintCommandTest, PrintsOneLineForEachFindingAndTheCounts) {
    EXPECT_EQ(lint("<inventory-check>\n  <not/><device type='Fan'/><testset/>\n</inventory-check>"), 1);
    EXPECT_EQ(console.out, m_path + ":2:3: warning: an empty <not> asks for nothing; remove it [empty-group]\n" +
                               m_path +
                               ":2:29: note: a <testset> is passed over with everything in it; it may be left out "
                               "[ignored-testset]\n" +
                               m_path + ": 0 errors, 1 warning, 1 note\n");
    EXPECT_EQ(lint("<inventory-check><device type='Fan'/><testset/></inventory-check>"), 0);
}

TEST_F(LintCommandTest, PrintsJson) {
    EXPECT_EQ(lint("<inventory-check>\n<device type='\033'/></inventory-check>", {"--format", "json"}), 1);
    const boost::json::value report = boost::json::parse(console.out);
    EXPECT_EQ(report.at("file").as_string(), m_path);
    EXPECT_EQ(report.at("errors").as_int64(), 1);
    EXPECT_EQ(report.at("warnings").as_int64() + report.at("notes").as_int64(), 0);
    const boost::json::value& finding = report.at("diagnostics").at(0);
    EXPECT_EQ(finding.at("row").as_int64(), 2);
    EXPECT_EQ(finding.at("column").as_int64(), 1);
    EXPECT_EQ(finding.at("severity").as_string(), "error");
    EXPECT_EQ(finding.at("rule").as_string(), "unknown-type");
    EXPECT_NE(finding.at("message").as_string().find("%u001B"), boost::json::string::npos);
}

TEST_F(LintCommandTest, RefusesWhatItCannotJudgeInOneLine) {
    EXPECT_EQ(lint("<a>\n<b></a>"), 2);
    EXPECT_THAT(console.err, testing::StartsWith("vrx-inventory: " + m_path + ":2:"));
    EXPECT_EQ(lint("<SysInfo/>"), 2);
    EXPECT_THAT(console.err, testing::HasSubstr(": this is a recording of a machine (SysInfo XML); "));
    EXPECT_EQ(runWith(console, {"lint", m_path + ".none"}), 2);
    EXPECT_THAT(console.err, testing::HasSubstr(".none: No such file or directory; expected"));
    EXPECT_THAT(console.out, testing::IsEmpty());
}

}  // namespace
}  // namespace vrx::cli
