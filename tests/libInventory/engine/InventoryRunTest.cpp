#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "libCommon/error/Exception.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/Finding.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string device(const std::string& hwLocator, const std::string& inner = "") {
    return R"(<device type="Storage" hwlocator=")" + hwLocator + R"(">)" + inner + "</device>";
}

class RunTest : public testing::Test {
protected:
    RunTest() {
        for (const char* const locator : {"a", "b", "c"}) {
            addDevice(store, "Storage", std::string("disk ") + locator, locator, "", {{"Size", {"1"}}});
        }
        addDevice(store, "Fan", "fan", "f");
    }
    StateManager store;
};

TEST_F(RunTest, LogicalGroups) {
    const std::string yes = device("a");
    const std::string other = device("b");
    const std::string no = device("missing");
    const std::vector<std::pair<std::string, bool>> table = {
        {"", true},
        {yes + other, true},
        {yes + no, false},
        {"<and>" + yes + "</and>", true},
        {"<and/>", true},
        {"<or>" + no + yes + "</or>", true},
        {"<or>" + no + no + "</or>", false},
        {"<not>" + no + "</not>", true},
        {"<not>" + yes + "</not>", false},
        {"<not>" + yes + no + "</not>", true},
        {"<not/>", true},
        {"<not><not>" + yes + "</not></not>", true},
        {"<part name='p'>" + yes + "</part>", true},
        {"<part name='p'>" + no + "</part>", false},
        {"<testset>" + no + "</testset>", true},
        {"<AND>" + yes + "<Or>" + no + other + "</Or></AND>", true},
        // One device cannot stand for two elements, in whatever groups they lie.
        {yes + yes, false},
        {yes + "<or>" + yes + other + "</or>", true},
        {yes + other + "<or>" + yes + other + "</or>", false},
    };
    for (const auto& [body, expected] : table) {
        EXPECT_EQ(check(store, body).passed, expected) << body;
    }
}

TEST_F(RunTest, APassingRunLeavesTheScriptAsItWas) {
    const std::string body = "<or>" + device("missing") + device("a") + "</or>";
    const Outcome outcome = check(store, body);
    EXPECT_TRUE(outcome.passed);
    EXPECT_TRUE(outcome.satisfied);
    EXPECT_THAT(outcome.annotated, testing::Not(HasSubstr("<error>")));
    EXPECT_THAT(outcome.events, IsEmpty());
}

TEST_F(RunTest, ErrorsOfAllGroupsStandInTheScript) {
    const Outcome outcome = check(
        store, "<and>" + device("x") + "</and><not>" + device("a") + "</not><part name='P'>" + device("y") + "</part>");
    EXPECT_THAT(
        outcome.errors,
        ElementsAre("Unsatisfied device of type: Storage", "No device of type: Storage with hwlocator: x",
                    "unsatisfied and node", "matched device under not node", "Unsatisfied device of type: Storage",
                    "No device of type: Storage with hwlocator: y", "unsatisfied part node: P"));
    EXPECT_THAT(outcome.unsatisfied, ElementsAre("x", "y"));
}

TEST_F(RunTest, AnAbsentForbiddenDeviceIsListedAlthoughTheNotHolds) {
    const Outcome outcome = check(store, "<not>" + device("x") + "</not>" + device("y"));
    EXPECT_THAT(outcome.unsatisfied, ElementsAre("x", "y"));
}

TEST_F(RunTest, OdometerReachesThePassingCombination) {
    // Disk a is wanted outside, so the first alternatives of both ors must give way; only (second, third) is free.
    const std::string body = device("a") + "<or>" + device("a") + device("b") + "</or><or>" + device("a") +
                             device("b") + device("c") + "</or>";
    EXPECT_TRUE(check(store, body).passed);
    const std::string hopeless = device("c") + body;
    const Outcome outcome = check(store, hopeless);
    EXPECT_FALSE(outcome.passed);
}

TEST_F(RunTest, PrunedAlternativesAreSteppedOver) {
    const std::string body = device("a") + "<or>" + device("x") + device("a") + device("y") + device("b") + "</or>";
    EXPECT_TRUE(check(store, body).passed);
}

