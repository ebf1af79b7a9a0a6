#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/xml/XmlDocument.h"
#include "tests/libCommon/PrintText.h"

using namespace std::string_view_literals;

namespace vrx {

namespace {

struct Malformed {
    std::string_view bytes;
    int row = -1;  // of the error; not checked when negative
    int column = -1;
    StringView description = {};  // how it begins
};

// "\x01"-like escapes stand in pieces of their own, so that they do not swallow what follows.
const Malformed MALFORMED[] = {
    // nothing, or not one root
    {""sv, 0, 0, u"no element found"},
    {" \t\r\n"sv, 1, 0, u"no element found"},
    {"\xEF\xBB\xBF"sv, 0, 0, u"no element found"},
    {"<!-- only a comment -->"sv},
    {"text"sv, 0, 0},
    {"text<a/>"sv},
    {"&amp;<a/>"sv},
    {"<![CDATA[x]]><a/>"sv},
    {"<a/><b/>"sv, 0, 4, u"junk after document element"},
    {"<a/>trailing"sv, 0, 4, u"junk after document element"},
    {"<a/>\n\n  &amp;"sv, 2, 2},
    {"<a/><![CDATA[x]]>"sv, 0, 4},
    {"<a/></a>"sv, 0, 5},
    // nesting
    {"</a>"sv},
    {"<a>"sv, 0, 3, u"unclosed element: <a> of line 1"},
    {"<a><a></a>"sv, 0, 10, u"unclosed element: <a> of line 1"},
    {"<a>\n<b>\r\n</c>"sv, 2, 2, u"mismatched tag: expected </b> for the <b> of line 2"},
    {"<a><b></a></b>"sv, 0, 8, u"mismatched tag"},
    {"<A></a>"sv, 0, 5, u"mismatched tag"},
    {"<a></a x='1'>"sv},
    {"<a></ a>"sv},
    {"<a><></a>"sv},
    {"<>"sv},
    // tags cut off or bent
    {"<"sv, 0, 0},
    {"<a"sv, 0, 0, u"unclosed token"},
    {"< a/>"sv, 0, 1},
    {"<a / >"sv},
    {"<a/ >"sv},
    {"<a b='1'/ c='2'>"sv},
    {"<a <b/>>"sv},
    // names
    {"<1a/>"sv, 0, 1},
    {"<-a/>"sv},
    {"<a!/>"sv},
    {"<a 1b='x'/>"sv},
    {"<a b$='x'/>"sv},
    {"<\xC3\x97/>"sv},
    // attributes
    {"<a x='1' y='2' x='3'/>"sv, 0, 15, u"duplicate attribute: x"},
    {"<a x=1/>"sv, 0, 5},
    {"<a x/>"sv},
    {"<a x=/>"sv},
    {"<a x='1'y='2'/>"sv, 0, 8},
    {"<a x=\"1'/>"sv},
    {"<a x='<'/>"sv, 0, 6},
    {"<a x='a&b'/>"sv},
    {"<a x=''' />"sv},
    // raw < and & and what else cannot stand in text
    {"<a>1 < 2</a>"sv, 0, 6},
    {"<a>a & b</a>"sv, 0, 6},
    {"<a>]]></a>"sv, 0, 5},
    {"<a>&;</a>"sv},
    {"<a>&amp</a>"sv},
    {"<a>&nbsp;</a>"sv, 0, 3, u"undefined entity: &nbsp;"},
    {"<a b='&nbsp;'/>"sv, -1, -1, u"undefined entity"},
    {"<a>&#;</a>"sv},
    {"<a>&#x;</a>"sv},
    {"<a>&#6A;</a>"sv},
    {"<a>&#65</a>"sv},
    {"<a>&#0;</a>"sv, 0, 3},
    {"<a>&#xD800;</a>"sv},
    {"<a>&#xFFFE;</a>"sv},
    {"<a>&#x110000;</a>"sv},
    // characters
    {"<a>\0</a>"sv, 0, 3},
    {"<a>\n\t\x01</a>"sv, 1, 1},
    {"<a b='\x1F'/>"sv},
    {"<a><!--\x08--></a>"sv},
    {"\x1B<a/>"sv},
    {"<a>\xEF\xBF\xBE</a>"sv, 0, 3},
    {"<a>\xEF\xBF\xBF</a>"sv, 0, 3},
    {"<a>\x80</a>"sv},
    {"<a>\xC3\xA9\xF0\x9F\x98\x80\xC3(</a>"sv, 0, 6},
    {"<a>\xC0\xAF</a>"sv},
    {"<a>\xE0\x80\xAF</a>"sv},
    {"<a>\xED\xA0\x80</a>"sv},
    {"<a>\xF4\x90\x80\x80</a>"sv},
    {"<a>\xF8\x88\x80\x80\x80</a>"sv},
    {"<a>\xE2\x82</a>"sv},
    {"\xFF\xFE<\0a\0/\0>\0"sv, 0, 0, u"the text is not UTF-8"},
    {"\xFE\xFF\0<\0a\0/\0>"sv, 0, 0, u"the text is not UTF-8"},
    {"<\0a\0/\0>\0"sv, 0, 0, u"the text is not UTF-8"},
    {"\0<\0a\0/\0>"sv, 0, 0, u"the text is not UTF-8"},
    // sections
    {"<a><![CDATA[x</a>"sv},
    {"<a><![cdata[x]]></a>"sv},
    {"<a><!--x</a>"sv},
    {"<a><!--x--y--></a>"sv},
    {"<a><!-x--></a>"sv},
    {"<a><?p</a>"sv},
    {"<a><?xml x?></a>"sv},
    // declarations
    {" <?xml version='1.0'?><a/>"sv, 0, 1},
    {"<?xml?><a/>"sv},
    {"<?xml encoding='UTF-8'?><a/>"sv},
    {"<?xml version='1.0' standalone='maybe'?><a/>"sv},
    {"<?xml version='2.0'?><a/>"sv, 0, 0, u"XML version \"2.0\" is not accepted"},
    {"\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-16'?><a/>"sv, 0, 0, u"encoding \"UTF-16\" is not accepted"},
    {"<?xml version='1.0' encoding='ISO-8859-1'?><a/>"sv, 0, 0, u"encoding \"ISO-8859-1\" is not accepted"},
    {"<?xml version='1.0' encoding='no-such'?><a/>"sv, 0, 0, u"encoding \"no-such\" is not accepted"},
    // DOCTYPE: never looked into
    {"<!doctype html><html/>"sv, 0, 0},
    {"<a/><!DOCTYPE a>"sv},
    {"\r\r\n <!DOCTYPE a><a/>"sv, 2, 1, u"a DOCTYPE is not accepted"},
    {"<!DOCTYPE a SYSTEM 'file:///etc/hostname'><a/>"sv, 0, 0, u"a DOCTYPE is not accepted"},
    {"<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/hostname'>]><a>&x;</a>"sv, 1, 0,
     u"a DOCTYPE is not accepted"},
    {"<!--\n--> <!DOCTYPE a [<!ENTITY a 'aaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'><!ENTITY c '&b;&b;&b;'>]><a>&c;</a>"sv, 1,
     4, u"a DOCTYPE is not accepted"},
};

/// Whether decoding and encoding keep the bytes, so that both ways of parsing must agree on them.
bool isUtf8(std::string_view bytes) { return String::UTF8Decode(bytes).toUtf8() == bytes; }

void expectError(const XmlDocument& document, const Malformed& input) {
    EXPECT_TRUE(document.Error());
    EXPECT_EQ(document.RootElement(), nullptr);
    EXPECT_FALSE(document.ErrorDesc().isEmpty());
    EXPECT_TRUE(document.ErrorDesc().view().starts_with(input.description)) << document.ErrorDesc().toUtf8();
    if (input.row >= 0) {
        EXPECT_EQ(document.ErrorRow(), static_cast<std::uint32_t>(input.row));
        EXPECT_EQ(document.ErrorColumn(), static_cast<std::uint32_t>(input.column));
    }
}

std::string nested(unsigned levels) {
    std::string text;
    for (unsigned level = 0; level < levels; ++level) {
        text += "<a>\n";
    }
    for (unsigned level = 0; level < levels; ++level) {
        text += "</a>";
    }
    return text;
}

/// Place of a unit by the plainest count.
std::pair<std::uint32_t, std::uint32_t> placeOf(StringView text, std::size_t index) {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    for (std::size_t i = 0; i < index; ++i) {
        ++column;
        const bool isCr = text[i] == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n');
        if (text[i] == u'\n' || isCr) {
            ++row;
            column = 0;
        }
    }
    return {row, column};
}

void expectPlaces(const XmlDocument& document, StringView text) {
    ASSERT_FALSE(document.Error()) << document.ErrorDesc().toUtf8();
    std::size_t index = 0;
    for (const XmlElement* e = document.RootElement()->FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
        index = text.find(u"<e", index + 1);
        const auto expected = placeOf(text, index);
        ASSERT_EQ(std::pair(e->Row(), e->Column()), expected) << "at unit " << index;
    }
    EXPECT_EQ(text.find(u"<e", index + 1), StringView::npos);
}

}  // namespace

TEST(XmlParseTest, rejectsWhatIsMalformed) {
    for (const Malformed& input : MALFORMED) {
        SCOPED_TRACE(std::string(input.bytes));
        XmlDocument document;
        EXPECT_FALSE(document.ParseUtf8(input.bytes));
        expectError(document, input);
        if (isUtf8(input.bytes)) {
            EXPECT_FALSE(document.Parse(String::UTF8Decode(input.bytes)));
            expectError(document, input);
        }
    }
}

TEST(XmlParseTest, rejectsEveryPrefix) {
    const std::string_view whole =
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?><a b=\"1\" \xC3\xA9='2'>t&amp;&#65;<!--c-->"
        "<![CDATA[d]]><?p q?><e/>\xF0\x9F\x98\x80</a>";
    XmlDocument document;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(document.ParseUtf8(whole.substr(0, size))) << size;
    }
    EXPECT_TRUE(document.ParseUtf8(whole)) << document.ErrorDesc().toUtf8();
}

