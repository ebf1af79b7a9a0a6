#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/libInventory/support/World.h"

/// The search over combinations of alternatives: which are tried and in which order, what each of them starts from, and
/// whose findings remain.
namespace vrx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string disk(const std::string& hwLocator, const std::string& inner = "") {
    return R"(<device type="Storage" hwlocator=")" + hwLocator + R"(">)" + inner + "</device>";
}

std::string missing(const std::string& hwLocator) { return "No device of type: Storage with hwlocator: " + hwLocator; }

const std::string UNSATISFIED = "Unsatisfied device of type: Storage";

class SearchTest : public testing::Test {
protected:
    SearchTest() {
        for (const char* const locator : {"a", "b", "c"}) {
            addDevice(store, "Storage", std::string("disk ") + locator, locator, "", {{"Size", {"1"}}});
        }
    }
    StateManager store;
};

TEST_F(SearchTest, AnAlternativeWhoseCandidatesAllFailIsPruned) {
    const std::string threeFail = R"(<device type="Storage"><property key="Size" value="2"/></device>)";
    const std::string oneFails = disk("a", R"(<property key="Size" value="3"/>)");
    const Outcome outcome = check(store, "<or>" + threeFail + oneFails + "</or>");
    EXPECT_THAT(outcome.errors, ElementsAre("a - Size", " Expected (regular expression): 3",
                                            " did not match sysinfo value  : 1", UNSATISFIED, "unsatisfied or node"));
    EXPECT_THAT(outcome.unsatisfied, ElementsAre("a"));
}

TEST_F(SearchTest, APrunedOrIsLookedIntoOnceAndThenOnlyCounted) {
    const std::string hopeless = "<or>" + disk("x") + disk("y") + "</or>";
    const Outcome once = check(store, hopeless + disk("z"));
    EXPECT_THAT(once.errors, ElementsAre(UNSATISFIED, missing("x"), "unsatisfied or node", UNSATISFIED, missing("z")));
    const Outcome twice = check(store, hopeless + "<or>" + disk("a") + disk("b") + "</or>" + disk("z"));
    EXPECT_THAT(twice.errors, ElementsAre("unsatisfied or node", UNSATISFIED, missing("z")));
    EXPECT_THAT(twice.unsatisfied, ElementsAre("z"));
}

TEST_F(SearchTest, TheFirstOrTurnsFastestAndCarriesAtItsEnd) {
    const auto passes = [this](const std::string& taken, const std::string& first, const std::string& second) {
        std::string body = disk(taken);
        for (const std::string& digit : {first, second}) {
            body += "<or>" + disk(digit.substr(0, 1)) + disk(digit.substr(1)) + "</or>";
        }
        return check(store, body).passed;
    };
    EXPECT_TRUE(passes("b", "ba", "cb"));
    EXPECT_TRUE(passes("b", "ab", "bc"));
    EXPECT_TRUE(passes("b", "ba", "bc"));
    EXPECT_FALSE(passes("b", "bb", "ac"));
}

TEST_F(SearchTest, AnEmptyOrIsADigitThatIsAlwaysAtItsEnd) {
    const std::string all = disk("a") + disk("b") + disk("c");
    EXPECT_THAT(check(store, "<or/>" + all + "<or>" + all + "</or>").unsatisfied, ElementsAre("c"));
}

TEST_F(SearchTest, AmongManyDevicesANameIsStillAPattern) {
    for (const char* const locator : {"d", "e", "f"}) {
        addDevice(store, "Storage", std::string("disk ") + locator, locator);
    }
    const std::string pattern = R"(<device type="Storage" name="^disk [af]$"/>)";
    EXPECT_TRUE(check(store, pattern + pattern).passed);
    EXPECT_FALSE(check(store, pattern + pattern + pattern).passed);
}

TEST_F(SearchTest, EachCombinationStartsFromAllCommonLinks) {
    // The first alternative takes disk b from the named element, and fails because disk c is wanted outside.
    const std::string body = R"(<device type="Storage" name="disk [ab]"/>)" + disk("c") + "<or><and>" + disk("b") +
                             disk("c") + "</and>" + disk("a") + "</or>";
    EXPECT_TRUE(check(store, body).passed);
}

TEST_F(SearchTest, ARunSeesDevicesThatWereAddedAfterTheLast) {
    Inventory inventory;
    inventory.setStateManager(store);
    inventory.loadInventoryScript(
        text("<inventory-check>" + disk("b") + disk("d") + "<or>" + disk("a") + disk("b") + "</or></inventory-check>"));
    EXPECT_FALSE(inventory.run());
    addDevice(store, "Storage", "disk d", "d");
    EXPECT_TRUE(inventory.run());
}

TEST_F(SearchTest, ADeviceThatWasTakenByAnotherElementIsStillThereForANot) {
    const Outcome outcome = check(store, disk("a") + "<not>" + disk("a") + "</not>");
    EXPECT_THAT(outcome.errors, ElementsAre("matched device under not node"));
    EXPECT_THAT(outcome.unsatisfied, IsEmpty());
    EXPECT_THAT(check(store, disk("a") + disk("a")).errors, ElementsAre(UNSATISFIED));
}

class PartsInScriptsTest : public SearchTest {
protected:
    /// The guids of the table with the parts entered under each, "guid: name name".
    std::vector<std::string> partsOf(const std::string& body, std::vector<std::string>* extra = nullptr) {
        Inventory inventory;
        Inventory::DeviceToPartsTable table;
        inventory.setStateManager(store);
        inventory.setDeviceToPartsTable(&table);
        inventory.loadInventoryScript(text("<inventory-check>" + body + "</inventory-check>"));
        inventory.run();
        for (const auto& spec : inventory.extraDevices()) {
            if (extra != nullptr) {
                extra->push_back(utf8(spec.hwLocator));
            }
        }
        std::vector<std::string> lines;
        for (const auto& entry : table) {
            std::string line = utf8(entry.key) + ":";
            for (const auto& part : entry.value) {
                line += " " + utf8(part.name);
            }
            lines.push_back(line);
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }
};

TEST_F(PartsInScriptsTest, DevicesUnderANotBelongToNoPart) {
    EXPECT_THAT(partsOf("<not><part name='P'>" + disk("a") + "</part>" + disk("x") + "</not>"), IsEmpty());
    EXPECT_THAT(partsOf("<part name='P'>" + disk("a") + "<not>" + disk("b") + disk("x") + "</not></part>"),
                ElementsAre("a|: P"));
    EXPECT_THAT(partsOf("<part name='P'>" + disk("a") + "<and>" + disk("b") + "</and></part><part name='Q'>" +
                        disk("c") + "</part>"),
                ElementsAre("a|: P", "b|: P", "c|: Q"));
}

TEST_F(PartsInScriptsTest, DevicesOfAFailingPartAreExtraWhereverTheyStandInIt) {
    const std::string rule = R"(<fail-on-extra type="Storage"/>)";
    const std::string failing = "<part name='P'>" + disk("a") + disk("x") + "<and>" + disk("b") + "</and></part>";
    std::vector<std::string> extra;
    EXPECT_THAT(partsOf(failing + disk("c") + rule, &extra), IsEmpty());
    EXPECT_THAT(extra, ElementsAre("a", "b"));
    EXPECT_THAT(check(store, failing + disk("c") + rule).extra, IsEmpty());
}

}  // namespace
}  // namespace vrx::test
