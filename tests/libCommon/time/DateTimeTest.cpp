#include "libCommon/time/DateTime.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

String rewritten(StringView text) {
    const std::optional<DateTime> time = DateTime::fromIso8601(text);
    return time ? time->toIso8601() : String(u"none");
}

}  // namespace

TEST(DateTimeTest, readsDatesTimesAndZones) {
    EXPECT_EQ(DateTime::fromIso8601(u"1970-01-02")->secondsSinceEpoch(), 86400);
    EXPECT_EQ(rewritten(u"2026-11-21"), u"2026-11-21T00:00:00Z");
    EXPECT_EQ(rewritten(u"2026-11-21T10:33:20"), u"2026-11-21T10:33:20Z");
    EXPECT_EQ(rewritten(u"2024-02-29T23:59:59Z"), u"2024-02-29T23:59:59Z");
    EXPECT_EQ(rewritten(u"2026-01-01T00:30:00+01:00"), u"2025-12-31T23:30:00Z");
    EXPECT_EQ(rewritten(u"1969-12-31T20:00:00-04:30"), u"1970-01-01T00:30:00Z");
    EXPECT_EQ(rewritten(u"0001-01-01"), u"0001-01-01T00:00:00Z");
}

TEST(DateTimeTest, refusesWhatIsNoDate) {
    for (const String text : {u"", u"2026", u"2026-11", u"2023-02-29", u"2026-13-01", u"2026-00-10", u"2026-01-00",
                              u"2026-1-1", u"2026/01/01", u"2026-01-01 ", u"2026-01-01T", u"2026-01-01T10:00",
                              u"2026-01-01T24:00:00", u"2026-01-01T10:60:00", u"2026-01-01T10:00:00+01",
                              u"2026-01-01T10:00:00Zx", u"2026-01-01T10:00:00*01:00", u"2026-01-01 10:00:00"}) {
        EXPECT_EQ(rewritten(text), u"none") << text.toUtf8();
    }
}

TEST(DateTimeTest, stampsInLocalTime) {
    const char* const old = std::getenv("TZ");
    const std::string before = old == nullptr ? "" : old;
    setenv("TZ", "XYZ-2", 1);
    tzset();
    EXPECT_EQ(DateTime::fromIso8601(u"2026-11-21T08:33:20Z")->dateTimeStampString(), u"2026-11-21 10:33:20");
    old == nullptr ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
    tzset();
}

}  // namespace vrx
