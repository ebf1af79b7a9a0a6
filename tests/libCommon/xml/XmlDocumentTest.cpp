#include "libCommon/xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "libCommon/error/StructuredException.h"
#include "libCommon/xml/parsing/XmlElementReader.h"
#include "libCommon/xml/parsing/XmlSource.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

TEST(XmlDocumentTest, walks) {
    XmlDocument document;
    ASSERT_TRUE(document.Parse(u"<!--top--><a>one<b/><c/>two<b x='1'/></a>"));
    EXPECT_EQ(document.Top().FirstChild()->NodeKind(), XmlNode::Kind::Comment);
    EXPECT_EQ(document.Top().FirstChild()->Value(), u"top");
    XmlElement* const root = document.RootElement();
    EXPECT_EQ(root->Parent(), &document.Top());
    EXPECT_EQ(root->FirstChild()->ToElement(), nullptr);
    XmlElement* const first = root->FirstChildElement();
    EXPECT_EQ(first, root->FirstChildElement(u"b"));
    EXPECT_EQ(first->NextSiblingElement()->Name(), u"c");
    EXPECT_EQ(first->NextSiblingElement(u"b")->Attribute(u"x"), u"1");
    EXPECT_EQ(first->NextSiblingElement(u"B"), nullptr);
    EXPECT_EQ(first->NextSiblingElement(u"b")->NextSiblingElement(), nullptr);
    EXPECT_EQ(root->GetText(), u"onetwo");
    EXPECT_EQ(first->GetUserData(), nullptr);
    first->SetUserData(root);
    EXPECT_EQ(root->FirstChildElement(u"b")->GetUserData(), root);
}

TEST(XmlDocumentTest, knowsItsNamesInAnyLetterCase) {
    XmlDocument document;
    EXPECT_FALSE(document.MayHaveName(u"a"));
    ASSERT_TRUE(document.Parse(u"<a><And not='1'/></a>"));
    EXPECT_TRUE(document.MayHaveName(u"and"));
    EXPECT_TRUE(document.MayHaveName(u"NOT"));
    EXPECT_FALSE(document.MayHaveName(u"or"));
    XmlDocument copy;
    copy.CopyAll(document);
    EXPECT_TRUE(copy.MayHaveName(u"AND"));
    copy.NewElement(u"Or");
    EXPECT_TRUE(copy.MayHaveName(u"or"));
}

/// Takes every `a`, and keeps what it read.
struct TakeA : XmlElementReader {
    bool readElement(XmlElement& element) override {
        read += concat(element.toString(), u" ");
        element.SetUserData(this);
        return element.Name() == u"a";
    }
    String read;
};

TEST(XmlDocumentTest, readsElementsWhileParsing) {
    XmlDocument document;
    TakeA reader;
    ASSERT_TRUE(document.Parse(u"<r><a x='1'>t<b/></a><b><a y='2'/>u</b><a/></r>", &reader));
    EXPECT_EQ(reader.read, u"<b/> <a x=\"1\">t<b/></a> <a y=\"2\"/> <b><a/>u</b> <a/> <r><a/><b><a/>u</b><a/></r> ");
    EXPECT_EQ(document.RootElement()->FirstChildElement()->GetUserData(), &reader);
    EXPECT_EQ(document.toString(), u"<r><a/><b><a/>u</b><a/></r>");
    EXPECT_FALSE(document.Parse(u"<r>\n<a x='1'/>\n <a></r>", &reader));
    EXPECT_EQ(document.ErrorRow(), 2U);
    EXPECT_EQ(document.RootElement(), nullptr);
}

