/// Runs every case of tests/cases, each as a test of its own name, and compares what the program did with tests/golden.
/// With --update the golden files are written instead; look at their difference before you keep it.
///
/// A case is a text file:
///
///     # what it shows
///     machine workshop.xml                    a machine of tests/machines, given to the program as machine.xml
///     $ check script.xml --state machine.xml  a run; single quotes hold an argument together
///     --- script.xml                          a file, up to the next such line
///     <inventory-check>...
///
/// Runs happen in a folder that holds the files and nothing else.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/cli/TestConsole.h"

namespace {

namespace fs = std::filesystem;
using vrx::cli::TestConsole;

bool isUpdating = false;

const fs::path& dataFolder() {
    static const fs::path folder(VRX_TEST_DATA);
    return folder;
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void writeFile(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

struct Case {
    std::vector<std::string> runs;
    std::vector<std::pair<std::string, std::string>> files;
};

Case readCase(const fs::path& path) {
    Case result;
    std::istringstream lines(readFile(path));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("--- ")) {
            result.files.emplace_back(line.substr(4), "");
        } else if (!result.files.empty()) {
            result.files.back().second += line + "\n";
        } else if (line.starts_with("$ ")) {
            result.runs.push_back(line.substr(2));
        } else if (line.starts_with("machine ")) {
            const fs::path machine = dataFolder() / "machines" / line.substr(8);
            EXPECT_TRUE(fs::exists(machine)) << machine;
            fs::copy_file(machine, "machine.xml", fs::copy_options::overwrite_existing);
        } else {
            EXPECT_TRUE(line.empty() || line.starts_with("#")) << path << ": " << line;
        }
    }
    return result;
}

std::vector<std::string> splitArguments(const std::string& run) {
    std::vector<std::string> arguments;
    bool isQuoted = false;
    bool isOpen = false;
    for (const char character : run) {
        if (character == '\'') {
            isQuoted = !isQuoted;
        } else if (character == ' ' && !isQuoted) {
            isOpen = false;
            continue;
        }
        if (!isOpen) {
            arguments.emplace_back();
            isOpen = true;
        }
        if (character != '\'') {
            arguments.back() += character;
        }
    }
    return arguments;
}

std::string transcriptOf(const std::string& run) {
    TestConsole console;
    const int status = vrx::cli::runWith(console, splitArguments(run));
    return "$ " + run + "\n" + console.out + (console.err.empty() ? "" : "--- standard error\n" + console.err) +
           "--- exit status " + std::to_string(status) + "\n\n";
}

class CaseTest : public testing::Test {
public:
    explicit CaseTest(std::string name) : m_name(std::move(name)) {}

protected:
    void SetUp() override {
        m_folder = fs::path(testing::TempDir()) / ("vrx-case-" + std::to_string(getpid()) + "-" + m_name);
        fs::create_directories(m_folder);
        fs::current_path(m_folder);
    }
    void TearDown() override {
        fs::current_path("/");
        fs::remove_all(m_folder);
    }
    void TestBody() override;

private:
    std::string m_name;
    fs::path m_folder;
};

void CaseTest::TestBody() {
    const Case theCase = readCase(dataFolder() / "cases" / (m_name + ".case"));
    ASSERT_FALSE(theCase.runs.empty());
    for (const auto& [name, text] : theCase.files) {
        writeFile(name, text);
    }
    std::string transcript;
    for (const std::string& run : theCase.runs) {
        transcript += transcriptOf(run);
    }
    const fs::path golden = dataFolder() / "golden" / (m_name + ".txt");
    if (isUpdating) {
        writeFile(golden, transcript);
        return;
    }
    EXPECT_EQ(transcript, readFile(golden));
}

/// The names of the files of a folder, in order, without that ending; files with another ending are left out.
std::vector<std::string> namesIn(const fs::path& folder, std::string_view ending) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ending) {
            names.push_back(entry.path().stem());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

void registerCases() {
    for (const std::string& name : namesIn(dataFolder() / "cases", ".case")) {
        std::string testName = name;
        std::replace(testName.begin(), testName.end(), '-', '_');  // which --gtest_filter takes for "but not"
        testing::RegisterTest("CaseTest", testName.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [name]() -> CaseTest* { return new CaseTest(name); });
    }
}

TEST(GoldenFileTest, EachBelongsToACase) {
    if (isUpdating) {
        GTEST_SKIP() << "golden files are being written";
    }
    EXPECT_EQ(namesIn(dataFolder() / "golden", ".txt"), namesIn(dataFolder() / "cases", ".case"));
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    registerCases();
    isUpdating = std::find(argv, argv + argc, std::string("--update")) != argv + argc;
    return RUN_ALL_TESTS();
}
