#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "libCommon/logging/Logger.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(MatchStringTest, PatternFirstThenPlainTextWithoutCase) {
    const auto matches = [](const char16_t* pattern, const char16_t* value) {
        return Inventory::matchString(pattern, value);
    };
    EXPECT_TRUE(matches(u"^abc$", u"ABC"));
    EXPECT_TRUE(matches(u"b", u"abc"));
    EXPECT_FALSE(matches(u"B", u"abc"));
    EXPECT_TRUE(matches(u"", u""));
    EXPECT_TRUE(matches(u"Disk (C:) [1.0", u"disk (c:) [1.0"));  // does not compile, still equals its own text
    EXPECT_TRUE(matches(u"^VRXRRANGE[990-1010] MHz$", u"1.0 GHz"));
    EXPECT_FALSE(matches(u"^VRXRRANGE[990-1010] MHz$", u"1.2 GHz"));
}

class MatchingTest : public testing::Test {
protected:
    MatchingTest() {
        addDevice(store, "System", "Box", "sys", "os-sys");
        addDevice(store, "SolidStateDrive", "Fast Disk (C:)", "bay1", "/dev/sda",
                  {{"Size", {"500"}}, {"Model", {"X1"}}, {"Ports", {"xy", "xz"}}});
        addDevice(store, "HardDiskDrive", "Slow Disk", "bay2", "/dev/sdb",
                  {{"Size", {"4000"}}, {"Model", {"Y2"}}, {"None", {}}});
    }
    bool passes(const std::string& body, const std::string& rootAttributes = "") {
        return check(store, body, rootAttributes).passed;
    }
    std::vector<std::string> errorsOf(const std::string& body) { return check(store, body).errors; }
    StateManager store;
};

TEST_F(MatchingTest, DevicesAreFoundByTypeNameAndLocators) {
    EXPECT_TRUE(passes(R"(<device type="Storage" name="^Fast Disk \(C:\)$" hwlocator="bay1" oslocator="/dev/sda"/>)"));
    EXPECT_TRUE(passes(R"x(<device type="disk" NAME="fast disk (c:)"/>)x"));
    EXPECT_TRUE(passes(R"(<DEVICE TYPE="Storage" HwLocator="bay2"/>)"));
    EXPECT_FALSE(passes(R"(<device type="Storage" oslocator="/DEV/sda"/>)"));
    EXPECT_FALSE(passes(R"(<device type="HardDiskDrive" hwlocator="bay1"/>)"));
    EXPECT_TRUE(passes(R"(<device type="Storage"/><device type="Storage"/>)"));
    EXPECT_FALSE(passes(R"(<device type="Storage"/><device type="Storage"/><device type="Storage"/>)"));
    EXPECT_TRUE(passes(R"(<device type="Storage" name="nobody"/>)", R"( check-names="false")"));
    EXPECT_TRUE(passes(R"(<device type="Storage" hwlocator="x" oslocator="y"/>)",
                       R"( check-hwLocators="no" check-osLocators="0")"));
}

TEST_F(MatchingTest, TheTipNamesTheFilterThatLeftNobody) {
    const std::string unsatisfied = "Unsatisfied device of type: Storage";
    EXPECT_THAT(errorsOf(R"(<device type="Storage" name="n" hwlocator="h"/>)"),
                ElementsAre(unsatisfied, "No device of type: Storage with name: n"));
    EXPECT_THAT(errorsOf(R"(<device type="Storage" hwlocator="bay1" name="^Slow Disk$" oslocator="o"/>)"),
                ElementsAre(unsatisfied, "No device of type: Storage with name: ^Slow Disk$"));
    EXPECT_THAT(errorsOf(R"(<device type="Storage" oslocator="o"/>)"),
                ElementsAre(unsatisfied, "No device of type: Storage with oslocator: o"));
    EXPECT_THAT(errorsOf(R"(<device type="Storage" hwlocator="bay1" colour="red" name="n"/>)"),
                ElementsAre(unsatisfied, "Invalid attribute colour"));
    EXPECT_THAT(errorsOf(R"(<device type="Storage" name="n" colour="red"/>)"),
                ElementsAre(unsatisfied, "No device of type: Storage with name: n"));
    EXPECT_THAT(errorsOf(R"(<device type="Fan"/>)"),
                ElementsAre("Unsatisfied device of type: Fan", "No device of type: Fan"));
    EXPECT_THAT(errorsOf(R"(<device type="Warp"/>)"),
                ElementsAre("Invalid device type: Warp Please refer to Valid Device Types in Documentation",
                            "Unsatisfied device of type: Warp"));
}

