#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/json.hpp>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/cli/TestConsole.h"

namespace vrx::cli {
namespace {

namespace fs = std::filesystem;
namespace json = boost::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string read(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

const char* const SCRIPT = R"(<inventory-check><device type="Processor"/>
<device type="MemoryModule" hwlocator="DIMM_A1"><property key="Size" value="^16 GB$"/></device></inventory-check>)";

class FleetCommandTest : public testing::Test {
protected:
    void SetUp() override {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder / "machines" / "more");
        write("script.xml", SCRIPT);
        good("machines/a.xml", "S-1");
        good("machines/b.xml", "S-2", 8);
        write("machines/c.xml", "<SysInfo><Device type=");
        good("machines/more/d.xml", "S-4", 8);
        write("machines/.hidden", "no recording");
    }
    void TearDown() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name) const { return m_folder / name; }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        fs::last_write_time(path(name), fs::file_time_type::clock::now() - std::chrono::hours(24 * 3650));
    }

    /// A machine with a module of that size.
    void good(const std::string& name, const std::string& serial, int gigabytes = 16) const {
        write(name, "<SysInfo><Device type=\"System\" name=\"M\"><property key=\"Serial\" value=\"" + serial +
                        "\"/></Device><Device type=\"Processor\" name=\"P\"/><Device type=\"MemoryModule\" name=\"MM\" "
                        "hwLocator=\"DIMM_A1\"><property key=\"Size\" value=\"" +
                        std::to_string(gigabytes) + "\" units=\"GB\"/><property key=\"SerialNumber\" value=\"" +
                        serial + "\"/></Device></SysInfo>");
    }

    int run(std::vector<std::string> arguments) {
        console.out.clear();
        console.err.clear();
        return runWith(console, arguments);
    }
    int fleet(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"fleet"});
        return run(arguments);
    }

    /// What standard output holds, a line each.
    std::vector<json::object> results() const {
        std::vector<json::object> all;
        std::istringstream lines(console.out);
        for (std::string line; std::getline(lines, line);) {
            all.push_back(json::parse(line).as_object());
        }
        return all;
    }
    std::string member(std::size_t line, const char* name) const {
        return std::string(results().at(line).at(name).as_string());
    }
    std::vector<std::string> verdicts() const {
        std::vector<std::string> all;
        for (const json::object& each : results()) {
            const std::string file(each.at("file").as_string());
            all.push_back(file.substr(file.find_last_of('/') + 1) + " " + std::string(each.at("verdict").as_string()));
        }
        return all;
    }

    TestConsole console;
    fs::path m_folder = fs::temp_directory_path() / "vrxFleetCommandTest";
};

TEST_F(FleetCommandTest, saysOfEachMachineWhatCheckSays) {
    EXPECT_EQ(fleet({path("script.xml"), path("machines"), "--format", "json", "-j", "3"}), 1);
    EXPECT_THAT(verdicts(), ElementsAre("a.xml passed", "b.xml failed", "c.xml unreadable", "d.xml failed"));
    for (const json::object& each : results()) {
        const std::string file(each.at("file").as_string());
        const int status = run({"check", path("script.xml"), "--state", file, "--format", "json"});
        const json::object checked = json::parse(console.out).as_object();
        if (status == 2) {
            EXPECT_EQ(each.at("verdict"), "unreadable");
            EXPECT_THAT(console.err, HasSubstr(std::string(each.at("headline").as_string())));
            continue;
        }
        for (const char* const member : {"verdict", "headline", "faults", "script"}) {
            EXPECT_EQ(each.at(member), checked.at(member)) << file;
        }
        for (const auto& [name, value] : each.at("machine").as_object()) {
            EXPECT_EQ(value, checked.at("machine").at(name)) << file;
        }
    }
}

TEST_F(FleetCommandTest, readsArchivesAsIfTheyWereFolders) {
    ASSERT_EQ(std::system(("cd " + m_folder.string() +
                           " && tar -czf all.tgz machines && tar -cf all.tar machines && "
                           "gzip -k machines/a.xml && head -c 300 all.tgz >half.tgz")
                              .c_str()),
              0);
    for (const char* const archive : {"all.tgz", "all.tar"}) {
        fleet({path("script.xml"), path(archive), "--format", "json"});
        std::vector<std::string> found = verdicts();
        std::ranges::sort(found);
        EXPECT_THAT(found, ElementsAre("a.xml passed", "b.xml failed", "c.xml unreadable", "d.xml failed")) << archive;
        EXPECT_THAT(console.out, HasSubstr(path(archive) + ":machines/a.xml"));
    }
    EXPECT_EQ(fleet({path("script.xml"), path("machines/a.xml.gz"), "--format", "json"}), 0);
    EXPECT_EQ(member(0, "file"), path("machines/a.xml.gz"));
    EXPECT_EQ(fleet({path("script.xml"), path("half.tgz"), path("machines/a.xml"), "--format", "json"}), 3);
    EXPECT_EQ(verdicts().back(), "a.xml passed");
    EXPECT_THAT(console.out, HasSubstr("damaged archive"));
}

