#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libMachine/RecordingFormat.h"
#include "libMachine/import/mending/JsonMending.h"
#include "libMachine/import/mending/TextMending.h"
#include "libMachine/import/mending/XmlMending.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {
namespace {

using namespace std::string_literals;

/// The damage as one text.
std::string lines(const DamageList& damage) {
    std::string all;
    for (const ImportDamage& kind : damage.all()) {
        all += (all.empty() ? "" : "; ") + damageText(kind);
    }
    return all;
}

TEST(RecordingFormatTest, isToldFromTheContent) {
    struct Row {
        std::string start;
        RecordingFormat format;
    };
    const std::string comment = "<?xml version=\"1.0\"?>\n<!-- a <node class=\"x\"> in words -->\n";
    const Row rows[] = {
        {"", RecordingFormat::Unknown},
        {"hello", RecordingFormat::Unknown},
        {"<SysInfo><Device/></SysInfo>", RecordingFormat::SysInfo},
        {comment + "<list><device/></list>", RecordingFormat::SysInfo},
        {comment + "<node><device/></node>", RecordingFormat::SysInfo},
        {comment + "<list>\n<node id=\"a\" class=\"system\">", RecordingFormat::LshwXml},
        {"WARNING: not root\n" + comment + "<node id=\"a\" class='system'>", RecordingFormat::LshwXml},
        {"\xEF\xBB\xBF<node class=\"system\">", RecordingFormat::LshwXml},
        {"\xFF\xFE<\0n\0o\0d\0e\0 \0c\0l\0a\0s\0s\0=\0\"\0>\0"s, RecordingFormat::LshwXml},
        {"<!DOCTYPE topology SYSTEM \"hwloc.dtd\"><topology>", RecordingFormat::HwlocXml},
        {" [ {\"id\" : \"x\", \"class\" : \"system\"", RecordingFormat::LshwJson},
        {"{\"devices\": []}", RecordingFormat::Unknown},
        {"# dmidecode 3.3\nGetting SMBIOS data from sysfs.", RecordingFormat::Dmidecode},
        {"Handle 0x0001, DMI type 1, 27 bytes\nSystem Information", RecordingFormat::Dmidecode},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(recognisedFormat(row.start), row.format) << row.start;
    }
    EXPECT_EQ(formatNamed("lshw-json"), RecordingFormat::LshwJson);
    EXPECT_EQ(formatNamed("json"), std::nullopt);
    EXPECT_EQ(formatNames().size(), 6u);
}

TEST(TextMendingTest, keepsTextAndCountsWhatItIsNot) {
    struct Row {
        std::string bytes;
        std::string text;
        std::string damage;
    };
    const std::string bad = "\xEF\xBF\xBD";
    const Row rows[] = {
        {"\xEF\xBB\xBFplain\t\r\n", "plain\t\r\n", ""},
        {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", ""},
        {"a\nb\xE9"
         "c\x80",
         "a\nb" + bad + "c" + bad, "bytes that are no UTF-8, replaced: 2 (first: line 2)"},
        {"\xE2\x82", bad + bad, "bytes that are no UTF-8, replaced: 2 (first: line 1)"},
        {"\xC0\xAF\xED\xA0\x80", bad + bad + bad + bad + bad, "bytes that are no UTF-8, replaced: 5 (first: line 1)"},
        {"a\0b\x01\xEF\xBF\xBF"
         "c"s,
         "abc", "control characters, left out: 3 (first: line 1)"},
        {"\xFF\xFE"
         "a\0\xE9\0"s,
         "a\xC3\xA9", ""},
        {"\0a\0b"s, "ab", ""},
    };
    for (const Row& row : rows) {
        DamageList damage;
        EXPECT_EQ(mendedText(row.bytes, damage), row.text);
        EXPECT_EQ(lines(damage), row.damage) << row.text;
    }
}

TEST(XmlMendingTest, keepsWhatCanBeHad) {
    struct Row {
        std::string_view text;
        const char16_t* document;
        std::string damage;
    };
    const std::string cutOff = "XML that ends too early, closed: 1 (first: line 1)";
    const std::string noTag = "XML tags that make no sense, left out: 1 (first: line 1)";
    const Row rows[] = {
        {"<a><b>x</b></a>", u"<a><b>x</b></a>", ""},
        {"<!DOCTYPE a SYSTEM 'a.dtd'><a b='1'/>", u"<list><a b=\"1\"/></list>", ""},
        {"<a><b>x</b><c>half", u"<list><a><b>x</b><c><cut-off/></c></a></list>", cutOff},
        {"<a><b>x</b><c d=\"1", u"<list><a><b>x</b><cut-off/></a></list>", cutOff},
        {"<a><b>x</b", u"<list><a><b>x<cut-off/></b></a></list>", cutOff},
        {"<a><b>x<c/></a>", u"<list><a><b>x<c/></b></a></list>",
         "XML elements that are not closed, closed: 1 (first: line 1)"},
        {"<a>x</b>y</a>", u"<list><a>xy</a></list>", noTag},
        {"<a>x<5>y</a>", u"<list><a>xy</a></list>", noTag},
        {"<a>1<b c=d>2</b></a>", u"<list><a>12</a></list>", "XML tags that make no sense, left out: 2 (first: line 1)"},
        {"<a b='1' b='2'/>", u"<list><a b=\"1\"/></list>", ""},
        {"<a>R&D &amp; &#233; &nope;</a>", u"<list><a>R&amp;D &amp; \u00E9 &amp;nope;</a></list>", ""},
        {"<a><![CDATA[1 < 2 & 3]]></b></a>", u"<list><a>1 &lt; 2 &amp; 3</a></list>", noTag},
        {"prompt$ <a/><b/>", u"<list><a/><b/></list>", ""},
    };
    for (const Row& row : rows) {
        DamageList damage;
        XmlDocument document;
        ASSERT_TRUE(parseMended(row.text, document, damage)) << row.text;
        EXPECT_EQ(document.toString(), row.document) << row.text;
        EXPECT_EQ(lines(damage), row.damage) << row.text;
    }
    DamageList damage;
    XmlDocument document;
    EXPECT_FALSE(parseMended("no element", document, damage));
}

TEST(XmlMendingTest, takesNestingAndLengthInLinearTime) {
    std::string deep;
    std::string wide = "<a>";
    for (int i = 0; i < 100000; ++i) {
        deep += "<b>";
        wide += "<b c=\"<<&";
    }
    for (const std::string& text : {deep, wide}) {
        DamageList damage;
        XmlDocument document;
        EXPECT_TRUE(parseMended(text, document, damage));
        EXPECT_FALSE(damage.all().empty());
    }
}

TEST(JsonMendingTest, putsInCommasAndLeavesOutHalfNumbers) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"{\"a\":1}", "[{\"a\":1}]"},
        {"x {\"a\":[{}{}] \"b\":1}\n{},", "[{\"a\":[{},{}] ,\"b\":1}\n,{},]"},
        {"{\"a\":\"b\nc\\\"\",\"d\":12", "[{\"a\":\"b c\\\"\",\"d\":"},
    };
    for (const auto& [text, mended] : rows) {
        DamageList damage;
        EXPECT_EQ(mendedJson(text, damage), mended);
    }
}

}  // namespace
}  // namespace vrx