TEST_F(RunTest, AHopelessOrShowsItsNearestAlternativeInTheFirstIteration) {
    const std::string far = "<and>" + device("x") + device("y") + "</and>";
    const std::string near = "<and>" + device("a") + device("z") + "</and>";
    const Outcome outcome = check(store, "<or>" + far + near + "</or>");
    EXPECT_THAT(outcome.errors,
                ElementsAre("Unsatisfied device of type: Storage", "No device of type: Storage with hwlocator: z",
                            "unsatisfied and node", "unsatisfied or node"));
}

TEST_F(RunTest, TheBetterCombinationsFindingsAreKept) {
    // Every combination fails on x; the second alternative fails on nothing else.
    const std::string body =
        device("a") + "<or><and>" + device("a") + device("b") + "</and>" + device("c") + "</or>" + device("x");
    const Outcome outcome = check(store, body);
    EXPECT_THAT(outcome.errors,
                ElementsAre("Unsatisfied device of type: Storage", "No device of type: Storage with hwlocator: x"));
}

TEST_F(RunTest, OnAFullTieTheEarlierCombinationStaysButTheListIsOfTheLast) {
    const std::string body = device("a") + device("b") + "<or>" + device("a") + device("b") + "</or>";
    const Outcome outcome = check(store, body);
    EXPECT_FALSE(outcome.passed);
    EXPECT_THAT(outcome.unsatisfied, ElementsAre("b"));
    const auto firstError = outcome.annotated.find("<error>");
    EXPECT_LT(firstError, outcome.annotated.find("<device", outcome.annotated.find("<or>") + 30));
}

TEST_F(RunTest, TheLargerIndexSumWinsAmongEqualErrors) {
    // Both alternatives lack one device of two; in the second it is the later one.
    const std::string firstLacks = "<and>" + device("x") + device("a") + "</and>";
    const std::string secondLacks = "<and>" + device("a") + device("y") + "</and>";
    const Outcome outcome = check(store, "<or>" + firstLacks + secondLacks + "</or>");
    EXPECT_THAT(outcome.unsatisfied, ElementsAre("y"));
}

TEST_F(RunTest, EmptyOrFails) {
    const Outcome outcome = check(store, "<or/>");
    // A pruned empty or passes in the one iteration that looks into it.
    EXPECT_TRUE(outcome.passed);
    EXPECT_FALSE(check(store, "<or/>" + device("x")).passed);
}

TEST_F(RunTest, ExtraDevices) {
    const std::string rule = R"(<fail-on-extra type="Storage"/>)";
    const std::string ab = device("a") + device("b");
    const Outcome outcome = check(store, ab + rule + R"(<fail-on-extra capability="Disk"/>)");
    EXPECT_FALSE(outcome.passed);
    EXPECT_TRUE(outcome.satisfied);
    EXPECT_THAT(outcome.extra, ElementsAre("disk c"));
    EXPECT_THAT(outcome.errors, ElementsAre("Found Extra Device: Storage - disk c"));
    EXPECT_TRUE(check(store, ab + device("c") + rule).passed);
    EXPECT_TRUE(check(store, ab).passed);
    EXPECT_TRUE(check(store, ab + R"(<fail-on-extra type="Storage"><property key="Size" value="^2$"/></fail-on-extra>)")
                    .passed);
    EXPECT_FALSE(
        check(store, ab + R"(<fail-on-extra type="Storage"><property key="Size" value="^1$"/></fail-on-extra>)")
            .passed);
    EXPECT_TRUE(check(store, ab + R"(<fail-on-extra type="Storage"><or/></fail-on-extra>)").passed);
}

TEST_F(RunTest, ExtraDevicesAreReportedBesideMissingOnes) {
    const Outcome outcome = check(store, device("a") + device("x") + R"(<fail-on-extra type="Storage"/>)");
    EXPECT_FALSE(outcome.satisfied);
    EXPECT_THAT(outcome.extra, ElementsAre("disk b", "disk c"));
}

TEST_F(RunTest, AnInvalidExtraRuleIsToldOnlyWhenTheRunFails) {
    const std::string rule = R"(<fail-on-extra type="Warp" capability="Drive"/>)";
    EXPECT_TRUE(check(store, device("a") + rule).passed);
    EXPECT_THAT(check(store, device("x") + rule).errors,
                testing::Contains("Invalid device type: Warp and Invalid device capability: Drive Please refer to "
                                  "Valid Device Types in Documentation"));
}