TEST_F(FleetCommandTest, takesWhatIsNoRecordingForAResultThatSaysWhy) {
    for (const char* const folder : {"mixed", "mixed/empty", "hollow", "server", "server/Systems"}) {
        fs::create_directory(path(folder));
    }
    good("mixed/odd \xFF\n,\"<b>.xml", "S-1");
    write("mixed/README.txt", "Recordings of the third rack");
    write("mixed/zero", "");
    write("hollow/.hidden", "");
    write("server/Systems/index.json", R"({"@odata.id": "/redfish/v1/Systems", "Members": []})");
    ASSERT_EQ(
        std::system(("cd " + m_folder.string() + " && tar -cf hollow.tar hollow && tar -cf s.tar server").c_str()), 0);
    EXPECT_EQ(fleet({path("script.xml"), path("mixed"), path("hollow"), path("hollow.tar"), path("server"),
                     path("s.tar"), path("away.xml"), "--format", "json", "--csv", path("all.csv")}),
              3);
    EXPECT_THAT(verdicts(), ElementsAre("README.txt unreadable", "odd \uFFFD\n,\"<b>.xml passed", "zero unreadable",
                                        "hollow unreadable", "hollow.tar unreadable", "server unreadable",
                                        "s.tar unreadable", "away.xml unreadable"));
    EXPECT_THAT(member(0, "headline"), HasSubstr("expected a recording"));
    EXPECT_EQ(member(3, "headline"), "there is no recording in this folder");
    EXPECT_EQ(member(4, "headline"), "there is no recording in this archive");
    EXPECT_THAT(member(5, "headline"), HasSubstr("Redfish"));
    EXPECT_THAT(member(6, "headline"), HasSubstr("Redfish"));
    EXPECT_THAT(member(7, "headline"), HasSubstr("No such file"));
    EXPECT_THAT(read(path("all.csv")), HasSubstr("odd \uFFFD\\n,\"\"<b>.xml\",passed"));
}

TEST_F(FleetCommandTest, givesUpWhereCombinationsTakeTooLong) {
    const std::string alternatives = R"(<or><device type="Processor"/><device type="MemoryModule"/></or>)";
    write("many.xml", "<inventory-check>" + alternatives + alternatives + alternatives + "</inventory-check>");
    for (const char* const limit : {"--max-combinations=1", "--timeout=0.000001"}) {
        EXPECT_EQ(fleet({path("many.xml"), path("machines/a.xml"), "--format", "json", limit}), 3) << limit;
        EXPECT_EQ(member(0, "verdict"), "undetermined");
        EXPECT_THAT(member(0, "headline"), HasSubstr("8 combinations, which are too many to try"));
    }
    EXPECT_EQ(fleet({path("many.xml"), path("machines/a.xml"), "--max-combinations=100"}), 1);
    EXPECT_EQ(fleet({path("all.jsonl"), "--merge", "--timeout=1"}), 2);
}

TEST_F(FleetCommandTest, endsWithTheWorst) {
    const std::string script = path("script.xml");
    EXPECT_EQ(fleet({script, path("machines/a.xml")}), 0);
    EXPECT_EQ(fleet({script, path("machines/a.xml"), path("machines/b.xml")}), 1);
    EXPECT_EQ(fleet({script, path("machines/a.xml"), path("machines/c.xml")}), 3);
    EXPECT_EQ(fleet({script, path("machines/a.xml"), path("away.xml")}), 3);
    EXPECT_EQ(fleet({script, path("machines/b.xml"), "--nagios"}), 2);
    EXPECT_THAT(
        console.out,
        HasSubstr("FLEET CRITICAL - 1 failed; most often (1): wrong MemoryModule at DIMM_A1: Size | machines=1"));
    EXPECT_EQ(fleet({script, path("machines/c.xml"), "--nagios"}), 3);
    fs::create_directory(path("empty"));
    EXPECT_EQ(fleet({script, path("empty")}), 3);
    EXPECT_EQ(fleet({script}), 2);
    EXPECT_EQ(fleet({}), 2);
    EXPECT_EQ(fleet({path("machines/a.xml"), path("machines/a.xml")}), 2) << "a recording for a script";
    write("mistaken.xml", "<inventory-check><devce/></inventory-check>");
    EXPECT_EQ(fleet({path("mistaken.xml"), path("machines/a.xml")}), 2);
    EXPECT_EQ(fleet({path("mistaken.xml"), path("machines/a.xml"), "--plain"}), 0);
    EXPECT_EQ(fleet({script, script}), 3) << "a script is no machine";
}

