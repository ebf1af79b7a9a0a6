#include <gmock/gmock.h>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string MACHINE = VRX_TEST_DATA "/machines/workshop.xml";

class CompletionTest : public testing::Test {
protected:
    /// What shells get for the last of these words.
    std::string answer(std::vector<std::string> words) {
        words.insert(words.begin(), {"__complete", "words"});
        return ask(words);
    }

    std::string inBash(const std::string& line, const std::string& replaced) {
        return ask({"__complete", "bash", line, replaced});
    }

    std::string ask(const std::vector<std::string>& question) {
        console.out.clear();
        EXPECT_EQ(runWith(console, question), 0);
        return console.out;
    }

    TestConsole console;
};

TEST_F(CompletionTest, KnowsCommandsOptionsAndTheirValues) {
    EXPECT_EQ(answer({"check-"}), "words\ncheck-device\tCheck one device of a machine\n");
    EXPECT_EQ(answer({"parts", "p"}), "words\nparse\tRead a parts list and print its parts\n");
    EXPECT_EQ(answer({"help", "parts", "g"}),
              "words\ngenerate\tFind which parts a machine holds, and how many of each\n");
    EXPECT_THAT(answer({"show", "--for"}), StartsWith("words\n--format\t"));
    EXPECT_EQ(answer({"show", "--log-level", ""}), "words\ndebug\ninfo\nwarning\nerror\noff\n");
    EXPECT_EQ(answer({"show", "--properties", "--format=x"}), "words\n--format=xml\n");
    EXPECT_EQ(answer({"completion", "z"}), "words\nzsh\n");
    EXPECT_EQ(answer({"check", "a.xml", "--output", "ta"}), "words\ntap:\n");
    EXPECT_THAT(answer({"collect", "--source", "pci,us"}), StartsWith("words\npci,usb\t"));
    EXPECT_THAT(answer({"collect", "--exclude", "pci,NvmeD"}), StartsWith("words\npci,NvmeDrive\t"));
    EXPECT_THAT(answer({"collect", "--source", "NvmeD"}), "words\n");
    EXPECT_EQ(answer({"check", "a.xml", "--warning-kinds=moved,sw"}), "words\n--warning-kinds=moved,swapped\n");
    EXPECT_EQ(answer({"show", "--", "--for"}), "words\n");
}

TEST_F(CompletionTest, LeavesFilesToTheShell) {
    EXPECT_EQ(answer({"check", ""}), "xml\n");
    EXPECT_EQ(answer({"check", "golden.xml", "--state", "m"}), "files\n");
    EXPECT_EQ(answer({"collect", "--root", ""}), "folders\n");
}

TEST_F(CompletionTest, KnowsTheMachine) {
    const std::string device = answer({"show", "--state", MACHINE, "--device", "DIMM_A"});
    EXPECT_THAT(device, HasSubstr("\nDIMM_A1\tMemoryModule"));
    EXPECT_THAT(device, Not(HasSubstr("DIMM_B")));
    EXPECT_THAT(answer({"check-device", "x", "--state=" + MACHINE, "--device", "slot-0|"}),
                StartsWith("words\nslot-0|/dev/nvme0n1\t"));
    EXPECT_EQ(answer({"show", "--state", MACHINE, "--type", "Mem"}),
              "words\nMemory\t3 devices\nMemoryModule\t3 devices\n");
    EXPECT_THAT(answer({"show", "--state", "away.xml", "--type", "Fa"}), HasSubstr("\nFan\n"));
    EXPECT_EQ(answer({"show", "--state", "away.xml", "--device", ""}), "words\n");
}

TEST_F(CompletionTest, SpeaksAsBashDoes) {
    const std::string show = "vrx-inventory show --state " + MACHINE + " --device ";
    EXPECT_EQ(inBash(show + "0000:3b:00.1", "00.1"), "words\n00.1\n");
    EXPECT_THAT(inBash(show + "hero", "hero"), "words\n");
    EXPECT_THAT(inBash(show + "'Heron", "Heron"), HasSubstr("\nHeron 10G\n"));
    EXPECT_THAT(inBash(show + "Heron\\ ", "Heron\\ "), HasSubstr("\nHeron\\ 10G\n"));
    EXPECT_EQ(inBash("vrx-inventory show --format=x", "x"), "words\nxml\n");
    EXPECT_THAT(inBash("vrx-inventory  ch", "ch"), HasSubstr("\ncheck\n"));
}

}  // namespace
}  // namespace vrx::cli