TEST_F(RunTest, PartsAreEnteredUnderTheirDevicesOnce) {
    Inventory inventory;
    Inventory::DeviceToPartsTable table;
    inventory.setStateManager(store);
    inventory.setDeviceToPartsTable(&table);
    const std::string part =
        "<part name='P' id='1'>" + device("a") + device("b") + "<not>" + device("f") + "</not></part>";
    const std::string failing = "<part name='Q'>" + device("c") + device("x") + "</part>";
    inventory.loadInventoryScript(text("<inventory-check>" + part + part + failing + "</inventory-check>"));
    inventory.run();
    ASSERT_EQ(table.size(), 2U);
    const Array<Inventory::PartSpec>& ofA = *table.find(DeviceImp::guid(u"a", u""));
    ASSERT_EQ(ofA.size(), 1U);
    EXPECT_EQ(ofA[0].id, u"1");
    EXPECT_EQ(ofA[0].text, u"(1:18)");
    EXPECT_EQ(ofA[0].devices, (Array<String>{String(u"a|"), String(u"b|")}));
}

TEST_F(RunTest, NestedPartsAreToldAsATip) {
    Inventory inventory;
    Inventory::DeviceToPartsTable table;
    inventory.setStateManager(store);
    inventory.setDeviceToPartsTable(&table);
    inventory.loadInventoryScript(text("<inventory-check><part name='P'><part name='Q'>" + device("a") +
                                       "</part></part>" + device("x") + "</inventory-check>"));
    EXPECT_FALSE(inventory.run());
    EXPECT_THAT(utf8(inventory.script().toString()), HasSubstr("Nested &lt;part&gt; nodes are not supported"));
}

TEST(LoadingTest, RejectsWithTheReasonAndKeepsNothing) {
    Inventory inventory;
    RecordingObserver observer;
    inventory.registerInventoryObserver(observer);
    inventory.registerInventoryObserver(observer);
    bool satisfied = true;
    EXPECT_FALSE(inventory.loadInventoryScript(u"<inventory-check>\n\n<a></b>"));
    EXPECT_FALSE(inventory.run(&satisfied));
    EXPECT_FALSE(inventory.loadInventoryScript(u"<inventory/>"));
    EXPECT_FALSE(inventory.loadInventoryScriptFile(u"/nowhere/script.xml"));
    EXPECT_TRUE(satisfied);
    ASSERT_EQ(observer.fileErrors.size(), 8U);
    EXPECT_THAT(observer.fileErrors[0], testing::StartsWith("Invalid inventory script.  Xml error on line 3: "));
    EXPECT_THAT(observer.fileErrors[2], HasSubstr("has not loaded successfully"));
    EXPECT_EQ(observer.fileErrors[4], "Invalid inventory script.  Script must contain <inventory-check> element.");
    EXPECT_EQ(observer.fileErrors[6], "Could not open Inventory Script file: /nowhere/script.xml");
    EXPECT_TRUE(inventory.loadInventoryScript(u"<Inventory-CHECK/>"));
}

TEST(LoadingTest, AFileReadsAsItsTextDoes) {
    const std::string path = testing::TempDir() + "vrx-script-" + std::to_string(getpid()) + ".xml";
    const std::string script = R"(<inventory-check><device type="Fan" name="%u0041"/></inventory-check>)";
    std::ofstream(path) << script;
    StateManager store;
    addDevice(store, "Fan", "fan", "f");
    Inventory ofText;
    Inventory ofFile;
    EXPECT_TRUE(ofText.loadInventoryScript(text(script)));
    EXPECT_TRUE(ofFile.loadInventoryScriptFile(text(path)));
    EXPECT_EQ(ofFile.script().toString(), ofText.script().toString());

    // A plain one is loaded while it is read; one that needs more leaves what was loaded, without a word.
    RecordingObserver observer;
    ofFile.registerInventoryObserver(observer);
    EXPECT_FALSE(ofFile.loadPlainScriptFile(text(path)));
    for (const char* const needsMore : {"<inventory-check>", "<inventory/>", "<inventory-check note='\xE9'/>"}) {
        std::ofstream(path) << needsMore;
        EXPECT_FALSE(ofFile.loadPlainScriptFile(text(path))) << needsMore;
    }
    EXPECT_EQ(ofFile.script().toString(), ofText.script().toString());
    EXPECT_THAT(observer.fileErrors, testing::IsEmpty());
    std::ofstream(path) << "<inventory-check check-names='false'><device type='Fan' name='x'/></inventory-check>";
    EXPECT_TRUE(ofFile.loadPlainScriptFile(text(path)));
    ofFile.setStateManager(store);
    EXPECT_TRUE(ofFile.run());
    std::filesystem::remove(path);
}

