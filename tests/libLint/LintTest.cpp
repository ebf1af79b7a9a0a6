#include "libLint/Lint.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "libInventory/Inventory.h"
#include "libLint/LintRules.h"

namespace vrx {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

const std::filesystem::path PROJECT = std::filesystem::path(VRX_TEST_DATA).parent_path();

std::string read(const std::filesystem::path& path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// "row:column rule" of everything that is found.
std::vector<std::string> findingsIn(const std::string& text) {
    Lint lint;
    EXPECT_EQ(lint.run(text), Lint::Result::Done) << text;
    std::vector<std::string> found;
    for (const LintFinding& finding : lint.findings().list()) {
        found.push_back(std::to_string(finding.row + 1) + ":" + std::to_string(finding.column + 1) + " " +
                        std::string(finding.rule));
    }
    return found;
}

std::vector<std::string> rulesIn(const std::string& text) {
    std::vector<std::string> rules = findingsIn(text);
    for (std::string& rule : rules) {
        rule.erase(0, rule.find(' ') + 1);
    }
    return rules;
}

/// Whether a check would be refused for it; the same rules must say so when they are asked for mistakes alone.
bool isMistaken(const std::string& text) {
    Lint all;
    Lint mistakes(Lint::Extent::Mistakes);
    EXPECT_EQ(all.run(text), mistakes.run(text));
    EXPECT_EQ(all.findings().count(Severity::Error), mistakes.findings().list().size()) << text;
    return mistakes.findings().count(Severity::Error) > 0;
}

/// Findings with everything that they say.
std::vector<std::string> mistakesIn(const std::string& text, unsigned threads) {
    Lint lint(Lint::Extent::Mistakes);
    lint.setThreads(threads);
    EXPECT_EQ(lint.run(text), Lint::Result::Done);
    std::vector<std::string> found;
    for (const LintFinding& finding : lint.findings().list()) {
        found.push_back(std::to_string(finding.row) + ":" + std::to_string(finding.column) + finding.message());
    }
    return found;
}

std::string script(const std::string& content) { return "<inventory-check>" + content + "</inventory-check>"; }
std::string device(const std::string& content) { return script("<device type='Fan'>" + content + "</device>"); }

/// The rows of the tables of rules: id, severity, what, example, what to do.
std::vector<std::vector<std::string>> rowsOfThePage() {
    std::vector<std::vector<std::string>> rows;
    std::istringstream page(read(PROJECT / "docs/lint-rules.md"));
    for (std::string line; std::getline(page, line);) {
        std::vector<std::string> cells;
        std::istringstream stream(line.substr(std::min<std::size_t>(1, line.size())));
        for (std::string cell; std::getline(stream, cell, '|');) {
            cells.push_back(std::regex_replace(cell, std::regex("^ +| +$"), ""));
        }
        if (cells.size() == 5 && cells[0] != "rule" && cells[0][0] != '-') {
            rows.push_back(cells);
        }
    }
    return rows;
}

TEST(LintPageTest, ListsEveryRuleWithItsSeverityAndAnExampleThatBreaksIt) {
    std::set<std::string> listed;
    std::size_t examples = 0;
    for (const std::vector<std::string>& row : rowsOfThePage()) {
        EXPECT_TRUE(listed.insert(row[0] + " " + row[1]).second) << row[0];
        if (std::string text = row[3]; text.starts_with("`<")) {
            text = text.substr(1, text.size() - 2);
            const bool isWhole = text.starts_with("<inventory-check") || text.starts_with("<parts");
            EXPECT_THAT(rulesIn(isWhole ? text : script(text)), Contains(row[0])) << text;
            ++examples;
        }
    }
    std::set<std::string> known;
    for (const LintRule& rule : lintRules()) {
        known.insert(std::string(rule.id) + " " + std::string(nameOf(rule.severity)));
    }
    EXPECT_EQ(listed, known);
    EXPECT_EQ(examples + 7, known.size());
}

TEST(LintPageTest, ExamplesAndSnippetsAreCleanButForNotes) {
    std::vector<std::string> texts;
    for (const char* name : {"workstation-check.xml", "server-pass.xml", "server-fail.xml", "server-parts.xml"}) {
        texts.push_back(read(PROJECT / "examples" / name));
    }
    const std::regex snippet("(^|\n)```xml\n((?:<inventory-check|<parts)[^`]*)```");
    for (const auto& entry : std::filesystem::directory_iterator(PROJECT / "docs")) {
        if (entry.is_regular_file()) {
            const std::string page = read(entry.path());
            for (std::sregex_iterator at(page.begin(), page.end(), snippet), end; at != end; ++at) {
                texts.push_back((*at)[2]);
            }
        }
    }
    EXPECT_GE(texts.size(), 9U);
    for (const std::string& text : texts) {
        Lint lint;
        ASSERT_EQ(lint.run(text), Lint::Result::Done) << text;
        for (const LintFinding& finding : lint.findings().list()) {
            EXPECT_EQ(finding.severity, Severity::Note) << finding.message() << "\n" << text;
        }
    }
}

TEST(LintTest, FindsNothingInWhatIsRight) {
    EXPECT_THAT(findingsIn("<INVENTORY-CHECK check-names=' Yes '><Device TYPE='fan' Name='^a$' HWLOCATOR='x[1]'>"
                           "<!-- c --><PROPERTY key='k'/><not><property key='k' value='a'/></not></Device>"
                           "<not><device type='Sensor'/></not></INVENTORY-CHECK>"),
                IsEmpty());
    EXPECT_THAT(findingsIn("<list><Part name='a'><and><device type='Fan'/></and></Part></list>"), IsEmpty());
    for (const char* range : {"^VRXRRANGE[-5--10] V$", "^VRXRRANGE[0-0]$", "^VRXRRANGE[.5-1e3]$"}) {
        EXPECT_THAT(rulesIn(device("<property key='k' value='" + std::string(range) + "'/>")), IsEmpty());
    }
}

TEST(LintTest, ReportsInDocumentOrderWithPlaces) {
    EXPECT_THAT(
        findingsIn("<inventory-check>\n <or>\n  <device/>\n  <devise/>\n </or>\n <or><device type='Fan'/>\n"
                   "  <fail-on-extra type='Fan'/></or>\n</inventory-check>"),
        ElementsAre("1:1 combinations", "3:3 missing-type", "4:3 unknown-element", "7:3 fail-on-extra-in-group"));
    EXPECT_THAT(findingsIn(script("<device type='Fan'/>\n\xFF<device type='Fan'/>")),
                ElementsAre("1:1 ignored-text", "1:18 repeated-device", "2:1 invalid-utf8"));
}

TEST(LintTest, LooksOnlyWhereACheckLooks) {
    EXPECT_THAT(rulesIn(script("<testset><or/><x/></testset><gadget><or/></gadget><device type='Fan'/>")),
                ElementsAre("ignored-testset", "unknown-element"));
    EXPECT_THAT(rulesIn(device("<gadget><or/></gadget>")), ElementsAre("unknown-element"));
}

TEST(LintTest, KnowsWhereANotStands) {
    EXPECT_THAT(rulesIn(script("<not><device type='Fan'><and><not><property key='k'/></not></and></device></not>")),
                ElementsAre("not-under-not"));
    EXPECT_THAT(rulesIn(script("<not><and><fail-on-extra type='Fan'><not><property key='k'/></not></fail-on-extra>"
                               "</and></not>")),
                ElementsAre("fail-on-extra-in-group"));
    EXPECT_THAT(rulesIn(script("<not/><device type='Fan'><or/></device>")), ElementsAre("empty-group", "empty-or"));
}

TEST(LintTest, CountsDevicesThatMustBeThereTogether) {
    const std::string fan = "<device type='Fan' oslocator='f'/>";
    EXPECT_THAT(rulesIn(script("<or>" + fan + "<and>" + fan + "</and></or><not>" + fan + "</not>")),
                ElementsAre("combinations"));
    EXPECT_THAT(rulesIn(script(fan + "<part name='p'>" + fan + "</part><and>" + fan + "</and>")),
                ElementsAre("duplicate-device", "duplicate-device"));
    EXPECT_THAT(rulesIn("<parts><part name='a'>" + fan + "</part><part name='b'>" + fan + "</part></parts>"),
                IsEmpty());
}

TEST(LintTest, FindsTheDeviceThatAPartNeeds) {
    EXPECT_THAT(
        rulesIn("<parts><part name='a'><and><inventory-check><device type='Fan'/></inventory-check></and></part>"
                "</parts>"),
        ElementsAre("nested-root"));
    EXPECT_THAT(rulesIn("<parts><part name='a'><and><x><device type='Fan'/></x></and></part></parts>"),
                ElementsAre("part-needs-no-device", "unknown-element"));
}

TEST(LintTest, MultipliesAlternatives) {
    std::string content;
    for (int i = 0; i < 70; ++i) {
        content += "<or><device type='Fan'/><device type='Sensor'/></or>";
        const std::vector<std::string> rules = rulesIn(script(content));
        EXPECT_THAT(rules, ElementsAre(i < 13 ? "combinations" : "many-combinations")) << i;  // 2^14 > 10,000
    }
    Lint lint;
    lint.run(script(content));
    EXPECT_THAT(lint.findings().list()[0].message(), HasSubstr("more than 18446744073709551615"));
}

TEST(LintTest, JudgesPatternsAsACheckReadsThem) {
    EXPECT_THAT(rulesIn(device("<property key='k' value='\x01('/>")), ElementsAre("pattern-syntax"));
    EXPECT_THAT(rulesIn(device("<property key='k' value='a%u0028'/>")), IsEmpty());
    EXPECT_THAT(rulesIn("<parts><part name='p'><device type='Fan' name='a%u0028'/></part></parts>"), IsEmpty());
    EXPECT_THAT(rulesIn(device("<property key='k' value='VRXRRANGE'/>")), ElementsAre("range-syntax"));
    EXPECT_THAT(rulesIn(device("<property key='k' value='VRXRRANGE[1-2] VRXRRANGE[1-]'/>")),
                ElementsAre("range-syntax"));
    EXPECT_THAT(rulesIn(device("<property key='k'><value value='VRXRRANGE[1,2-5]'/><v value='('/></property>")),
                ElementsAre("range-syntax", "pattern-syntax"));
}

TEST(LintTest, TakesForAMistakeWhatACheckWouldPassOverOrNeverMeet) {
    for (const char* content :
         {"<property key='k' vlaue='1'/>", "<property key='k' Value='1'/>", "<property key='k'>1</property>",
          "<property key='k'><Value>1</Value></property>", "<property key='k'><not><value value='1'/></not></property>",
          "<property key='k' value='1'><value value='1'/></property>", "<property key=' ' value='1'/>",
          "<not><property key='k' value='VRXRRANGE[1-]'/></not>", "<property key='k' value='VRXRANGE[1-20]'/>",
          "<property key='k' value='^vrxrrange[1-2]'/>", "<property key='k' value='^Range[10-20]$'/>",
          "<property key='k' value='^VRXRRANGE[1-2] Ghz$'/>", "<property key='k' value='^VRXRRANGE[1-2] furlongs$'/>",
          "<property key='k' value='^VRXRRANGE[1-2]  GHz$'/>", "<property key='k' value='VRXRRANGE[1-2]GHz'/>",
          "<and x='1'/>", "<properti key='k'/>", "text"}) {
        EXPECT_TRUE(isMistaken(device(content))) << content;
        EXPECT_TRUE(isMistaken(script("<not><device type='Fan'>" + std::string(content) + "</device></not>")))
            << content;
    }
    for (const char* content :
         {"<fail-on-extra type='Storge'/>", "<fail-on-extra/>", "<fail-on-extra Type='Fan'/>",
          "<fail-on-extras type='Fan'/>", "<fail-on-extra type='Fan' capability='Fann'/>", "<property key='k'/>",
          "<device type='Fan' Type='Sensor'/>", "<device TYPE='Fan' Type='Sensor'/>", "<device type=' Fan'/>",
          "<not><device type='Fann'/></not>",
          "<inventory-check check-names='false'><device type='Fan'/></inventory-check>", "<and>text</and>",
          "<part name='p'><not><or><device type='Fan'/></or></not></part>",
          "<not name='n'><device type='Fan'/></not>"}) {
        EXPECT_TRUE(isMistaken(script(content + std::string("<device type='Fan'/>")))) << content;
    }
    for (const std::string before : {"", "a", "ab cd", "1234", "12345 ", "abcde fghijk ", "Rate of "}) {
        for (const char* word : {"range[10-20]", "orange[10-20]", "VRXRANGE[1-20]", "vrxrrange", "VRXXRRANGE x"}) {
            EXPECT_TRUE(isMistaken(device("<property key='k' value='" + before + ' ' + word + "'/>")))
                << before << word;
        }
    }
    EXPECT_TRUE(isMistaken("<inventory-check check-names='ture'><device type='Fan'/></inventory-check>"));
    EXPECT_TRUE(
        isMistaken("<parts><part name='a'><device type='Fan'/></part><prat><device type='Fan'/></prat></parts>"));
    EXPECT_TRUE(
        isMistaken("<parts><prat><device type='Fan'/></prat><part name='a'><device type='Fan'/></part></parts>"));
}

TEST(LintTest, TakesForNoMistakeWhatTheEngineIsMeantToLeaveAloneAndWhatHasAMeaning) {
    for (const char* content :
         {"<testset><x/></testset><error>e</error>", "<device type='Fan'><error>e</error><testset/></device>",
          "<device type='Fan'><property key='k' value='(a'><error>e</error></property></device>",
          "<device type='Fan' name='('><property key='k' value='^VRXRRANGE[1-2] (cores)$|VRXRRANGE[1-2]'/></device>",
          "<device type='Fan'><property key='k' value='^Fan VRXRRANGE[1-6] rear$'/><property key='k' value='Voltage'/>"
          "<property key='k' value='Range[1-6]'/><property key='k' value='^VRXRRANGE[1-6]x$'/></device>",
          "<device type='Fan'><property key='k'><entry value='a'/></property></device>",
          "<fail-on-extra capability='Fan'/><inventory-check><device type='Fan'/></inventory-check>"}) {
        EXPECT_FALSE(isMistaken(script(content))) << content;
    }
    EXPECT_FALSE(isMistaken("<parts><info/><part/><part name='a'><device type='Fan'/></part></parts>"));
}

TEST(LintTest, AsManyThreadsAsThereAreFindTheSame) {
    std::string content = "text <fan/>";
    for (int i = 0; i < 500; ++i) {
        content += "\n<device type='Fan'><property key='' value='1' unit='x'>y</property></device>";
        content +=
            i % 7 == 0 ? "<part name='p'><or><device type='Fna'/><device/></or></part>" : "<testset><x/></testset>";
    }
    const std::vector<std::string> found = mistakesIn(script(content), 1);
    EXPECT_GT(found.size(), 1500U);
    EXPECT_EQ(mistakesIn(script(content), 4), found);
    EXPECT_EQ(mistakesIn(script("<device/>"), 4).size(), 1U);
}

TEST(LintTest, DoubtsPatternsThatLookLikeSomethingElse) {
    const auto rulesOf = [](const std::string& value) {
        return rulesIn(device("<property key='k' value='" + value + "'/>"));
    };
    for (const char* text :
         {"Xeon(R)", "^2.14.0$", "^C++$", "Samsung Co., Ltd", "^Micron Inc.$", "^WD*$", "^2\\.14.0$"}) {
        EXPECT_THAT(rulesOf(text), Contains("unescaped-sign")) << text;
    }
    for (const char* number : {"6", "^16", "16$", "16 GB", "^2\\.5", "16 GB$"}) {
        EXPECT_THAT(rulesOf(number), ElementsAre("missing-anchor")) << number;
    }
    for (const char* pattern :
         {"^Xeon\\(R\\)$", "^2\\.14\\.", "^v.+$", "^DIMM.$", "^a\\d+(b)$", "^(ab)+$", "^x*y?$", "^(Front|Rear)$",
          "^Front$|^Rear$", "^16 GB", "DDR4", "^0x16", "02$", "=", "[a-f]", "^a\\|b$", "VRXRRANGE[1-2]", "a\\$"}) {
        EXPECT_THAT(rulesOf(pattern), IsEmpty()) << pattern;
    }
}

TEST(LintTest, FindsElementsThatGetInEachOthersWay) {
    const auto both = [](const std::string& a, const std::string& b) {
        return rulesIn(device("<property key='k' value='" + a + "'/><and><property key='k' value='" + b + "'/></and>"));
    };
    EXPECT_THAT(both("^a$", "^b"), ElementsAre("contradicting-properties"));
    EXPECT_THAT(both("^VRXRRANGE[1-2] V$", "^VRXRRANGE[4-3] V$"), ElementsAre("contradicting-properties"));
    EXPECT_THAT(both("^9 V$", "^VRXRRANGE[1-2] kV$"), ElementsAre("contradicting-properties"));
    EXPECT_THAT(both("^a$", "^A$"), IsEmpty());
    EXPECT_THAT(both("^VRXRRANGE[1-2] V$", "^VRXRRANGE[2-3] V$"), IsEmpty());
    EXPECT_THAT(both("^1500 mV$", "^VRXRRANGE[1-2] V$"), IsEmpty());
    EXPECT_THAT(rulesIn(device("<property key='k'/><not><property key='k'/></not>")),
                ElementsAre("contradicting-properties"));
    EXPECT_THAT(rulesIn(device("<property key='k'/><not><property key='k' value='a'/></not>")), IsEmpty());

    const std::string narrow = "<device type='NvmeDrive' name='^a$'><property key='k'/></device>";
    for (const char* wide : {"<device type='Storage'/>", "<device type='NvmeDrive' NAME='^a$'/>",
                             "<device type='Storage'><property key='k'/></device>"}) {
        EXPECT_THAT(rulesIn(script(wide + narrow + narrow)), Contains("wide-before-narrow")) << wide;
        EXPECT_THAT(rulesIn(script(narrow + wide)), IsEmpty()) << wide;
        EXPECT_THAT(rulesIn(script("<or><and>" + std::string(wide) + "</and></or>" + narrow)), IsEmpty()) << wide;
        EXPECT_THAT(rulesIn(script(narrow + "<not>" + wide + "</not>")), ElementsAre("forbidden-and-required")) << wide;
        EXPECT_THAT(rulesIn(script(wide + ("<not>" + narrow + "</not>"))), IsEmpty()) << wide;
    }
    EXPECT_THAT(rulesIn(script("<not><and>" + narrow + "<device type='Fan'/></and></not>")), IsEmpty());
}

TEST(LintTest, SaysWhatAMachineCouldNeverMeet) {
    StateManager machine;
    ASSERT_TRUE(Inventory::importStateFromXmlString(
        u"<SysInfo><Device type='BIOS' name='B' hwLocator='bios' osLocator=''><property key='FirmwareVersion' "
        u"value='1'/></Device>"
        u"<Device type='Fan' name='F' hwLocator='fan:1' osLocator='f'><property key='Speed' value='900' units='RPM'/>"
        u"<property key='Size' value='80 mm'/></Device></SysInfo>",
        machine));
    const auto found = [&machine](const std::string& content) {
        Lint lint;
        lint.setMachine(machine);
        EXPECT_EQ(lint.run(content.starts_with("<parts") ? content : script(content)), Lint::Result::Done);
        std::vector<std::string> texts;
        for (const LintFinding& finding : lint.findings().list()) {
            texts.push_back(std::string(finding.rule) + " " + finding.suggestion);
        }
        return texts;
    };
    const auto fan = [&found](const std::string& content) {
        return found("<device type='Fan'>" + content + "</device>");
    };
    EXPECT_THAT(found("<device type='BIOS'><property key='Version'/></device>"),
                ElementsAre("machine-key FirmwareVersion"));
    EXPECT_THAT(fan("<not><property key='Sped' value='^1$'/></not>"), ElementsAre("machine-key Speed"));
    EXPECT_THAT(fan("<not><property key='Removable'/></not><or><property key='Label'/></or>"), IsEmpty());
    EXPECT_THAT(found("<fail-on-extra type='Fan'><property key='Removable'/></fail-on-extra>"),
                ElementsAre("machine-key "));
    EXPECT_THAT(found("<device type='Fan' hwlocator='fan:2' oslocator='f'/>"), ElementsAre("machine-locator fan:1"));
    EXPECT_THAT(found("<or><device type='Fan' hwlocator='x'/></or><not><device type='Fan' oslocator='x'/></not>"),
                IsEmpty());
    EXPECT_THAT(found("<device type='Battery'/><not><device type='Modem'/></not><or><device type='Cache'/></or>"),
                ElementsAre("machine-type "));
    EXPECT_THAT(found("<parts><part name='p'><device type='Battery'/></part></parts>"), IsEmpty());
    for (const char* value : {"^VRXRRANGE[800-1000] GB$", "^900$", "^VRXRRANGE[800-1000]$", "^1 MHz$"}) {
        EXPECT_THAT(fan("<property key='Speed' value='" + std::string(value) + "'/>"), ElementsAre("machine-units "))
            << value;
    }
    EXPECT_THAT(fan("<property key='Speed' value='^VRXRRANGE[800-1000] rpm$'/><property key='Size' value='^8 cm$'/>"),
                IsEmpty());
}

TEST(LintTest, SaysWhatAMachineMeetsOnlyByExactAssignment) {
    StateManager machine;
    ASSERT_TRUE(Inventory::importStateFromXmlString(
        u"<SysInfo><Device type='DIMM' hwLocator='a'><property key='Size' value='16'/></Device>"
        u"<Device type='DIMM' hwLocator='b'><property key='Size' value='8'/></Device>"
        u"<Device type='DIMM' hwLocator='c'><property key='Size' value='64'/></Device></SysInfo>",
        machine));
    const auto asking = [](const std::string& sizes) {
        return "<device type='DIMM'><property key='Size' value='^VRXRRANGE[" + sizes + "]$'/></device>\n";
    };
    const auto rowsIn = [&machine](const std::string& content) {
        Lint lint;
        lint.setMachine(machine);
        lint.run(script(content));
        std::vector<std::uint32_t> rows;
        for (const LintFinding& finding : lint.findings().list()) {
            if (finding.rule == "exact-assignment") {
                rows.push_back(finding.row);
            }
        }
        return rows;
    };
    EXPECT_THAT(rowsIn("\n" + asking("8-32") + asking("16-64") + asking("16-64")), ElementsAre(3U));
    EXPECT_THAT(rowsIn(asking("8-8") + asking("16-64")), IsEmpty());
}

TEST(LintTest, SuggestsTheNameThatWasMeant) {
    Lint lint;
    lint.run("<inventory-check check-hwlocators='no'><fail-on-extr type='Fan'/></inventory-check>");
    ASSERT_EQ(lint.findings().list().size(), 3U);
    EXPECT_EQ(lint.findings().list()[0].suggestion, "check-hwLocators");
    EXPECT_THAT(lint.findings().list()[0].message(), EndsWith("; remove it; did you mean \"check-hwLocators\"?"));
    EXPECT_EQ(lint.findings().list()[1].suggestion, "");
    EXPECT_EQ(lint.findings().list()[2].suggestion, "fail-on-extra");
}

TEST(LintTest, TellsMistakesOfOneElementInTheOrderOfItsText) {
    EXPECT_THAT(rulesIn(script("<device hwlocator='.*' name='VRXRRANGE[1-1] VRXRRANGE' x='' type='Fun'>t</device>")),
                ElementsAre("device-attribute", "ignored-text", "unknown-type", "locator-pattern", "range-single-value",
                            "range-syntax"));
    EXPECT_THAT(rulesIn(script("<not><not x=''/></not>")),
                ElementsAre("nothing-to-check", "unknown-attribute", "empty-group", "not-under-not"));
    EXPECT_THAT(rulesIn(script("<not><device type='Fan'><not x=''/></device></not>")),
                ElementsAre("not-under-not", "unknown-attribute", "empty-not-in-device"));
}

TEST(LintTest, TakesDocumentsTextsAndFiles) {
    const String text(u"<inventory-check><device type='Fan'/>\n<devise/></inventory-check>");
    XmlDocument document;
    ASSERT_TRUE(document.Parse(text));
    Lint lint;
    ASSERT_EQ(lint.runDocument(document), Lint::Result::Done);
    ASSERT_EQ(lint.findings().list().size(), 1U);
    EXPECT_EQ(lint.findings().list()[0].element, document.RootElement()->FirstChildElement(u"devise"));

    ASSERT_EQ(lint.runText(text), Lint::Result::Done);
    ASSERT_EQ(lint.findings().list().size(), 1U);
    EXPECT_EQ(lint.findings().list()[0].row, 1U);
    EXPECT_EQ(lint.runText(u"<inventory-check>\u0001<device type='Fan'/></inventory-check>"), Lint::Result::Done);

    String reason;
    EXPECT_EQ(lint.runFile(String::UTF8Decode((PROJECT / "examples/server-pass.xml").string()), reason),
              Lint::Result::Done);
    EXPECT_EQ(lint.runFile(u"/nowhere/script.xml", reason), Lint::Result::NotReadable);
    EXPECT_FALSE(reason.isEmpty());
    EXPECT_THAT(lint.findings().list(), IsEmpty());
}

TEST(LintTest, TellsWhatIsNeither) {
    EXPECT_EQ(Lint().run("<SysInfo><Device/></SysInfo>"), Lint::Result::Neither);
    EXPECT_EQ(Lint().run("<inventory-check><a></inventory-check>"), Lint::Result::NotXml);
    EXPECT_EQ(Lint().run(""), Lint::Result::NotXml);
    EXPECT_EQ(Lint().run("<parts><part name='\xFF'/></parts>"), Lint::Result::NotXml);
}

}  // namespace
}  // namespace vrx