TEST(XmlParseTest, rejectsUnitsThatXmlCannotHold) {
    XmlDocument document;
    for (const StringView bad : {u"\xD800"sv, u"\xDFFF"sv, u"\xDE00\xD83D"sv, u"\uFFFE"sv, u"\x07"sv, u"\0"sv}) {
        EXPECT_FALSE(document.Parse(concat(u"<a>\n\U0001F600\u00FC<b/>", bad, u"</a>")));
        EXPECT_EQ(document.ErrorRow(), 1U);
        EXPECT_EQ(document.ErrorColumn(), 7U);
    }
    EXPECT_FALSE(document.Parse(u"<a>\xD83D"));
    EXPECT_TRUE(document.Parse(u"<a>\xD83D\xDE00\x7F\u0085</a>"));
    EXPECT_EQ(document.RootElement()->GetText(), u"\U0001F600\x7F\u0085");
}

TEST(XmlParseTest, limitsDepth) {
    XmlDocument document;
    EXPECT_TRUE(document.ParseUtf8(nested(256)));
    EXPECT_FALSE(document.ParseUtf8(nested(257)));
    EXPECT_EQ(document.ErrorDesc(), u"elements are nested deeper than 256 levels");
    EXPECT_EQ(document.ErrorRow(), 256U);
    EXPECT_EQ(document.ErrorColumn(), 0U);
    EXPECT_FALSE(document.ParseUtf8(nested(100000)));
}