TEST(LoadingTest, FlagsAreReadAnewAndTipsSettingStays) {
    StateManager store;
    addDevice(store, "Fan", "fan", "f");
    Inventory inventory;
    inventory.setStateManager(store);
    inventory.setEnableUnsatisfiedDeviceTips(false);
    EXPECT_TRUE(inventory.loadInventoryScript(
        u"<inventory-check check-names='false'><device type='Fan' name='x'/></inventory-check>"));
    EXPECT_TRUE(inventory.run());
    EXPECT_TRUE(inventory.loadInventoryScript(u"<inventory-check><device type='Fan' name='x'/></inventory-check>"));
    EXPECT_FALSE(inventory.run());
    EXPECT_EQ(inventory.script().toString().view().find(u"Unsatisfied device"), StringView::npos);
}

TEST(LoadingTest, ACopyRunsAsItsTextWouldAndLeavesTheOriginal) {
    const String script =
        u"<!-- of \u20AC --><inventory-check check-names='false'>\n <device type='Fan' name='x'/>\n"
        u"  <device type='Fan' hwlocator='g'/></inventory-check>";
    StateManager store;
    addDevice(store, "Fan", "fan", "f");
    Inventory original;
    Inventory ofText;
    Inventory copy;
    EXPECT_TRUE(
        copy.loadInventoryScript(u"<inventory-check check-hwlocators='false'><device type='Fan'/></inventory-check>"));
    for (Inventory* const loaded : {&original, &ofText}) {
        EXPECT_TRUE(loaded->loadInventoryScript(script));
    }
    for (int times = 0; times < 2; ++times) {
        copy.loadInventoryScript(original);
        for (Inventory* const run : {&ofText, &copy}) {
            run->setStateManager(store);
            EXPECT_FALSE(run->run());
        }
        EXPECT_EQ(copy.script().toString(), ofText.script().toString());
        EXPECT_EQ(copy.findings().back().element->Row(), 2U);
        EXPECT_TRUE(ofText.loadInventoryScript(script));
    }
    EXPECT_EQ(original.script().toString(), ofText.script().toString());
}

TEST(RunningTest, ASecondRunStartsFromTheAnnotatedScript) {
    StateManager store;
    addDevice(store, "Fan", "fan", "f", "", {{"Rpm", {"1"}}});
    Inventory inventory;
    RecordingObserver observer;
    inventory.setStateManager(store);
    inventory.registerInventoryObserver(observer);
    inventory.loadInventoryScript(
        u"<inventory-check><device type='Fan'><property key='Rpm' value='2'/></device></inventory-check>");
    EXPECT_FALSE(inventory.run());
    EXPECT_FALSE(inventory.run());
    ASSERT_EQ(observer.events.size(), 3U);
    EXPECT_EQ(utf8(observer.events[1].name()), "EncounteredUnknownElement");
    // The three errors that the first run wrote into the property are expected entries now, and the value is not.
    EXPECT_THAT(utf8(inventory.script().toString()), HasSubstr("Expected (regular expression): 2, , <"));
}

/// A device whose property look-up fails in an unexpected way.
TEST(RunningTest, AnUnexpectedExceptionIsReportedNotThrown) {
    struct ThrowingObserver : RecordingObserver {
        void handleEvent(const TestRunEventImp& event) override {
            RecordingObserver::handleEvent(event);
            if (event.type().code() == 2) {
                throw Exception(u"boom");
            }
        }
    } observer;
    StateManager store;
    Inventory inventory;
    inventory.setStateManager(store);
    inventory.registerInventoryObserver(observer);
    inventory.loadInventoryScript(u"<inventory-check><wheel/></inventory-check>");
    bool satisfied = true;
    EXPECT_FALSE(inventory.run(&satisfied));
    EXPECT_TRUE(satisfied);
    EXPECT_EQ(observer.events.size(), 2U);
    EXPECT_THAT(utf8(inventory.script().toString()), HasSubstr("<error>Inventory Unexpected Error: boom</error>"));
}

