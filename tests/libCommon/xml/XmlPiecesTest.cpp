#include "libCommon/xml/parsing/XmlPieces.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "libCommon/xml/XmlDocument.h"
#include "libCommon/xml/parsing/XmlElementReader.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

/// A root with children enough for many pieces, and something among them.
std::string textWith(std::string_view something, std::string_view lineEnd = "\n") {
    std::string text = "\xEF\xBB\xBF<?xml version='1.0'?><!--before-->\n<r a='1'>";
    for (int i = 0; i < 3'000; ++i) {
        const std::string number = std::to_string(i);
        text.append(lineEnd).append("  <c key='Key of all' v='\xC3\xBC").append(number).append("'>");
        text.append(lineEnd).append("    <c>\xF0\x9F\x98\x80 ").append(number).append("</c> and");
        text.append(lineEnd).append("    <a x='").append(number).append("'><b/></a>").append(lineEnd).append("  </c>");
        text.append(i % 700 == 350 ? something : "");
    }
    return text.append(lineEnd).append("</r>\n<!--behind-->\n");
}

/// Longer than a piece, and full of what looks like a place to cut.
std::string misleading() {
    std::string text;
    while (text.size() < (std::size_t{100} << 10)) {
        text += "\n  <c key='Key'/>";
    }
    return text;
}

struct TextFile {
    explicit TextFile(std::string_view bytes) { std::ofstream(path, std::ios::binary) << bytes; }
    ~TextFile() { std::filesystem::remove(path); }
    String name() const { return String::UTF8Decode(path); }
    const std::string path = testing::TempDir() + "vrxXmlPiecesTest.xml";
};

/// All elements in document order, with their places.
String placesIn(const XmlElement& element) {
    String places = concat(element.Name(), u" ", String::UTF8Decode(std::to_string(element.Row())), u":",
                           String::UTF8Decode(std::to_string(element.Column())), u"\n");
    for (const XmlElement* child = element.FirstChildElement(); child != nullptr; child = child->NextSiblingElement()) {
        EXPECT_EQ(child->Parent(), &element);
        EXPECT_EQ(&child->Document(), &element.Document());
        places += placesIn(*child);
    }
    return places;
}

void expectSame(const XmlDocument& loaded, const XmlDocument& parsed) {
    EXPECT_EQ(loaded.toString(), parsed.toString());
    EXPECT_EQ(placesIn(*loaded.RootElement()), placesIn(*parsed.RootElement()));
}

struct TakeA : XmlElementReader {
    bool readElement(XmlElement& element) override {
        read += concat(element.Name(), u" ", element.Attribute(u"x"), u";");
        return element.Name() == u"a";
    }
    void startOver() override {
        read = String();
        ++starts;
    }
    const char* attributeOfPlacedElements() const noexcept override { return "x"; }
    String read;
    int starts = 0;
};

}  // namespace

TEST(XmlPiecesTest, areTheText) {
    const std::string text = textWith("<!--x-->", "\r\n");
    XmlUtf8Source source(text);
    XmlPieces pieces(source);
    ASSERT_TRUE(pieces.canCut());
    std::string joined;
    XmlPosition position;
    std::size_t count = 0;
    for (XmlPiece piece; pieces.take(piece); ++count) {
        ASSERT_EQ(piece.number, count);
        EXPECT_EQ(piece.text.substr(0, piece.addedSize), count == 0 ? "" : "<r>");
        EXPECT_EQ(piece.start.row, position.place().row);
        EXPECT_EQ(piece.start.column, position.place().column);
        const bool isLast = piece.text.ends_with("behind-->\n");
        const std::string own =
            piece.text.substr(piece.addedSize, piece.text.size() - piece.addedSize - (isLast ? 0 : 4));
        EXPECT_TRUE(count == 0 || own.starts_with("<c key"));
        position.advance(own);
        joined += own;
    }
    EXPECT_EQ(joined, text);
    EXPECT_GT(count, 5U);
}

TEST(XmlPiecesTest, makeTheSameDocumentOnAnyNumberOfThreads) {
    for (const std::string_view lineEnd : {"\n", "\r\n", "\r", " "}) {
        const std::string text = textWith("<?pi?>loose <!--text--> <![CDATA[<c>]]>", lineEnd);
        const TextFile file(text);
        XmlDocument parsed;
        ASSERT_TRUE(parsed.ParseUtf8(text));
        for (const unsigned threads : {1U, 2U, 5U}) {
            XmlDocument loaded;
            ASSERT_TRUE(loaded.LoadFileWithout(file.name(), "%u", threads));
            expectSame(loaded, parsed);
            loaded.RootElement()->FirstChildElement()->SetAttribute(u"new", u"value");
            EXPECT_EQ(loaded.RootElement()->FirstChildElement()->Attribute(u"key"), u"Key of all");
        }
        EXPECT_FALSE(XmlDocument().LoadFileWithout(file.name(), "2'><b/", 2));
    }
}

TEST(XmlPiecesTest, misledOrNotTheResultIsThatOfTheWhole) {
    for (const std::string& something : {"<!--" + misleading() + "-->", "<![CDATA[" + misleading() + "]]>",
                                         "<d>" + misleading() + "</d>", "<?pi " + misleading() + "?>"}) {
        const std::string text = textWith(something);
        const TextFile file(text);
        XmlDocument parsed;
        XmlDocument loaded;
        ASSERT_TRUE(parsed.ParseUtf8(text));
        ASSERT_TRUE(loaded.LoadFileWithout(file.name(), "%u", 3));
        expectSame(loaded, parsed);
    }
    for (const char* const mistake : {"</c>", "</r>", "</r><r>", "<c>", "<!--", "<d a='", "&x;", "\xFF",
                                      "<?xml version='1.0'?>", "<!DOCTYPE r>", "]]>", "<c a='1' a='2'/>"}) {
        const std::string text = textWith(mistake);
        const TextFile file(text);
        XmlDocument parsed;
        XmlDocument loaded;
        ASSERT_FALSE(parsed.ParseUtf8(text));
        EXPECT_FALSE(XmlDocument().LoadFileWithout(file.name(), "%u", 3)) << mistake;
        EXPECT_FALSE(loaded.LoadFile(file.name())) << mistake;
        EXPECT_EQ(loaded.ErrorDesc(), parsed.ErrorDesc());
        EXPECT_EQ(loaded.ErrorRow(), parsed.ErrorRow());
        EXPECT_EQ(loaded.ErrorColumn(), parsed.ErrorColumn());
    }
}

TEST(XmlPiecesTest, areReadInOrder) {
    for (const bool isMisleading : {false, true}) {
        const std::string text = textWith(isMisleading ? "<!--" + misleading() + "-->" : "");
        const TextFile file(text);
        XmlDocument parsed;
        XmlDocument loaded;
        TakeA ofText;
        TakeA ofFile;
        ASSERT_TRUE(parsed.Parse(String::UTF8Decode(text), &ofText));
        ASSERT_TRUE(loaded.LoadFile(file.name(), &ofFile));
        EXPECT_EQ(ofFile.read, ofText.read);
        EXPECT_EQ(ofFile.starts, isMisleading ? 1 : 0);
        expectSame(loaded, parsed);
    }
}

}  // namespace vrx
