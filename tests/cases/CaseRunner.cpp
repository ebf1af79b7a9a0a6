/// Runs every case of tests/cases, each as a test of its own name, and compares what the program did with tests/golden.
/// With --update the golden files are written instead; look at their difference before you keep it.
///
/// A case is a text file:
///
///     # what it shows
///     machine workshop.xml                    a machine of tests/machines or of the examples, given as machine.xml
///     file order.xml                          a script that cases share, of this folder
///     fault dimm:B3: 32" => 16"               makes faulty.xml of the machine, with that device changed: a text of it
///     fault psu:2: remove                     replaced, or all of it taken out
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
    if (path.has_parent_path()) {
        fs::create_directories(path.parent_path());
    }
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

/// A change of one device of the machine, as the case writes it.
struct Change {
    std::string place;
    std::string from;
    std::string to;  ///< with an empty `from` nothing is left of the device
};

struct Case {
    std::vector<std::string> runs;
    std::vector<Change> changes;
    std::vector<std::pair<std::string, std::string>> files;
};

void copyMachine(const std::string& name) {
    fs::path machine = dataFolder() / "machines" / name;
    if (!fs::exists(machine)) {
        machine = dataFolder().parent_path() / "examples" / name;
    }
    EXPECT_TRUE(fs::exists(machine)) << machine;
    fs::copy_file(machine, "machine.xml", fs::copy_options::overwrite_existing);
}

Change readChange(const std::string& text) {
    const std::size_t place = text.find(": ");
    const std::size_t arrow = text.find(" => ");
    EXPECT_NE(place, std::string::npos) << text;
    if (arrow == std::string::npos) {
        EXPECT_EQ(text.substr(place), ": remove");
        return {text.substr(0, place), "", ""};
    }
    return {text.substr(0, place), text.substr(place + 2, arrow - place - 2), text.substr(arrow + 4)};
}

void apply(const Change& change, std::string& machine) {
    static const std::string END = "</Device>\n";
    const std::size_t place = machine.find("hwLocator=\"" + change.place + "\"");
    ASSERT_NE(place, std::string::npos) << change.place;
    const std::size_t start = machine.rfind("<Device", place);
    const std::size_t end = machine.find(END, place) + END.size();
    if (change.from.empty()) {
        machine.erase(start, end - start);
        return;
    }
    const std::size_t at = machine.find(change.from, start);
    ASSERT_LT(at, end) << change.from;
    machine.replace(at, change.from.size(), change.to);
}

void makeFaulty(const std::vector<Change>& changes) {
    std::string machine = readFile("machine.xml");
    for (const Change& change : changes) {
        apply(change, machine);
    }
    writeFile("faulty.xml", machine);
}

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
            copyMachine(line.substr(8));
        } else if (line.starts_with("file ")) {
            fs::copy_file(dataFolder() / "cases" / line.substr(5), line.substr(5));
        } else if (line.starts_with("fault ")) {
            result.changes.push_back(readChange(line.substr(6)));
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
    if (!theCase.changes.empty()) {
        makeFaulty(theCase.changes);
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