// Contents of every size, so that they begin and end anywhere in the arena's blocks.
TEST(XmlDocumentTest, whatWasTakenMakesRoomForWhatComes) {
    String text = u"<r>";
    for (std::size_t i = 0; i < 3'000; ++i) {
        const String value(i * 37 % 5'000, u'v');
        text += concat(u"<k v='", value, u"'/><a><c v='", value, u"'/><d/><a v='", value, u"'/></a>");
    }
    text += u"</r>";
    XmlDocument document;
    TakeA reader;
    ASSERT_TRUE(document.Parse(text, &reader));
    std::size_t i = 0;
    for (const XmlElement* element = document.RootElement()->FirstChildElement(); element != nullptr; ++i) {
        EXPECT_EQ(element->Attribute(u"v"), String(i * 37 % 5'000, u'v'));
        element = element->NextSiblingElement();
        EXPECT_EQ(element->toString(), u"<a/>");
        element = element->NextSiblingElement();
    }
    EXPECT_EQ(i, 3'000U);
}

TEST(XmlDocumentTest, buildsAndSetsAttributes) {
    XmlDocument document;
    XmlElement* const root = document.NewElement(u"a");
    document.LinkEndChild(document.NewComment(u"c"));
    document.LinkEndChild(root);
    for (char16_t name = u'a'; name <= u'j'; ++name) {
        root->SetAttribute(StringView(&name, 1), u"old");
    }
    root->SetAttribute(u"b", root->Attribute(u"a"));
    root->SetAttribute(u"b", u"");
    root->SetAttribute(u"c", u"new");
    root->LinkEndChild(document.NewText(u"t"));
    EXPECT_EQ(document.toString(),
              u"<!--c--><a a=\"old\" b=\"\" c=\"new\" d=\"old\" e=\"old\" f=\"old\" g=\"old\" h=\"old\" i=\"old\" "
              u"j=\"old\">t</a>");
    EXPECT_NE(root->FindAttribute(u"b"), nullptr);
    EXPECT_EQ(root->Row(), 0U);
}

TEST(XmlDocumentTest, guardsItsTree) {
    XmlDocument document;
    XmlDocument other;
    XmlElement* const root = document.NewElement(u"a");
    document.LinkEndChild(root);
    EXPECT_THROW(root->LinkEndChild(nullptr), StructuredException);
    EXPECT_THROW(root->LinkEndChild(root), StructuredException);
    EXPECT_THROW(document.LinkEndChild(root), StructuredException);
    EXPECT_THROW(root->LinkEndChild(other.NewElement(u"b")), StructuredException);
    EXPECT_THROW(root->LinkEndChild(other.NewText(u"b")), StructuredException);
    EXPECT_EQ(document.toString(), u"<a/>");
}

TEST(XmlDocumentTest, movesWithItsNodes) {
    XmlDocument source;
    ASSERT_TRUE(source.Parse(u"<a><b/></a>"));
    XmlElement* const root = source.RootElement();
    XmlDocument target(std::move(source));
    EXPECT_EQ(target.RootElement(), root);
    EXPECT_EQ(&root->FirstChild()->Document(), &target);
    EXPECT_EQ(std::as_const(source).RootElement(), nullptr);
    ASSERT_TRUE(source.Parse(u"<other/>"));
    source = std::move(target);
    EXPECT_EQ(&root->Document(), &source);
    root->LinkEndChild(root->Document().NewElement(u"c"));
    EXPECT_EQ(source.toString(), u"<a><b/><c/></a>");
}

TEST(XmlDocumentTest, copiesElements) {
    XmlDocument source;
    ASSERT_TRUE(source.Parse(u"<a>\n <b x='1' y='\u20AC'>t<!--c--><d/></b></a>"));
    XmlElement* const original = source.RootElement()->FirstChildElement();
    original->SetUserData(original);
    XmlDocument target;
    XmlElement* const copy = target.CopyOf(*original);
    EXPECT_EQ(copy->Parent(), nullptr);
    EXPECT_EQ(copy->GetUserData(), nullptr);
    target.LinkEndChild(copy);
    target.LinkEndChild(target.CopyOf(*copy->FirstChildElement()));
    source.Clear();
    EXPECT_EQ(target.toString(), u"<b x=\"1\" y=\"\u20AC\">t<!--c--><d/></b><d/>");
    EXPECT_EQ(copy->Row(), 1U);
    EXPECT_EQ(copy->FirstChildElement()->Column(), 25U);
}

TEST(XmlDocumentTest, replacesWhatItHeld) {
    XmlDocument document;
    EXPECT_FALSE(document.Error());
    EXPECT_EQ(document.RootElement(), nullptr);
    EXPECT_EQ(document.toString(), u"");
    ASSERT_TRUE(document.Parse(u"<a v='&lt;b/>'/>"));
    EXPECT_TRUE(document.Parse(document.RootElement()->Attribute(u"v")));
    EXPECT_EQ(document.toString(), u"<b/>");
    EXPECT_FALSE(document.Parse(u"<a>"));
    EXPECT_EQ(document.toString(), u"");
    document.Clear();
    EXPECT_FALSE(document.Error());
    EXPECT_EQ(document.ErrorDesc(), u"");
}

TEST(XmlDocumentTest, endsASourceWhereATextIsFound) {
    for (const std::size_t piece : {std::size_t{4}, std::size_t{5}, std::size_t{64}}) {
        for (const auto& [bytes, isFound] : {std::pair("<a b='%u0041'/>", true), std::pair("12345%%uab", true),
                                             std::pair("%%abc%abcu%", false), std::pair("uu%", false)}) {
            XmlUtf8Source whole(bytes);
            XmlSearchedSource source(whole, "%u");
            std::string read;
            while (!source.isAtEnd()) {
                char buffer[64];
                read.append(buffer, source.read(buffer, piece));
            }
            EXPECT_EQ(source.isFound(), isFound) << bytes << piece;
            EXPECT_TRUE(isFound || read == bytes) << read;
        }
    }
}

TEST(XmlDocumentTest, loadsFiles) {
    const std::string path = testing::TempDir() + "vrxXmlDocumentTest.xml";
    XmlDocument document;
    for (const auto& [bytes, isGood] :
         {std::pair("\xEF\xBB\xBF<a>\xC3\xBC</a>", true), std::pair("<a>\xFC</a>", false)}) {
        std::ofstream(path, std::ios::binary) << bytes;
        EXPECT_EQ(document.LoadFile(String::UTF8Decode(path)), isGood);
        EXPECT_EQ(document.Error(), !isGood);
    }
    std::filesystem::remove(path);
    EXPECT_FALSE(document.LoadFile(String::UTF8Decode(path)));
    EXPECT_EQ(document.ErrorDesc(), u"No such file or directory");
    EXPECT_EQ(document.ErrorRow(), 0U);
    EXPECT_FALSE(document.LoadFile(u"/"));
    EXPECT_EQ(document.ErrorDesc(), u"Is a directory");
}

}  // namespace vrx
