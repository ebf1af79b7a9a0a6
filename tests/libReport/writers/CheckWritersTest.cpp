#include <gmock/gmock.h>

#include <boost/json.hpp>
#include <sstream>

#include "libCommon/text/PrintableText.h"
#include "libReport/CheckRun.h"
#include "libReport/writers/FindingLines.h"

namespace vrx {
namespace {

using testing::HasSubstr;

/// A check of `<inventory-check>` with that content on a machine with those devices.
class CheckWritersTest : public testing::Test {
protected:
    const CheckReport& check(const String& devices, const String& content) {
        EXPECT_TRUE(Inventory::importStateFromXmlString(concat(u"<SysInfo>", devices, u"</SysInfo>"), m_machine));
        EXPECT_TRUE(
            m_run.inventory().loadInventoryScript(concat(u"<inventory-check>\n", content, u"\n</inventory-check>")));
        m_report = m_run.run();
        return m_report;
    }

    std::string findings(const TextFormat& format = {}) const {
        return findingLines(m_report.findings, m_report.devices, "s.xml", format).text;
    }

    boost::json::value json() const {
        return boost::json::parse(writerNamed(checkWriters(), "json")->write(m_report, TextFormat()));
    }

private:
    StateManager m_machine;
    CheckRun m_run{m_machine};
    CheckReport m_report;
};

constexpr StringView TWO_FANS =
    u"<Device type='Fan' name='F' hwLocator='bay 1'><property key='Speed' value='800' units='RPM'/></Device>"
    u"<Device type='Fan' name='G' hwLocator='bay 2'><property key='Speed' value='700' units='RPM'/>"
    u"<property key='Maker' value='M'/></Device>";

TEST_F(CheckWritersTest, ShowTheCandidateWithTheFewestFailedProperties) {
    check(TWO_FANS,
          u"<device type='Fan'>\n <property key='Speed' value='^VRXRRANGE[900-1100] RPM$'/>\n"
          u" <property key='Maker'/></device>");
    EXPECT_EQ(findings(),
              "s.xml:2:1  Fan\n"
              "  nearest of 2 candidates: G, at bay 2\n"
              "  s.xml:3:2  Speed\n"
              "    expected  900..1100 RPM               found     700 RPM\n");
    const boost::json::value finding = json().at("findings").at(0);
    EXPECT_EQ(finding.at("nearest").at("hwLocator").as_string(), "bay 2");
    const boost::json::value difference = finding.at("differences").at(0);
    EXPECT_EQ(difference.at("property").as_string(), "Speed");
    EXPECT_EQ(difference.at("expected").at(0).as_string(), "^VRXRRANGE[900-1100] RPM$");
    EXPECT_EQ(difference.at("found").as_string(), "700 RPM");
    EXPECT_EQ(difference.at("row").as_int64(), 3);
}

TEST_F(CheckWritersTest, KeepToTheWidthOfATerminalOnly) {
    const CheckReport& report = check(u"<Device type='Fan' name='F'/>",
                                      u"<device type='TemperatureSensor' name='^one of several words to wrap$' "
                                      u"hwlocator='pcie:1'/><device type='MemoryController' hwlocator='pcie:2'/>");
    TextFormat format{.width = 40, .isTerminal = true, .isStable = true};
    const std::string text = writerNamed(checkWriters(), "text")->write(report, format);
    EXPECT_THAT(text,
                testing::StartsWith("FAILED  pcie:1: TemperatureSensor \"one\n        of several words to wrap\" is\n"
                                    "        missing, and 1 more fault\n"));
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(displayWidth(line), format.width) << line;
    }
    format.isTerminal = false;
    EXPECT_THAT(writerNamed(checkWriters(), "text")->write(report, format),
                HasSubstr("pcie:1  TemperatureSensor \"one of several words to wrap\" is missing\n"));
}

TEST_F(CheckWritersTest, TellDevicesApartThatShareALocator) {
    const CheckReport& report = check(
        u"<Device type='MemoryModule' name='A' hwLocator='DIMM'><property key='Size' value='32' units='GB'/>"
        u"<property key='Speed' value='2666'/></Device>"
        u"<Device type='MemoryModule' name='B' hwLocator='DIMM'><property key='Size' value='16' units='GB'/>"
        u"<property key='Speed' value='3200'/></Device>",
        u"<device type='MemoryModule' hwlocator='DIMM'>\n<property key='Size' value='^32 GB$'/>\n"
        u"<property key='Speed' value='^3200$'/></device>");
    EXPECT_EQ(findings(),
              "s.xml:2:1  MemoryModule, at DIMM\n"
              "  nearest of 2 candidates: A, at DIMM\n"
              "  s.xml:4:1  Speed\n"
              "    expected  3200                        found     2666\n");
    EXPECT_EQ(report.headline, "DIMM: MemoryModule Speed is 2666, expected 3200");
}

TEST_F(CheckWritersTest, SayWhoHasTheDeviceThatWouldDo) {
    const CheckReport& report = check(u"<Device type='Ethernet' name='N' hwLocator='pci:1' osLocator='o1'/>",
                                      u"<device type='Ethernet' hwlocator='pci:1'/>\n"
                                      u"<device type='Ethernet' hwlocator='pci:1'/>");
    EXPECT_EQ(report.headline, "pci:1: Ethernet is missing: the element at 2:1 has it");
    EXPECT_EQ(findings(),
              "s.xml:3:1  Ethernet, at pci:1\n"
              "  no device left for it: those that fit serve other elements\n"
              "  Ethernet \"N\" (pci:1) serves s.xml:2:1\n");
    EXPECT_EQ(json().at("findings").at(0).at("taken").at(0).at("by").at("row").as_int64(), 2);
}

TEST_F(CheckWritersTest, PutLongValuesBelowEachOtherAndEscapeThem) {
    check(concat(u"<Device type='Fan' name='' hwLocator='h' osLocator=''><property key='K' value='", String(100, u'v'),
                 u"&#9;'/></Device>"),
          u"<device type='Fan'><property key='K' value='a'/></device>");
    EXPECT_EQ(findings(),
              "s.xml:2:1  Fan\n"
              "  the only candidate: at h\n"
              "  s.xml:2:20  K\n"
              "    expected  a\n"
              "    found     " +
                  std::string(66, 'v') + "\n              " + std::string(34, 'v') + "\\t\n");
}

TEST_F(CheckWritersTest, SpeakOfGroupsAndLeaveExtraDevicesOut) {
    const CheckReport& report = check(u"<Device type='Fan' name='F'/><Device type='Battery' name='B'/>",
                                      u"<part name='lid'><device type='Camera'/></part>\n"
                                      u"<OR><device type='Modem'/></OR>\n"
                                      u"<not><device type='Fan'/></not>\n"
                                      u"<fail-on-extra type='Rocket'/>\n<fail-on-extra type='Battery'/>");
    EXPECT_EQ(report.extra.size(), 1u);
    EXPECT_EQ(report.faults.size(), 5u);
    EXPECT_THAT(findings(), HasSubstr("s.xml:2:1  part lid is not complete\n"));
    EXPECT_THAT(findings(), HasSubstr("s.xml:3:1  none of the alternatives of this <or> is met\n"));
    EXPECT_THAT(findings(), HasSubstr("s.xml:4:1  everything in this <not> is there, and must not be\n"));
    EXPECT_THAT(findings(), HasSubstr("s.xml:5:1\n  Invalid device type: Rocket and Invalid device capability: "));
    EXPECT_THAT(findings(), testing::Not(HasSubstr("Extra Device")));
}

TEST_F(CheckWritersTest, SayWhatTheMachineHasInPlaceOfANameOrAType) {
    check(
        u"<Device type='Fan' name='A'/><Device type='Fan' name='B'/><Device type='Fan' name='A'/>"
        u"<Device type='Fan' name='C'/><Device type='Fan' name='D'/>",
        u"<device type='Fan' name='^X\\.Y$'/>\n<device type='Battery'/>\n<device type='Lamp'/>");
    EXPECT_EQ(findings(),
              "s.xml:2:1  Fan, X.Y\n"
              "  expected  name X.Y                     found     A, B, C, ...\n"
              "s.xml:3:1  Battery\n"
              "  expected  a device of type Battery     found     none\n"
              "s.xml:4:1  Lamp\n"
              "  \"Lamp\" is no device type\n");
}

}  // namespace
}  // namespace vrx
