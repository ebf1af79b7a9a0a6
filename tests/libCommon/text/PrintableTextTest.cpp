#include "libCommon/text/PrintableText.h"

#include <gmock/gmock.h>

namespace vrx {
namespace {

using testing::ElementsAre;

TEST(PrintableTextTest, EscapesWhatATerminalWouldActOn) {
    EXPECT_EQ(printable(u"a\033[31m\tb\r\nc\x7F\u009B"), "a\\u001B[31m\\tb\\r\\nc\\u007F\\u009B");
    EXPECT_EQ(printable(u"\u202Eabc\u2066"), "\\u202Eabc\\u2066");
    EXPECT_EQ(printable(u"l\u00E4uft \U0001F600"), "l\u00E4uft \U0001F600");
    const char16_t unpaired[] = {u'x', 0xD800, u'y', 0xDC00, 0};
    EXPECT_EQ(printable(unpaired), "x\\uD800y\\uDC00");
    EXPECT_EQ(printable(std::string_view("a\x1b")), "a\\u001B");
}

TEST(PrintableTextTest, EscapesWhatIsNotShown) {
    EXPECT_EQ(printable(u"a\u00ADb\u200Bc\uFEFF\uFFFE"), "a\\u00ADb\\u200Bc\\uFEFF\\uFFFE");
    EXPECT_EQ(printable(u"\U000E0041\U0001FFFF\u00A0\uFFFD"), "\\uDB40\\uDC41\\uD83F\\uDFFF\u00A0\uFFFD");
    const std::string document = "<a b=\"\u202Ex\U000E0041\">\n\t\u00E4\033</a>\n";
    EXPECT_EQ(printableMarkup(document, Markup::Xml), "<a b=\"&#x202E;x&#xE0041;\">\n\t\u00E4&#x1B;</a>\n");
    EXPECT_EQ(printableMarkup("[\"\u00AD\U000E0041\"]\n", Markup::Json), "[\"\\u00AD\\uDB40\\uDC41\"]\n");
}

TEST(PrintableTextTest, ShowsBlanksAtTheEnds) {
    EXPECT_EQ(printableValue(u""), "\"\"");
    EXPECT_EQ(printableValue(u"a "), "\"a \"");
    EXPECT_EQ(printableValue(u"a b"), "a b");
}

TEST(PrintableTextTest, CountsColumns) {
    EXPECT_EQ(displayWidth("l\u00E4uft"), 5u);
    EXPECT_EQ(displayWidth("\u4E2D\u6587"), 4u);
    EXPECT_EQ(displayWidth("e\u0301"), 1u);
}

TEST(PrintableTextTest, BreaksLinesAtBlanksAndLongWordsAnywhere) {
    EXPECT_THAT(wrapped("one two three", 8), ElementsAre("one two", "three"));
    EXPECT_THAT(wrapped("one two", 3), ElementsAre("one", "two"));
    EXPECT_THAT(wrapped("abcdefgh i", 3), ElementsAre("abc", "def", "gh", "i"));
    EXPECT_THAT(wrapped("\u4E2D\u6587", 3), ElementsAre("\u4E2D", "\u6587"));
    EXPECT_THAT(wrapped("\u4E2D", 1), ElementsAre("\u4E2D"));
    EXPECT_THAT(wrapped("", 5), ElementsAre(""));
    EXPECT_THAT(wrapped("  one two three", 10), ElementsAre("  one two", "    three"));
    EXPECT_THAT(wrapped("     deep", 6), ElementsAre("    ", "deep"));
}

}  // namespace
}  // namespace vrx
