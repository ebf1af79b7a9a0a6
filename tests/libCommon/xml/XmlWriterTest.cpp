#include "libCommon/xml/XmlWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "libCommon/text/UuCode.h"
#include "libCommon/xml/XmlDocument.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

/// Random documents: every kind of node, and texts of characters that are escaped, special or wide.
class RandomDocument {
public:
    explicit RandomDocument(unsigned seed) : m_random(seed) {}

    XmlDocument make() {
        XmlDocument document;
        document.LinkEndChild(element(document, 0));
        return document;
    }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }

    /// Any text, encoded as a caller does whose text may be beyond XML.
    String text() {
        static const StringView PIECES[] = {
            u"&",    u"<",    u">",      u"\"",    u"'",      u"\t",     u"\n",     u"\r",         u"]]>",    u"-",
            u"--",   u" ",    u"%u0041", u"%",     u"\u00FC", u"\u20AC", u"\uFFFD", u"\U0001F600", u"\xD83D", u"\xDE00",
            u"\x01", u"\x1F", u"\uFFFE", u"&amp;", u"x",      u"value",  u"&#65;",  u"\x7F\u0085"};
        String result;
        for (unsigned count = below(12); count > 0; --count) {
            result += PIECES[below(std::size(PIECES))];
        }
        return toXmlSafe(result);
    }

    String name() {
        static const StringView NAMES[] = {u"a", u"device", u"B-2_.c", u"\u00E9l\u00E9ment", u"x:y", u"\u0416"};
        return NAMES[below(std::size(NAMES))];
    }

    XmlElement* element(XmlDocument& document, unsigned level) {
        XmlElement* const result = document.NewElement(name());
        for (unsigned count = below(5); count > 0; --count) {
            result->SetAttribute(name(), text());
        }
        bool isAfterText = false;
        for (unsigned count = level < 5 ? below(5) : 0; count > 0; --count) {
            const unsigned kind = below(isAfterText ? 3 : 4);
            isAfterText = kind == 3;
            if (kind == 3) {
                result->LinkEndChild(document.NewText(text() + u"."));
            } else if (kind == 2) {
                result->LinkEndChild(document.NewComment(comment()));
            } else {
                result->LinkEndChild(element(document, level + 1));
            }
        }
        return result;
    }

    /// What a comment can hold unchanged.
    String comment() { return text().replace(u"\r", u"").replace(u"-", u"~"); }

    std::mt19937 m_random;
};

void expectSame(const XmlNode& a, const XmlNode& b) {
    ASSERT_EQ(a.NodeKind(), b.NodeKind());
    ASSERT_EQ(String(a.Value()), String(b.Value()));
    const XmlElement* const element = a.ToElement();
    if (element == nullptr) {
        return;
    }
    const auto left = element->Attributes();
    const auto right = b.ToElement()->Attributes();
    ASSERT_TRUE(std::equal(left.begin(), left.end(), right.begin(), right.end(), [](const auto& x, const auto& y) {
        return x.Name() == y.Name() && x.Value() == y.Value();
    })) << element->toString().toUtf8();
    const XmlNode* other = b.ToElement()->FirstChild();
    for (const XmlNode* child = element->FirstChild(); child != nullptr; child = child->NextSibling()) {
        ASSERT_NE(other, nullptr);
        expectSame(*child, *other);
        other = other->NextSibling();
    }
    ASSERT_EQ(other, nullptr);
}

}  // namespace

TEST(XmlWriterTest, roundTrips) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        const XmlDocument document = RandomDocument(seed).make();
        const String text = document.toString();
        XmlDocument again;
        ASSERT_TRUE(again.Parse(text)) << text.toUtf8();
        expectSame(*document.RootElement(), *again.RootElement());
        std::string utf8;
        writeCompact(document.Top(), utf8);
        ASSERT_EQ(utf8, text.toUtf8());
        ASSERT_TRUE(again.ParseUtf8(utf8));
        expectSame(*document.RootElement(), *again.RootElement());
        utf8.clear();
        writeFormatted(document.Top(), 1, utf8);
        ASSERT_TRUE(again.ParseUtf8(utf8)) << utf8;
        ASSERT_EQ(formattedText(document.Top(), 1).toUtf8(), utf8);
    }
}

TEST(XmlWriterTest, escapes) {
    const StringView text(u"&<>\"'\t\n\r\x01\0\xDE00\xD800\uFFFF\U0001F600-", 16);
    EXPECT_EQ(escapedText(text), u"&amp;&lt;&gt;\"'\t\n&#13;%u0001%u0000%uDE00%uD800%uFFFF\U0001F600-");
    EXPECT_EQ(escapedAttribute(text), u"&amp;&lt;&gt;&quot;'&#9;&#10;&#13;%u0001%u0000%uDE00%uD800%uFFFF\U0001F600-");
}

TEST(XmlWriterTest, keepsCommentsWellFormed) {
    for (const StringView text : {u"--", u"-", u"a--b---", u"-a-", u"->", u"<&\">\r\n\x01", u""}) {
        XmlDocument document;
        document.LinkEndChild(document.NewComment(text));
        document.LinkEndChild(document.NewElement(u"a"));
        XmlDocument again;
        EXPECT_TRUE(again.Parse(document.toString())) << document.toString().toUtf8();
    }
    XmlDocument document;
    EXPECT_EQ(compactText(*document.NewComment(u"a--b-")), u"<!--a- -b- -->");
}

TEST(XmlWriterTest, formats) {
    XmlDocument document;
    ASSERT_TRUE(document.Parse(u"<!--top--><a x='1'><b/><c>text</c><d>mixed<e y='\n'/></d><!--in\nside--></a>"));
    const String expected =
        u"<!--top-->\n"
        u"<a x=\"1\">\n"
        u"    <b/>\n"
        u"    <c>text</c>\n"
        u"    <d>\n"
        u"        mixed\n"
        u"        <e y=\" \"/>\n"
        u"    </d>\n"
        u"    <!--in\nside-->\n"
        u"</a>\n";
    String out = u"replaced";
    document.GetFormattedStr(out, 0);
    EXPECT_EQ(out, expected);
    document.RootElement()->FirstChildElement(u"d")->GetFormattedStr(out, 1);
    EXPECT_EQ(out, u"    <d>\n        mixed\n        <e y=\" \"/>\n    </d>\n");
}

}  // namespace vrx
