#include "libFleet/FleetSummary.h"

#include <gmock/gmock.h>

#include "libFleet/FleetWriter.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

FleetFault fault(const std::string& place, const std::string& property = "Size") {
    return {keyOf({"wrong", "MemoryModule", "", place, "", "", "", 1, 1, {property}}), place + " is wrong"};
}

FleetResult machine(const std::string& file, std::vector<FleetFault> faults) {
    FleetResult result;
    result.file = file;
    result.verdict = faults.empty() ? FleetVerdict::Passed : FleetVerdict::Failed;
    result.faults = std::move(faults);
    return result;
}

std::string summaryText(const FleetSummary& summary) {
    std::string text;
    fleetFormatNamed("text")->make(TextFormat())->end(summary, text);
    return text;
}

TEST(FleetSummaryTest, countsFaultsAndGroupsOfMachines) {
    FleetSummary summary;
    const auto first = summary.add(machine("a", {fault("A1"), fault("B1")}));
    EXPECT_EQ(summary.add(machine("b", {fault("B1"), fault("A1"), fault("A1")})), first) << "the same set";
    EXPECT_NE(summary.add(machine("c", {fault("B1")})), first);
    EXPECT_EQ(summary.add(machine("d", {})), std::nullopt);
    const auto frequent = summary.frequentFaults(20);
    ASSERT_EQ(frequent.size(), 2U);
    EXPECT_EQ(frequent[0]->key.title(), "wrong MemoryModule at B1: Size");
    EXPECT_EQ(frequent[0]->machines, 3U);
    EXPECT_EQ(keyOf({"missing", "Slot", "^Memory slot$", "", "", "", "", 1, 1, {}}).title(),
              "missing Slot Memory slot");
    EXPECT_EQ(frequent[1]->machines, 2U) << "a machine counts once";
    EXPECT_THAT(summary.largestGroups(1)[0]->examples, ElementsAre("a", "b"));
}

TEST(FleetSummaryTest, blamesTheScriptForWhatMostMachinesHave) {
    FleetSummary summary;
    summary.add(machine("a", {fault("A1")}));
    summary.add(machine("b", {fault("A1")}));
    EXPECT_EQ(summary.suspect(), nullptr) << "two machines are no fleet";
    summary.add(machine("c", {}));
    ASSERT_NE(summary.suspect(), nullptr);
    EXPECT_THAT(summaryText(summary), HasSubstr("2 of 3 machines have one fault: wrong MemoryModule at A1: Size;"));
    summary.add(machine("d", {}));
    EXPECT_EQ(summary.suspect(), nullptr) << "half is not more than half";
}

TEST(FleetSummaryTest, isBoundedAndSaysSo) {
    FleetSummary summary;
    for (std::size_t i = 0; i <= FleetSummary::MOST_FAULTS; ++i) {
        summary.add(machine("m", {fault("place " + std::to_string(i))}));
    }
    summary.add(machine("n", {fault("place 0")}));
    EXPECT_EQ(summary.faults().size(), FleetSummary::MOST_FAULTS);
    EXPECT_EQ(summary.groups().size(), FleetSummary::MOST_GROUPS);
    EXPECT_EQ(summary.uncountedFaults(), 1U);
    EXPECT_EQ(summary.machines(), FleetSummary::MOST_FAULTS + 2);
    EXPECT_EQ(summary.frequentFaults(1)[0]->machines, 2U) << "what is counted is counted exactly";
    EXPECT_THAT(summaryText(summary), HasSubstr("more than 100000 different faults; 1 fault beyond"));
    EXPECT_THAT(summaryText(summary), HasSubstr("50001 machines belong to none"));
}

TEST(FleetSummaryTest, keysHoldNothingOfAMachineItself) {
    const auto extra = [](const std::string& place, const std::string& serial) {
        return keyOf({"extra", "Disk", "", "", "", place, serial, 4, 5, {}}).text();
    };
    EXPECT_EQ(extra("bay-S1", "S1"), extra("bay-S2", "S2"));
    EXPECT_NE(extra("bay-1", "S1"), extra("bay-2", "S2"));
    EXPECT_EQ(fault("A1").key.text(),
              keyOf({"wrong", "MemoryModule", "", "A1", "", "x", "y", 9, 9, {"Size", "Size"}}).text());
    EXPECT_NE(fault("A1").key.text(), fault("A1", "Clock").key.text());
    EXPECT_NE(keyOf({"wrong", "", "", "", "", "", "", 1, 1, {}}).text(),
              keyOf({"wrong", "", "", "", "", "", "", 2, 1, {}}).text());
}

}  // namespace
}  // namespace vrx