TEST(XmlParseTest, acceptsDeclarationsAndMarks) {
    for (const std::string_view text :
         {"<?xml version='1.0'?><a/>"sv, "<?xml version=\"1.1\" encoding=\"utf-8\" standalone='yes'?>\n<a/>"sv,
          "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><a/>"sv, "\n<?p <!DOCTYPE?><!--<!DOCTYPE a>--><a/>"sv,
          "<a/>\n<!--c-->\n<?p?>\n"sv}) {
        XmlDocument document;
        EXPECT_TRUE(document.ParseUtf8(text)) << text;
        EXPECT_TRUE(document.Parse(String::UTF8Decode(text))) << text;
    }
    XmlDocument document;
    EXPECT_TRUE(document.Parse(u"\uFEFF<a><b/></a>"));
    EXPECT_EQ(document.RootElement()->Column(), 0U);
    EXPECT_EQ(document.RootElement()->FirstChildElement()->Column(), 3U);
}

TEST(XmlParseTest, knowsPlaces) {
    std::mt19937 random(1);
    constexpr std::size_t PLAIN = 7;  // ASCII without a carriage return
    const std::vector<StringView> pieces = {u"<e/>",
                                            u"<e>\n</e>",
                                            u"\n",
                                            u"\t",
                                            u"x",
                                            u"plain text here",
                                            u"&#x41;",
                                            u"<e a='x\ty'\r\n/>",
                                            u"\r",
                                            u"\r\n",
                                            u"\n\r",
                                            u"\u00FC",
                                            u"\u20AC",
                                            u"\U0001F600",
                                            u"<!--\r\u20AC\n-->",
                                            u"<?p \U0001F600?>"};
    for (int round = 0; round < 200; ++round) {
        String text = u"<root>";
        for (int piece = 0; piece < 60; ++piece) {
            text += pieces[random() % (round < 100 ? PLAIN : pieces.size())];
        }
        text += u"</root>";
        XmlDocument document;
        document.Parse(text);
        expectPlaces(document, text);
        document.ParseUtf8(text.toUtf8());
        expectPlaces(document, text);
    }
}

