#include "libLint/rules/patterns/PatternGrowth.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(PatternGrowthTest, SeesRepetitionsOfRepetitions) {
    for (const char16_t* pattern :
         {u"(a+)+$", u"^(?:\\w+\\s?)*$", u"(a*b?)*", u"(.*,)*", u"((ab)*)*", u"(?i:x|(?<n>y+))+", u"([^]a]+)*?",
          u"(a{2,}){3,}", u"(a{1,99}){1,99}", u"((a+|b)c?)+"}) {
        EXPECT_TRUE(canExplode(pattern)) << toUtf8(pattern);
    }
}

TEST(PatternGrowthTest, LetsHarmlessOnesPass) {
    for (const char16_t* pattern : {u"",
                                    u"a+b*.*",
                                    u"^(\\d+\\.)+\\d+$",
                                    u"(a++)+",
                                    u"(?>a+)+",
                                    u"(a+){3}",
                                    u"(a+)?",
                                    u"\\(a+\\)+",
                                    u"[(a+)]+",
                                    u"\\Q(a+)\\E+",
                                    u"(?=a+)+",
                                    u"(ab)+",
                                    u"((a+)-)+",
                                    u"(a{2}){2,}",
                                    u"a{+",
                                    u"(",
                                    u")",
                                    u"(a+",
                                    u"[a",
                                    u"\\"}) {
        EXPECT_FALSE(canExplode(pattern)) << toUtf8(pattern);
    }
}

}  // namespace
}  // namespace vrx
