/// No memory is not a verdict: whichever allocation of a check fails, the program ends with the right answer or says
/// that it has no memory. Each trial is a process of its own; VRX_MEMORY_TRIALS says how many there are for a check.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int status = 0;  ///< of the system's wait
    std::string firstLine;
    std::string errors;
};

std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

class MemoryTest : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(m_folder); }
    void TearDown() override { fs::remove_all(m_folder); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name) << text;
        return m_folder / name;
    }

    Outcome run(const std::vector<std::string>& arguments, unsigned long failing) const {
        const pid_t child = fork();
        if (child == 0) {
            start(arguments, failing);
        }
        Outcome outcome;
        waitpid(child, &outcome.status, 0);
        const std::string output = read(m_folder / "out");
        outcome.firstLine = output.substr(0, output.find('\n'));
        outcome.errors = read(m_folder / "err");
        return outcome;
    }

    unsigned long countAllocations(const std::vector<std::string>& arguments) const {
        const std::string errors = run(arguments, 0).errors;
        const std::size_t at = errors.rfind("allocations: ");
        return at == errors.npos ? 0 : std::stoul(errors.substr(at + 13));
    }

    void tryAll(const std::vector<std::string>& arguments, int status) const {
        const Outcome whole = run(arguments, 0);
        ASSERT_EQ(WEXITSTATUS(whole.status), status) << whole.errors;
        const unsigned long allocations = countAllocations(arguments);
        ASSERT_GT(allocations, 100UL) << whole.errors;
        const char* const asked = std::getenv("VRX_MEMORY_TRIALS");
        const unsigned long trials = std::min(allocations, asked == nullptr ? 40UL : std::stoul(asked));
        for (unsigned long trial = 0; trial < trials; ++trial) {
            const unsigned long failing = 1 + trial * allocations / trials;
            const Outcome outcome = run(arguments, failing);
            if (outcome.errors.find("AddressSanitizer: CHECK failed") != std::string::npos) {
                continue;  // it was the sanitizer's own allocation, when a thread began
            }
            SCOPED_TRACE("allocation " + std::to_string(failing) + " of " + std::to_string(allocations));
            ASSERT_TRUE(WIFEXITED(outcome.status)) << outcome.status << outcome.errors;
            if (WEXITSTATUS(outcome.status) == 4) {
                EXPECT_THAT(outcome.errors, testing::HasSubstr("out of memory"));
            } else {
                EXPECT_EQ(WEXITSTATUS(outcome.status), status) << outcome.errors;
                EXPECT_EQ(outcome.firstLine, whole.firstLine);
            }
        }
    }

private:
    [[noreturn]] void start(const std::vector<std::string>& arguments, unsigned long failing) const {
        dup2(open((m_folder / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open((m_folder / "err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        setenv("VRX_FAIL_ALLOCATION", std::to_string(failing).c_str(), 1);
        std::vector<char*> argv{const_cast<char*>(VRX_FAILING_PROGRAM)};
        for (const std::string& argument : arguments) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        execv(VRX_FAILING_PROGRAM, argv.data());
        _exit(127);
    }

    const fs::path m_folder = fs::path(testing::TempDir()) / ("vrx-memory-" + std::to_string(getpid()));
};

constexpr const char* MACHINE =
    "<SysInfo><Device type='Fan' name='Fan (1)' hwLocator='fan:1'><property key='Speed' value='900' units='RPM'/>"
    "</Device><Device type='Storage' name='Disk' hwLocator='bay:1'><property key='Size' value='500' units='GB'/>"
    "<property key='Removable' value='true'/></Device></SysInfo>";

TEST_F(MemoryTest, ChecksThatPassAndFailKeepTheirVerdict) {
    const std::string machine = write("m.xml", MACHINE);
    const auto script = [this](const char* content) {
        return write("s.xml", std::string("<inventory-check>") + content + "</inventory-check>");
    };
    // An extra device that only the rule's content makes one.
    tryAll({"check",
            script("<device type='Fan'/><fail-on-extra type='Storage'><property key='Size' value='^5.0 GB$'/>"
                   "</fail-on-extra>"),
            "--state", machine},
           1);
    // A forbidden device that only a pattern finds.
    tryAll({"check", script("<not><device type='Fan' name='^F.n .1.$'/></not>"), "--state", machine}, 1);
    // Alternatives, ranges and groups that all have to be decided.
    tryAll({"check",
            script("<or><device type='Battery'/><device type='Fan'><and><property key='Speed' "
                   "value='^VRXRRANGE[800-1000] RPM$'/><not><property key='Speed' value='^1.*'/></not></and>"
                   "</device></or><fail-on-extra type='Storage'><property key='Removable' value='^f.*'/>"
                   "</fail-on-extra>"),
            "--state", machine, "--format", "json"},
           0);
    tryAll({"check-device", "<property key='Size' value='^[0-9]+ TB$'/>", "--device", "bay:1|gen-os-loc1", "--state",
            machine},
           1);
}

}  // namespace