TEST(XmlParseTest, keepsTextWholeAndDropsWhiteSpace) {
    XmlDocument document;
    ASSERT_TRUE(
        document.ParseUtf8("<a>\n  <b> x&amp;y&#x20AC;\r\n<![CDATA[<z>]]><?p?>\t</b>\n"
                           "<c> \r\n\t</c><d><![CDATA[ ]]>&#10;</d>\n tail <!-- c --> \n</a>"));
    const XmlElement& root = *document.RootElement();
    const XmlElement& b = *root.FirstChildElement(u"b");
    EXPECT_EQ(b.FirstChild(), root.FirstChild()->ToElement()->FirstChild());
    EXPECT_EQ(b.FirstChild()->NextSibling(), nullptr);
    EXPECT_EQ(b.GetText(), u" x&y\u20AC\n<z>\t");
    EXPECT_EQ(b.NormalizedText(), u"x&y\u20AC\n<z>");
    EXPECT_TRUE(root.FirstChildElement(u"c")->NoChildren());
    EXPECT_TRUE(root.FirstChildElement(u"d")->NoChildren());
    EXPECT_EQ(root.GetText(), u"\n tail ");
    EXPECT_EQ(root.toString(), u"<a><b> x&amp;y\u20AC\n&lt;z&gt;\t</b><c/><d/>\n tail <!-- c --></a>");
    for (const StringView text : {u"\n\n  x", u"  \n x", u"\n \n\n", u" x\n  "}) {
        ASSERT_TRUE(document.Parse(concat(u"<a>\n  <b>", text, u"</b>\n</a>")));
        EXPECT_EQ(document.RootElement()->FirstChildElement()->GetText(), trimmed(text).empty() ? StringView() : text);
    }
}

TEST(XmlParseTest, normalizesAttributes) {
    XmlDocument document;
    ASSERT_TRUE(document.Parse(u"<a v=' x\ty\r\nz&#10;&quot;&#x1F600;' \u00E9\u0416=\"\u00E9\"/>"));
    EXPECT_EQ(document.RootElement()->Attribute(u"v"), u" x y z\n\"\U0001F600");
    EXPECT_EQ(document.RootElement()->NormalizedAttributeValue(u"\u00E9\u0416"), u"\u00E9");
    EXPECT_EQ(document.RootElement()->FindAttribute(u"V"), nullptr);
}

// More attributes than any list should be searched for, and one token that is longer than the parser's chunks.
TEST(XmlParseTest, takesHundredThousandAttributes) {
    std::string text = "<a";
    for (int i = 0; i < 100000; ++i) {
        text += " n" + std::to_string(i) + "='" + std::to_string(i) + "'";
    }
    XmlDocument document;
    ASSERT_TRUE(document.ParseUtf8(text + "/>"));
    ASSERT_EQ(document.RootElement()->Attributes().size(), 100000U);
    EXPECT_EQ(document.RootElement()->Attribute(u"n99999"), u"99999");
    EXPECT_FALSE(document.ParseUtf8(text + " n7=''/>"));
    EXPECT_EQ(document.ErrorDesc(), u"duplicate attribute: n7");
}

// A text that is too large to be handed to the parser in one piece. Some pieces are plain ASCII.
TEST(XmlParseTest, takesHugeTexts) {
    constexpr std::size_t COUNT = 30000;
    const std::string filler(540, 'x');
    const auto isPlain = [](std::size_t i) {
        return i / 1000 % 2 == 0;
    };
    std::string text = "<root>" + std::string(300000, '\n') + "<!--" + std::string(700000, '\n') + "-->";
    for (std::size_t i = 0; i < COUNT; ++i) {
        text += "<e n='" + std::to_string(i) + (isPlain(i) ? "z" : "\xC3\xA9") + "'>" + filler +
                (isPlain(i) ? "zz" : "\xF0\x9F\x98\x80") + "</e>\n";
    }
    text += "</root>";
    ASSERT_GT(text.size(), std::size_t{16} << 20);
    for (const bool isWide : {false, true}) {
        XmlDocument document;
        ASSERT_TRUE(isWide ? document.Parse(String::UTF8Decode(text)) : document.ParseUtf8(text));
        std::uint32_t i = 0;
        for (const XmlElement* e = document.RootElement()->FirstChildElement(); e; e = e->NextSiblingElement(), ++i) {
            ASSERT_EQ(e->Row(), 1000000 + i);
            ASSERT_EQ(e->Column(), i == 0 ? 3U : 0U);
            ASSERT_EQ(e->Attribute(u"n"),
                      String::UTF8Decode(std::to_string(i) + (isPlain(i) ? "z" : "\xC3\xA9")).view());
            ASSERT_EQ(e->FirstChild()->Value().size(), filler.size() + 2);
        }
        EXPECT_EQ(i, COUNT);
    }
}

}  // namespace vrx
