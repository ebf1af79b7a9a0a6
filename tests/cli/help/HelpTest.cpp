#include <gmock/gmock.h>

#include <sstream>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

const std::string MACHINE = VRX_TEST_DATA "/machines/workshop.xml";

class HelpTest : public testing::Test {
protected:
    int run(const std::vector<std::string>& arguments) {
        console.out.clear();
        console.err.clear();
        return runWith(console, arguments);
    }

    /// The words that `help` lists as commands below these.
    std::vector<std::string> listed(std::vector<std::string> words) {
        words.insert(words.begin(), "help");
        EXPECT_EQ(run(words), 0) << console.err;
        std::istringstream lines(console.out.substr(std::min(console.out.find("\nCommands:\n"), console.out.size())));
        std::vector<std::string> commands;
        for (std::string line, word; std::getline(lines, line) && !(line.empty() && !commands.empty());) {
            if (line.starts_with("  ") && line[2] != ' ' && std::istringstream(line) >> word) {
                commands.push_back(word);
            }
        }
        return commands;
    }

    void expectGoodHelp(const std::vector<std::string>& words) {
        const std::vector<std::string> below = listed(words);
        EXPECT_THAT(console.out, HasSubstr("\nExit status:\n  0  ")) << testing::PrintToString(words);
        EXPECT_THAT(console.out, HasSubstr("\nExamples:\n  ")) << testing::PrintToString(words);
        std::istringstream lines(console.out);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80u) << line;
        }
        for (const std::string& name : below) {
            std::vector<std::string> more = words;
            more.push_back(name);
            expectGoodHelp(more);
            ++count;
        }
    }

    std::string problemOf(const std::vector<std::string>& arguments) {
        EXPECT_EQ(run(arguments), 2);
        return console.err;
    }

    TestConsole console;
    int count = 0;
};

TEST_F(HelpTest, EveryCommandHasExamplesAndFitsATerminal) {
    expectGoodHelp({});
    EXPECT_GE(count, 12);
    run({"help", "parts", "parse"});
    const std::string help = console.out;
    EXPECT_EQ(run({"parts", "parse", "--help"}), 0);
    EXPECT_EQ(console.out, help);
    EXPECT_THAT(help, HasSubstr("Usage: vrx-inventory parts parse [OPTIONS] LIST\n"));
    EXPECT_EQ(run({}), 2);
    EXPECT_THAT(console.out, HasSubstr("Examples:\n"));
    EXPECT_EQ(console.err, "vrx-inventory: no command is given\n");
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_THAT(console.out, StartsWith("vrx-inventory "));
}

TEST_F(HelpTest, SaysWhatMayHaveBeenMeant) {
    EXPECT_THAT(problemOf({"chek", "a.xml"}),
                StartsWith("vrx-inventory: \"chek\" is no command; did you mean \"check\"? ("));
    EXPECT_THAT(problemOf({"parse", "a.xml"}), HasSubstr("did you mean \"parts parse\"?"));
    EXPECT_THAT(problemOf({"help", "parts", "pars"}), HasSubstr("did you mean \"parse\"?"));
    EXPECT_THAT(problemOf({"check", "--stat", "a.xml"}), HasSubstr("--stat is no option; did you mean \"--state\"?"));
    EXPECT_THAT(problemOf({"show", "--prop"}), HasSubstr("did you mean \"--properties\"?"));
    EXPECT_THAT(problemOf({"--state", MACHINE, "show"}), HasSubstr("--state must stand behind the command"));
    EXPECT_THAT(problemOf({"show", "--format", "jsn"}),
                AllOf(HasSubstr("\"jsn\" is none of text, json, "), HasSubstr("; did you mean \"json\"?")));
    EXPECT_THAT(problemOf({"show", "--log-level", "warn"}), HasSubstr("did you mean \"warning\"?"));
    EXPECT_THAT(problemOf({"convert", "a", "--from", "lshw"}), HasSubstr("none of sysinfo, lshw-xml"));
}

TEST_F(HelpTest, KnowsAMachineThatStandsWithoutItsOption) {
    const std::string hint = "did you mean \"--state " + MACHINE + "\"?";
    EXPECT_THAT(problemOf({"show", MACHINE}), HasSubstr(hint));
    EXPECT_THAT(problemOf({"check", "golden.xml", MACHINE}), HasSubstr(hint));
    EXPECT_THAT(problemOf({"show", "away.xml"}), HasSubstr("did you mean \"--state away.xml\"?"));
    EXPECT_THAT(problemOf({"show", "/dev/null"}), HasSubstr("did you mean \"--device /dev/null\"?"));
    EXPECT_EQ(problemOf({"lint", "a.xml", VRX_TEST_DATA "/README.md"}).find("did you mean"), std::string::npos);
}

}  // namespace
}  // namespace vrx::cli