TEST(CheckDeviceTest, AnswersForOneDeviceAlone) {
    StateManager store;
    const auto fan = addDevice(store, "Fan", "fan", "f", "", {{"Rpm", {"900"}}});
    RecordingObserver observer;
    EXPECT_TRUE(Inventory::checkDevice(*fan, u"", &observer, false));
    EXPECT_TRUE(Inventory::checkDevice(*fan, u"<property key='Rpm' value='^9'/>", &observer, false));
    EXPECT_THAT(observer.events, IsEmpty());
    EXPECT_FALSE(Inventory::checkDevice(*fan, u"<property key='Rpm'", &observer, true));
    EXPECT_THAT(observer.events, IsEmpty());

    EXPECT_TRUE(Inventory::checkDevice(*fan, u"<property key='Rpm' value='^9'/>", &observer, true));
    ASSERT_EQ(observer.events.size(), 1U);
    EXPECT_EQ(utf8(observer.events[0].tips()[0]->toString(0, false)),
              "<inventory-check><device type=\"Fan\"><property key=\"Rpm\" value=\"^9\"><error>f - Rpm\n</error>"
              "<error>Found value: 900</error></property></device></inventory-check>");

    EXPECT_FALSE(Inventory::checkDevice(*fan, u"<property key='Colour'/>", &observer, true));
    ASSERT_EQ(observer.events.size(), 3U);
    EXPECT_THAT(utf8(observer.events[2].tips()[0]->toString(0, false)),
                testing::AllOf(HasSubstr("property key: Colour not found"),
                               testing::Not(HasSubstr("Unsatisfied device of type"))));
    EXPECT_EQ(store.deviceCount(), 1U);
}

/// Random scripts over devices that no two elements share: there the verdict is plain logic.
class RandomScriptsTest : public testing::Test {
protected:
    struct Sample {
        std::string xml;
        bool value;
    };
    Sample leaf() {
        const bool present = random() % 3 != 0;
        return {device(present ? "d" + std::to_string(m_next++) : "missing"), present};
    }
    Sample group(int depth) {
        if (depth == 0 || random() % 3 == 0) {
            return leaf();
        }
        const char* const names[] = {"and", "or", "part", "not"};
        // An or inside a part cannot be decided, and inside a not the combinations would not be plain logic.
        const std::string name = names[m_noOr ? (random() % 2) * 2 : random() % 4];
        const bool outer = m_noOr;
        m_noOr = m_noOr || name == "part" || name == "not";
        bool all = true;
        bool any = false;
        std::string inner;
        const auto count = 1 + random() % 3;
        for (unsigned i = 0; i < count; ++i) {
            const Sample child = group(depth - 1);
            inner += child.xml;
            all = all && child.value;
            any = any || child.value;
        }
        m_noOr = outer;
        return {"<" + name + ">" + inner + "</" + name + ">", name == "or" ? any : name == "not" ? !all : all};
    }
    std::mt19937 random{7};
    int m_next = 0;
    bool m_noOr = false;
};

TEST_F(RandomScriptsTest, VerdictEqualsPlainLogic) {
    StateManager store;
    for (int i = 0; i < 200; ++i) {
        addDevice(store, "Storage", "disk", "d" + std::to_string(i));
    }
    int passed = 0;
    for (int round = 0; round < 400; ++round) {
        m_next = 0;
        const Sample sample = group(4);
        const Outcome outcome = check(store, sample.xml);
        ASSERT_EQ(outcome.passed, sample.value) << sample.xml;
        ASSERT_EQ(outcome.errors.empty(), sample.value) << outcome.annotated;
        passed += outcome.passed ? 1 : 0;
    }
    EXPECT_GT(passed, 50);
    EXPECT_LT(passed, 350);
}

}  // namespace
}  // namespace vrx::test