TEST_F(MatchingTest, TheLoggedWayFindsTheSameDevices) {
    const std::vector<std::string> bodies = {
        R"(<device type="Storage" name="Disk" hwlocator="bay2"/>)", R"(<device type="Storage" name="n"/>)",
        R"(<device type="Storage" hwlocator="bay1" oslocator="/dev/sdb"/>)",
        R"(<device type="Storage" name="^Fast Disk \(C:\)$"/><device type="Storage"/>)"};
    struct CountingSink : LogSink {
        void writeLine(const std::string&, LogPriority, StringView message) override {
            removals += message.find(u"removing device because of") != StringView::npos ? 1 : 0;
        }
        int removals = 0;
    } sink;
    for (const std::string& body : bodies) {
        const Outcome quiet = check(store, body);
        Logger::addSink(sink);
        Logger::setRootPriority(LogPriority::Debug);
        const Outcome logged = check(store, body);
        Logger::setRootPriority(LogPriority::Warning);
        Logger::removeSink(sink);
        EXPECT_EQ(quiet.annotated, logged.annotated);
    }
    EXPECT_EQ(sink.removals, 1 + 2 + 2 + 1);
}

TEST_F(MatchingTest, PropertiesMatchAsPatternsArraysGreedily) {
    const auto with = [this](const std::string& tests) {
        return passes(R"(<device type="SolidStateDrive">)" + tests + "</device>");
    };
    EXPECT_TRUE(with(R"(<property key="Size"/>)"));
    EXPECT_FALSE(with(R"(<property key="size"/>)"));
    EXPECT_TRUE(with(R"(<property key="Size" value="^VRXRRANGE[450-550]$" units="anything"/>)"));
    EXPECT_FALSE(with(R"(<property key="Size" value=""  ><value value="^5000$"/></property>)"));
    EXPECT_TRUE(with(R"(<property key="Model" value="ignored"><value value="^X1$"/></property>)"));
    EXPECT_TRUE(with(R"(<property key="Ports"><v value="xy"/><v value="x.*"/></property>)"));
    EXPECT_FALSE(with(R"(<property key="Ports"><v value="x.*"/><v value="xy"/></property>)"));
    EXPECT_FALSE(with(R"(<property key="Ports"><v value="x.*"/></property>)"));
    EXPECT_TRUE(with(R"(<property key="Ports" value="xy, xz"/>)"));
}

TEST_F(MatchingTest, ListsOfValuesAreReadToTheirEndAndNoFurther) {
    // As many values as one word of marks holds.
    std::vector<std::string> values(64, "same");
    values.back() = "last";
    addDevice(store, "Fan", "fan", "f", "", {{"Ports", values}});
    std::string entries;
    for (const std::string& value : values) {
        entries += R"(<v value="^)" + value + R"($"/>)";
    }
    const auto with = [this](const std::string& inner) {
        return passes(R"(<device type="Fan"><property key="Ports">)" + inner + "</property></device>");
    };
    const std::string last = R"(<v value="^last$"/>)";
    EXPECT_TRUE(with(entries));
    EXPECT_TRUE(with(last + entries.substr(0, entries.size() - last.size())));
    EXPECT_FALSE(with(entries.substr(0, entries.size() - last.size()) + R"(<v value="^same$"/>)"));
    EXPECT_FALSE(with(entries + last));
}

TEST_F(MatchingTest, GroupsInsideADevice) {
    const auto with = [this](const std::string& tests) {
        return passes(R"(<device type="SolidStateDrive">)" + tests + "</device>");
    };
    const std::string yes = R"(<property key="Size"/>)";
    const std::string no = R"(<property key="Nothing"/>)";
    EXPECT_TRUE(with("<or>" + no + yes + "</or>"));
    EXPECT_FALSE(with("<or>" + no + no + "</or>"));
    EXPECT_FALSE(with("<or/>"));
    EXPECT_TRUE(with("<and/>"));
    EXPECT_FALSE(with("<not/>"));
    EXPECT_TRUE(with("<not>" + yes + no + "</not>"));
    EXPECT_FALSE(with("<not><and>" + yes + yes + "</and></not>"));
}

