#include "libReport/CheckedElements.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "libReport/CheckRun.h"

namespace vrx {
namespace {

using Outcome = CheckedElement::Outcome;

std::vector<Outcome> outcomesOf(const std::vector<CheckedElement>& elements) {
    std::vector<Outcome> outcomes;
    std::ranges::transform(elements, std::back_inserter(outcomes), &CheckedElement::outcome);
    return outcomes;
}

TEST(CheckedElementsTest, TellOfTheAlternativeThatTheFaultSpeaksOf) {
    StateManager machine;
    CheckRun run(machine);
    ASSERT_TRUE(
        run.inventory().loadInventoryScript(u"<inventory-check>\n<or>\n<device type='Battery'/>\n"
                                            u"<device type='Fan'/>\n</or>\n<device type='Camera'/>\n"
                                            u"</inventory-check>"));
    CheckReport report = run.run();
    ASSERT_EQ(outcomesOf(report.checked), (std::vector{Outcome::Failed, Outcome::NotChosen, Outcome::Failed}));

    report.faults = {Fault(), Fault()};
    report.faults[0].place = {4, 1};
    report.faults[1].place = {6, 1};
    const std::vector<CheckedElement> checked = checkedElements(run.inventory(), report);
    EXPECT_EQ(outcomesOf(checked), (std::vector{Outcome::NotChosen, Outcome::Failed, Outcome::Failed}));
    EXPECT_EQ(checked[1].faults, std::vector<std::size_t>{0});
    EXPECT_EQ(checked[2].faults, std::vector<std::size_t>{1});
}

TEST(CheckedElementsTest, FailForSureOnlyWhereTheCheckDoes) {
    StateManager machine;
    machine.addUnread({u"bus", CapabilityImp(u"Fan"), u"needs root", {}});
    CheckRun run(machine);
    ASSERT_TRUE(run.inventory().loadInventoryScript(u"<inventory-check><device type='Fan'/></inventory-check>"));
    const CheckReport report = run.run();
    EXPECT_EQ(report.verdict, Verdict::Undecided);
    EXPECT_EQ(outcomesOf(report.checked), std::vector{Outcome::Undetermined});
}

}  // namespace
}  // namespace vrx
