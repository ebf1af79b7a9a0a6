#include "libSystemState/results/TestRunEventImp.h"

#include <gtest/gtest.h>

#include "libCommon/xml/XmlDocument.h"
#include "libSystemState/results/InventoryTip.h"
#include "libSystemState/results/InventoryXmlTip.h"
#include "libSystemState/results/TestResultImp.h"

namespace vrx {
namespace {

TEST(TestRunEventImpTest, copiesOwnCopiesOfTheTips) {
    TestRunEventImp event(u"libInventory", u"FoundNotUnderNot");
    event.setEventOccurence(EventTypeImp(2), u"why", u"file", 12);
    event.setVariable(u"location", VRXValue(u"(1:2)")).setVariable(u"count", VRXValue(std::uint32_t{3}));
    event.setVariable(u"location", VRXValue(u"(4:5)"));
    event.addTip(new InventoryXmlTip(u"<a/>"));
    event.addTip(new InventoryTip(u"message", u"", nullptr, u"", u""));

    const TestRunEventImp copy(event);
    TestRunEventImp assigned(u"", u"");
    assigned.addTip(new InventoryXmlTip(u"gone"));
    assigned = event;
    const TipImp* const original = event.tips()[0].get();
    const TestRunEventImp moved(std::move(event));
    EXPECT_EQ(moved.tips()[0].get(), original);
    for (const TestRunEventImp* kept : {&copy, static_cast<const TestRunEventImp*>(&assigned)}) {
        EXPECT_EQ(kept->toString(), u"libInventory: FoundNotUnderNot, location = (4:5), count = 3");
        EXPECT_EQ(kept->type().code(), 2);
        EXPECT_EQ(kept->detail(), u"why");
        EXPECT_EQ(kept->file(), u"file");
        EXPECT_EQ(kept->line(), 12);
        ASSERT_EQ(kept->tips().size(), 2u);
        EXPECT_NE(kept->tips()[0].get(), original);
        EXPECT_EQ(kept->tips()[0]->type(), TipImp::Type::InventoryXml);
        EXPECT_EQ(kept->tips()[0]->toString(0, false), u"<a/>");
        EXPECT_EQ(kept->tips()[1]->toString(0, false), u"message");
    }
}

TEST(InventoryTipTest, rendersMessageFurtherTextsAndPlace) {
    XmlDocument document;
    ASSERT_TRUE(document.Parse(u"<a>\n  <part/>\n</a>"));
    const XmlElement* part = document.RootElement()->FirstChildElement();
    const InventoryTip tip(u"unsatisfied part node", u"s.xml", part, u"A", u"b");
    EXPECT_EQ(tip.toString(0, false), u"unsatisfied part node: A: b");
    EXPECT_EQ(tip.toString(0, true), u"unsatisfied part node: A: b [s.xml(2:3)]");
    EXPECT_EQ(InventoryTip(u"m", u"s.xml", nullptr, u"", u"x").toString(0, true), u"m: x [s.xml]");
}

TEST(TestResultImpTest, namesItsCodes) {
    const std::pair<int, const char16_t*> cases[] = {{43, u"Passed"},
                                                     {40, u"Passed with extra devices"},
                                                     {41, u"Failed: ambiguous parts"},
                                                     {5, u"Failed"},
                                                     {0, u"Not run"}};
    for (const auto& [code, text] : cases) {
        EXPECT_EQ(TestResultImp(static_cast<TestResultImp::Code>(code)).toString(), text);
    }
}

}  // namespace
}  // namespace vrx