TEST_F(MatchingTest, FailedTestsSayWhatWasExpectedAndFound) {
    EXPECT_THAT(
        errorsOf(R"(<device type="SolidStateDrive"><property key="Model" value="a"><v value="b"/><v value="c"/>)"
                 R"(</property><property key="Colour"/></device>)"),
        ElementsAre("bay1 - Model", " Expected (regular expression): ab, c", " did not match sysinfo value  : X1",
                    "property key: Colour not found in Sysinfo SolidStateDrive device: Fast Disk (C:)",
                    "Unsatisfied device of type: SolidStateDrive"));
}

TEST_F(MatchingTest, ExpectedFailuresStayUnseen) {
    const std::string no = R"(<property key="Model" value="^never$"/>)";
    const std::string yes = R"(<property key="Model" value="X1"/>)";
    const std::string fail = R"(<property key="Gone"/>)";
    const auto visible = [this](const std::string& tests) {
        auto errors = errorsOf(R"(<device type="SolidStateDrive">)" + tests + "</device>");
        return std::count(errors.begin(), errors.end(), "bay1 - Model");
    };
    EXPECT_EQ(visible(no + fail), 1);
    EXPECT_EQ(visible("<or>" + no + yes + "</or>" + fail), 0);
    EXPECT_EQ(visible("<not>" + no + "</not>" + fail), 0);
    // Flipped twice (failed alternative of a satisfied or, inside a satisfied not): visible again.
    EXPECT_EQ(visible("<not><or>" + no + yes + "</or>" + fail + "</not>" + fail), 1);
}

TEST_F(MatchingTest, NoticesComeOnceHoweverManyCandidates) {
    const Outcome outcome = check(store, R"(<device type="Storage"><wheel a="1"/><not><not/></not></device><wheel/>)");
    EXPECT_THAT(outcome.events,
                ElementsAre("EncounteredUnknownElement", "FoundNotUnderNot", "EncounteredUnknownElement"));
}

TEST_F(MatchingTest, EncodedTextIsDecodedForMatchingAndQuotedAsWritten) {
    addDevice(store, "Fan", "a\x01z %u0041", "f\x01", "", {{"K", {"\x02"}}});
    EXPECT_TRUE(
        passes("<device type=\"Fan\" name=\"^a\x01z %u0041$\" hwlocator=\"f\x01\">"
               "<property key=\"K\" value=\"^\x02$\"/></device>"));
    EXPECT_THAT(errorsOf("<device type=\"Fan\" hwlocator=\"\x03\"/>"),
                ElementsAre("Unsatisfied device of type: Fan", "No device of type: Fan with hwlocator: %u0003"));
}

TEST_F(MatchingTest, ManyEqualCandidatesAllLeaveTheirTips) {
    StateManager fans;
    for (int i = 0; i < 3; ++i) {
        addDevice(fans, "Fan", "f", "slot" + std::to_string(i), "", {{"Rpm", {"1"}}});
    }
    const Outcome outcome = check(fans, R"(<device type="Fan"><property key="Rpm" value="2"/></device>)");
    EXPECT_THAT(outcome.annotated, HasSubstr("slot2 - Rpm"));
    EXPECT_EQ(outcome.errors.size(), 1U + 3 * 3);
}

TEST(MatchingListsTest, LongListsAreTakenGreedilyInWhateverOrderTheyCome) {
    std::mt19937 random(3);
    const auto oneOf = [&random](const std::vector<std::string>& texts) {
        return texts[random() % texts.size()];
    };
    int passed = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> left;
        std::vector<std::string> patterns;
        for (int i = 0; i < 14; ++i) {
            left.push_back(oneOf({"a", "A", "a.b", "A.B", "aXb", "c"}));
            patterns.push_back(left.back() == "c" ? oneOf({"^c$", "C"})
                                                  : oneOf({"^a$", "^A$", "^a\\.b$", "a.b", "^aXb$"}));
        }
        std::shuffle(patterns.begin(), patterns.end(), random);
        StateManager store;
        addDevice(store, "Fan", "f", "hw", "", {{"List", left}});
        bool expected = true;
        std::string body;
        for (const std::string& pattern : patterns) {
            const auto taken = std::find_if(left.begin(), left.end(), [&pattern](const std::string& value) {
                return Inventory::matchString(text(pattern), text(value));
            });
            body += "<value value='" + pattern + "'/>";
            expected = expected && taken != left.end();
            if (expected) {
                left.erase(taken);
            }
        }
        body = "<device type='Fan'><property key='List'>" + body + "</property></device>";
        ASSERT_EQ(check(store, body).passed, expected) << body;
        passed += expected ? 1 : 0;
    }
    EXPECT_GT(passed, 5);
    EXPECT_LT(passed, 295);
}

}  // namespace
}  // namespace vrx::test
