#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string DATA = VRX_TEST_DATA "/data/convert/";

std::string read(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

class ConvertCommandTest : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(m_folder); }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::string pathOf(const std::string& name) const { return m_folder / name; }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(pathOf(name), std::ios::binary) << text;
        return pathOf(name);
    }

    int run(const std::vector<std::string>& arguments) {
        console.out.clear();
        console.err.clear();
        return runWith(console, arguments);
    }

    /// Converts twice, generates a script of the recording, and checks recording and conversion with it.
    void expectRoundTrip(const std::string& path) {
        ASSERT_EQ(run({"convert", path, "-o", pathOf("one.xml")}), 0) << path << console.err;
        ASSERT_EQ(run({"convert", path, "-o", pathOf("two.xml")}), 0) << path << console.err;
        EXPECT_EQ(read(pathOf("one.xml")), read(pathOf("two.xml"))) << path;
        ASSERT_EQ(run({"generate", "--state", path, "-o", pathOf("script.xml")}), 0) << path << console.err;
        EXPECT_EQ(run({"check", pathOf("script.xml"), "--state", path}), 0) << path << console.out;
        EXPECT_EQ(run({"check", pathOf("script.xml"), "--state", pathOf("one.xml")}), 0) << path << console.out;
    }

    TestConsole console;

private:
    std::filesystem::path m_folder = std::filesystem::temp_directory_path() / "vrxConvertCommandTest";
};

TEST_F(ConvertCommandTest, roundTripsOfAllFormats) {
    for (const auto& entry : std::filesystem::directory_iterator(DATA)) {
        expectRoundTrip(entry.path());
    }
}

TEST_F(ConvertCommandTest, sharedMachinesConvertAndPassTheirOwnChecks) {
    const std::filesystem::path folder = VRX_TEST_DATA "/../../shared/machines/lshw";
    if (!std::filesystem::is_directory(folder)) {
        GTEST_SKIP() << "no recordings of other people's machines in " << folder;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        expectRoundTrip(entry.path());
    }
}

TEST_F(ConvertCommandTest, saysWhatWasRecognisedAndDamaged) {
    EXPECT_EQ(run({"convert", DATA + "workstation.lshw.xml"}), 0);
    EXPECT_THAT(console.out, HasSubstr("hwLocator=\"dimm:DIMM_A1\""));
    EXPECT_THAT(console.out, Not(HasSubstr("key=\"Driver\"")));
    EXPECT_THAT(console.err, HasSubstr("workstation.lshw.xml: warning: modules or disks with the serial number of "
                                       "another one: 1 (first: pci:0000:00:17.0/ata:3)\n"));
    EXPECT_THAT(console.err, HasSubstr("workstation.lshw.xml: lshw XML, 21 devices\n"));
    EXPECT_EQ(run({"convert", DATA + "workstation.lshw.xml", "--all-categories", "--log-level", "error"}), 0);
    EXPECT_THAT(console.out, HasSubstr("key=\"Driver\""));
    EXPECT_THAT(console.err, Not(HasSubstr("warning")));
}

TEST_F(ConvertCommandTest, refusesWhatIsNoRecordingWithOneLine) {
    const std::string empty = write("empty.xml", "<list><node class='x'");
    EXPECT_EQ(run({"show", "--state", empty}), 2);
    EXPECT_THAT(console.err, HasSubstr("empty.xml: this lshw XML holds no devices\n"));
    EXPECT_EQ(run({"convert", write("other.txt", "hello")}), 2);
    EXPECT_THAT(console.err, HasSubstr("other.txt: this is no XML; expected a recording"));
    EXPECT_EQ(run({"convert", pathOf("absent")}), 2);
    EXPECT_THAT(console.err, HasSubstr("absent: No such file or directory"));
    EXPECT_EQ(run({"convert", DATA + "blade.lshw.json", "--from", "yaml"}), 2);
    EXPECT_THAT(console.err, HasSubstr("\"yaml\" is none of sysinfo, lshw-xml"));
    EXPECT_EQ(run({"convert", DATA + "blade.lshw.json", "--from", "hwloc-xml"}), 2);
    EXPECT_THAT(console.err, HasSubstr("this hwloc XML holds no devices"));
}

TEST_F(ConvertCommandTest, hidesIdentities) {
    const std::string workshop = VRX_TEST_DATA "/machines/workshop.xml";
    for (const std::string& path : {DATA + "workstation.lshw.xml", pathOf("plain.xml")}) {
        EXPECT_EQ(run({"convert", path, "--anonymize"}), 0) << console.err;
        EXPECT_THAT(console.out, HasSubstr("SerialNumber"));
        EXPECT_THAT(console.out, Not(HasSubstr("EW-0042")));
        ASSERT_EQ(run({"convert", DATA + "workstation.lshw.xml", "-o", pathOf("plain.xml")}), 0);
    }
    ASSERT_EQ(run({"convert", workshop, "-o", pathOf("one.xml")}), 0) << console.err;
    ASSERT_EQ(run({"convert", pathOf("one.xml"), "-o", pathOf("two.xml")}), 0) << console.err;
    EXPECT_EQ(read(pathOf("one.xml")), read(pathOf("two.xml"))) << "SysInfo is normalised";
}

}  // namespace
}  // namespace vrx::cli
