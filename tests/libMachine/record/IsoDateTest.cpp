#include "libMachine/record/IsoDate.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(IsoDateTest, readsDatesAsFirmwareWritesThem) {
    for (const char* const text : {"03/04/2019", "03/04/19", "2019-03-04", "2019/3/4", "20190304", "04.03.2019",
                                   "Mar 4 2019", "4 March, 2019", "2019-03-04T10:20:30Z"}) {
        EXPECT_EQ(isoDate(text), "2019-03-04") << text;
    }
    EXPECT_EQ(isoDate("12/31/99"), "1999-12-31");
    for (const char* const text : {"", "soon", "13/32/2019", "1.2.3", "2019", "00/00/0000"}) {
        EXPECT_EQ(isoDate(text), text);
    }
}

}  // namespace
}  // namespace vrx
