#include "libReport/writers/FindingText.h"

#include <gtest/gtest.h>

#include "libDiagnosis/MissingDevices.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"

namespace vrx {
namespace {

FindingText findingsIn(StringView xml, const StateManager* machine = nullptr, TextFormat format = {}) {
    XmlDocument script;
    EXPECT_TRUE(script.Parse(xml)) << script.ErrorDesc().toUtf8();
    return findingText(findingsOf(script), "s.xml", machine, format);
}

void addDevice(StateManager& machine, StringView type, StringView name, StringView hwLocator) {
    machine.addDevice(DeviceImp::createGeneric(CapabilityImp(type), CapabilityImp(), 0, name, u"", u"", hwLocator),
                      nullptr);
}

constexpr StringView TWO_CANDIDATES =
    uR"(<inventory-check>
<device type="Fan">
 <property key="Speed" value="^VRXRRANGE[900-1100] RPM$"><error>bay 1 - Speed</error><error
  > Expected (regular expression): x</error><error> did not match sysinfo value  : 800 RPM</error><error
  >bay 2 - Speed</error><error> Expected (regular expression): x</error><error
  > did not match sysinfo value  : 700 RPM</error></property>
 <property key="Maker"><error>property key: Maker not found in Sysinfo Fan device: F</error></property>
 <error>Unsatisfied device of type: Fan</error>
</device></inventory-check>)";

TEST(FindingText, ShowsTheCandidateWithTheFewestFailedProperties) {
    StateManager machine;
    addDevice(machine, u"System", u"S", u"");
    addDevice(machine, u"Fan", u"F", u"bay 1");
    addDevice(machine, u"Fan", u"G", u"bay 2");
    const FindingText findings = findingsIn(TWO_CANDIDATES, &machine);
    EXPECT_EQ(findings.count, 1u);
    EXPECT_EQ(findings.text,
              "s.xml:2:1  Fan\n"
              "  nearest of 2 candidates: G, at bay 2\n"
              "  s.xml:3:2  Speed\n"
              "    expected  900..1100 RPM               found     700 RPM\n");
}

TEST(FindingText, TellsCandidatesApartByTheMessagesAlone) {
    EXPECT_EQ(findingsIn(TWO_CANDIDATES).text,
              "s.xml:2:1  Fan\n"
              "  nearest of 3 candidates: at bay 1\n"
              "  s.xml:3:2  Speed\n"
              "    expected  900..1100 RPM               found     800 RPM\n");
}

TEST(FindingText, PutsLongValuesBelowEachOtherAndEscapesThem) {
    const String value = String(100, u'v') + u"&#9;";
    const String xml = concat(
        u"<d><device type='Fan'><property key='K' value='a'><error>h - K</error><error> Expected "
        u"(regular expression): a</error><error> did not match sysinfo value  : ",
        value, u"</error></property></device></d>");
    const std::string text = findingsIn(xml).text;
    EXPECT_EQ(text,
              "s.xml:1:4  Fan\n"
              "  the only candidate: at h\n"
              "  s.xml:1:23  K\n"
              "    expected  a\n"
              "    found     " +
                  std::string(66, 'v') + "\n              " + std::string(34, 'v') + "\\t\n");
}

TEST(FindingText, SpeaksOfGroupsAndLeavesExtraDevicesOut) {
    const FindingText findings = findingsIn(
        uR"(<inventory-check><error>Found Extra Device: Fan - F</error><part name="lid"><error>unsatisfied part node: lid</error>
<OR><error>unsatisfied OR node</error></OR><not><device type="Fan"/><error>matched device under not node</error></not>
<fail-on-extra><error>Invalid device type:  and something</error></fail-on-extra></part></inventory-check>)");
    EXPECT_EQ(findings.count, 4u);
    EXPECT_EQ(findings.text,
              "s.xml:1:60  part lid is not complete\n"
              "s.xml:2:1  none of the alternatives of this <or> is met\n"
              "s.xml:2:44  everything in this <not> is there, and must not be\n"
              "s.xml:3:1  Invalid device type:  and something\n");
}

TEST(FindingText, ReadsWhatADeviceItselfLacks) {
    StateManager machine;
    for (const StringView name : {u"A", u"B", u"A", u"C", u"D"}) {
        addDevice(machine, u"Fan", name, u"");
    }
    EXPECT_EQ(
        findingsIn(
            uR"(<d><device type="Fan" name="^X\.Y$"><error>No device of type: Fan with name: ^X\.Y$</error></device>
<device type="Lamp"><error>No device of type: Lamp</error></device>
<device type="Fan"><error>Unsatisfied device of type: Fan</error></device></d>)",
            &machine)
            .text,
        "s.xml:1:4  Fan, X.Y\n"
        "  expected  name X.Y                     found     A, B, C, ...\n"
        "s.xml:2:1  Lamp\n"
        "  expected  a device of type Lamp        found     none\n"
        "s.xml:3:1  Fan\n"
        "  no device left for it: those that fit serve other elements\n");
}

TEST(MissingDevices, LeavesOutWhatTheMachineMustNotHave) {
    XmlDocument script;
    ASSERT_TRUE(
        script.Parse(u"<inventory-check><not><and><device type='Fan'/><device type='Battery'/></and></not>"
                     u"<device type='Battery'/></inventory-check>"));
    const Array<Inventory::DeviceSpec> missing = missingDevices(
        {Inventory::DeviceSpec(u"", u"Fan", u"", u""), Inventory::DeviceSpec(u"", u"Battery", u"", u"")}, script);
    ASSERT_EQ(missing.size(), 1u);
    EXPECT_EQ(missing[0].type, u"Battery");
}

}  // namespace
}  // namespace vrx
