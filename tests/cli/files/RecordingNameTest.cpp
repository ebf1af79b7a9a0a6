#include "cli/files/RecordingName.h"

#include <gmock/gmock.h>

namespace vrx::cli {
namespace {

using testing::ElementsAre;

TEST(RecordingNameTest, noTextLeadsOutOfTheFolder) {
    EXPECT_EQ(fileWord(u"../x"), "x..-x");
    EXPECT_EQ(fileWord(u"-rf"), "x-rf");
    EXPECT_EQ(fileWord(u"A b/c\\d\ne"), "A-b-c-d-e");
    EXPECT_EQ(fileWord(String(300, u'9')).size(), 100U);
}

TEST(RecordingNameTest, namesAreReadBack) {
    const RecordingName name = parseRecordingName("FX_1_20261122T133326Z-12.xml");
    EXPECT_EQ(name, (RecordingName{"FX_1", "20261122T133326Z", 12}));
    EXPECT_EQ(name.text(), "FX_1_20261122T133326Z-12.xml");
    EXPECT_LT(parseRecordingName("FX_1_20261122T133326Z-9.xml"), name);
    for (const char* const other : {"rack1.xml", "_20261122T133326Z.xml", "FX_20261122T133326Z", "FX_2026.xml",
                                    "FX_20261122T133326Z-1.xml", "FX_20261122T133326Z-.xml"}) {
        EXPECT_EQ(parseRecordingName(other), RecordingName()) << other;
    }
}

TEST(RecordingNameTest, theNewestOfEachMachineCounts) {
    EXPECT_THAT(newestRecordings({"a/A_20261122T133326Z.xml", "a/A_20261122T133326Z-2.xml", "a/A_20261121T133326Z.xml",
                                  "b/A_20261121T133326Z.xml", "a/B_20261121T133326Z.xml", "a/x.xml", "a/y.xml"}),
                ElementsAre("a/A_20261122T133326Z-2.xml", "b/A_20261121T133326Z.xml", "a/B_20261121T133326Z.xml",
                            "a/x.xml", "a/y.xml"));
}

}  // namespace
}  // namespace vrx::cli
