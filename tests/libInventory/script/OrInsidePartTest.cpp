#include "libInventory/script/OrInsidePart.h"

#include <gtest/gtest.h>

#include "libCommon/xml/XmlDocument.h"

namespace vrx {
namespace {

bool isFoundIn(StringView content) {
    XmlDocument script;
    EXPECT_TRUE(script.Parse(concat(u"<inventory-check>", content, u"</inventory-check>")));
    return findOrInsidePart(*script.RootElement()) != nullptr;
}

TEST(OrInsidePartTest, IsFoundWhereACheckVisitsIt) {
    EXPECT_TRUE(isFoundIn(u"<part><or><device/></or></part>"));
    EXPECT_TRUE(isFoundIn(u"<or><and><PART><not><OR><and/></OR></not></PART></and></or>"));
    EXPECT_TRUE(isFoundIn(u"<part/><part><part/><or><device/></or></part>"));
}

TEST(OrInsidePartTest, IsHarmlessElsewhere) {
    EXPECT_FALSE(isFoundIn(u"<or><part><device/></part></or>"));
    EXPECT_FALSE(isFoundIn(u"<part><or/></part>"));
    EXPECT_FALSE(isFoundIn(u"<part><device><or><property/></or></device></part>"));
    EXPECT_FALSE(isFoundIn(u"<part><testset><or><device/></or></testset><gadget><or><device/></or></gadget></part>"));
}

}  // namespace
}  // namespace vrx
