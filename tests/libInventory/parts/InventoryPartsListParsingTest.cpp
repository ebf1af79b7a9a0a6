#include <gtest/gtest.h>

#include "libInventory/Inventory.h"

namespace vrx {
namespace {

const std::string BLANK_PARTS =
    " found.  Blank parts are not allowed for part generation.  Please correct these parts at the Kestrel server "
    "Monitoring Console.";

struct PartsCase {
    const char16_t* xml;
    Inventory::ParsePartsResult result;
    const char* parts = "";  ///< "name/id/description xml" of each
    std::string error = "untouched";
};

const PartsCase CASES[] = {
    {u" \r\n\t", Inventory::PartsEmptyInput},
    {u"<anything/>", Inventory::PartsParsed},
    {u"<p><other><device/></other><PART id='1' description='d'><x/><Or/></PART><other2 name='B'><Device/></other2></p>",
     Inventory::PartsParsed,
     R"(/1/d <PART id="1" description="d"><x/><Or/></PART>B// <other2 name="B"><Device/></other2>)"},
    {u"<p><part name='A'/><part name='G'><not/></part><part name='B'><property><device/></property></part></p>",
     Inventory::PartsBlank, R"(G// <part name="G"><not/></part>)", "Blank parts: A, B" + BLANK_PARTS},
    {u"<p><part/></p>", Inventory::PartsBlank, "", "Blank parts: " + BLANK_PARTS},
    {u"\n<p>\n <part", Inventory::PartsXmlError, "", "Failed to Parse xml (2,2): unclosed token"},
};

TEST(PartsListParsingTest, texts) {
    for (const PartsCase& test : CASES) {
        Array<Inventory::PartSpec> parts{Inventory::PartSpec(u"", u"", u"", u"", u"kept")};
        String error = u"untouched";
        EXPECT_EQ(Inventory::parsePartsList(test.xml, parts, error), test.result) << toUtf8(test.xml);
        EXPECT_EQ(error.toUtf8(), test.error);
        String text;
        for (const Inventory::PartSpec& part : parts) {
            text += concat(part.name, u"/", part.id, u"/", part.description, u" ", part.xml, part.text);
        }
        EXPECT_EQ(text.toUtf8(), std::string("// kept") + test.parts);
    }
}

TEST(PartsListParsingTest, files) {
    Array<Inventory::PartSpec> parts;
    String error;
    const String example = String::UTF8Decode(VRX_TEST_DATA "/../examples/server-parts.xml");
    EXPECT_EQ(Inventory::parsePartsListFile(example, parts, error), Inventory::PartsParsed);
    EXPECT_EQ(Inventory::parsePartsListFile(u"/none.xml", parts, error), Inventory::PartsXmlError);
    EXPECT_EQ(error, u"Failed to Parse xml file /none.xml (1,1): No such file or directory");
}

TEST(SpecsTest, partsAreCrossedAndEqualByNameAndDevicesEqualByLocators) {
    const Inventory::PartSpec part(u"n", u"i", u"d", u"fourth", u"fifth");
    EXPECT_EQ(part.text, u"fourth");
    EXPECT_EQ(part.xml, u"fifth");
    EXPECT_EQ(part, Inventory::PartSpec(u"n", u"other", u"", u"", u""));
    EXPECT_EQ(Inventory::DeviceSpec(u"a", u"Fan", u"h", u"o"), Inventory::DeviceSpec(u"b", u"Cache", u"h", u"o"));
}

}  // namespace
}  // namespace vrx