TEST_F(FleetCommandTest, takesTheScriptThatIsMet) {
    write("other.xml",
          "<inventory-check><device type=\"MemoryModule\"><property key=\"Size\" value=\"^8 GB$\"/></device>"
          "</inventory-check>");
    const std::vector<std::string> machines{path("machines/a.xml"), path("machines/b.xml")};
    EXPECT_EQ(fleet({machines[0], machines[1], "--format", "json", "--any", path("script.xml"), path("other.xml")}), 0);
    EXPECT_EQ(member(0, "script"), path("script.xml"));
    EXPECT_EQ(member(1, "script"), path("other.xml"));
    write("far.xml", "<inventory-check><device type=\"Fan\"/><device type=\"Battery\"/></inventory-check>");
    EXPECT_EQ(fleet({machines[1], "--format", "json", "--any", path("far.xml"), path("script.xml")}), 1);
    EXPECT_EQ(member(0, "script"), path("script.xml")) << "the one that comes nearest";
    EXPECT_EQ(fleet({"--any", path("script.xml"), machines[0]}), 2) << "nothing is left to check";
}

TEST_F(FleetCommandTest, goesOnWhereARunWasInterrupted) {
    const std::vector<std::string> machines{path("script.xml"), path("machines"), "--csv", path("fleet.csv")};
    const auto with = [&machines](std::vector<std::string> more) {
        more.insert(more.begin(), machines.begin(), machines.end());
        return more;
    };
    EXPECT_EQ(fleet(with({"--json", path("all.jsonl")})), 1);
    const std::string all = read(path("all.jsonl"));
    const std::string csv = read(path("fleet.csv"));
    const std::string begun = all.substr(0, all.find('\n', all.find('\n') + 1) + 20);  // two lines and a piece
    std::ofstream(path("begun.jsonl")) << begun;
    fs::remove(path("machines/a.xml"));
    good("machines/a.xml", "S-1", 8);  // whoever looks at it again sees a fault
    EXPECT_EQ(fleet(with({"--resume", path("begun.jsonl"), "--json", path("begun.jsonl")})), 1);
    EXPECT_EQ(read(path("begun.jsonl")), all);
    EXPECT_EQ(read(path("fleet.csv")), csv);
    EXPECT_EQ(fleet(with({"--resume", path("begun.jsonl"), "--json", path("other.jsonl")})), 1);
    EXPECT_EQ(read(path("other.jsonl")), all);
    fs::last_write_time(path("machines/a.xml"), fs::file_time_type::clock::now());
    EXPECT_EQ(fleet(with({"--resume", path("begun.jsonl"), "--format", "json"})), 1);
    EXPECT_EQ(verdicts()[0], "a.xml failed") << "it has changed since";
    write("begun.jsonl", "no result\n" + all);
    EXPECT_EQ(fleet(with({"--resume", path("begun.jsonl")})), 2);
}

TEST_F(FleetCommandTest, mergesInAnyTree) {
    for (const char* const name : {"a.xml", "b.xml", "c.xml", "more/d.xml"}) {
        fleet({path("script.xml"), path("machines") + "/" + name, "--json", path("") + name[0] + ".jsonl"});
    }
    EXPECT_EQ(fleet({path("script.xml"), path("machines"), "--stable"}), 1);
    const std::string whole = console.out;
    const auto merge = [this](std::vector<std::string> names, const std::string& to) {
        for (std::string& name : names) {
            name = path(name + ".jsonl");
        }
        names.insert(names.end(), {"--merge", "--json", path(to + ".jsonl"), "--html", path(to + ".html"), "--stable"});
        return fleet(names);
    };
    EXPECT_EQ(merge({"a", "b", "c", "m"}, "flat"), 1);
    EXPECT_EQ(console.out, whole);
    EXPECT_EQ(merge({"a", "b"}, "left"), 1);
    EXPECT_EQ(merge({"c", "m"}, "right"), 1);
    EXPECT_EQ(merge({"left", "right"}, "tree"), 1);
    EXPECT_EQ(console.out, whole);
    EXPECT_EQ(read(path("tree.jsonl")), read(path("flat.jsonl")));
    EXPECT_EQ(read(path("tree.html")), read(path("flat.html")));
    EXPECT_EQ(merge({"a"}, "one"), 0);
    write("cut.jsonl", read(path("a.jsonl")).substr(0, 50));
    EXPECT_EQ(merge({"a", "cut"}, "none"), 2) << "a shard that is not whole";
    EXPECT_THAT(console.err, HasSubstr("cut.jsonl:1: "));
    EXPECT_FALSE(fs::exists(path("none.jsonl")));
    EXPECT_EQ(fleet({"--merge"}), 2);
}

TEST_F(FleetCommandTest, leavesItsOwnResultsAlone) {
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(fleet({path("script.xml"), path("machines"), "--json", path("machines/results.jsonl")}), 1);
        EXPECT_THAT(console.out, HasSubstr("2 failed, 1 unreadable, 1 passed"));
    }
    EXPECT_EQ(fleet({path("script.xml"), path("machines/a.xml"), "--json", path("machines/a.xml")}), 2);
    EXPECT_THAT(read(path("machines/a.xml")), HasSubstr("SysInfo"));
}

}  // namespace
}  // namespace vrx::cli
