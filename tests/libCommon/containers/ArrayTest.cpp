#include "libCommon/containers/Array.h"

#include <gtest/gtest.h>

#include "libCommon/error/StructuredException.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

TEST(ArrayTest, keepsTheOrderOfWhatItHolds) {
    Array<String> array{u"b", u"c"};
    array.append(u"d");
    array.prepend(u"a");
    array.emplace(std::size_t{2}, u'e');
    array.remove(1);
    EXPECT_EQ(array, (Array<String>{u"a", u"c", u"d", u"ee"}));
    array.truncate(2);
    EXPECT_EQ(array.back(), u"c");
    EXPECT_EQ(array.front(), u"a");
}

TEST(ArrayTest, failsOnEveryIndexOutOfRange) {
    Array<int> array{1, 2};
    const Array<int>& constant = array;
    EXPECT_THROW(array.remove(2), StructuredException);
    EXPECT_THROW(array.truncate(3), StructuredException);
    EXPECT_THROW(Array<int>().back(), StructuredException);
    EXPECT_THROW(static_cast<void>(constant[2]), StructuredException);
    try {
        static_cast<void>(array[2]);
        FAIL();
    } catch (const StructuredException& exception) {
        EXPECT_EQ(exception.code(), 7U);
        EXPECT_TRUE(exception.text().view().starts_with(u"Assertion failed: index < size() at "));
    }
}

}  // namespace vrx
