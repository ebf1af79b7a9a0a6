#include "libReport/json/JsonWriter.h"

#include <gtest/gtest.h>

#include <boost/json.hpp>

namespace vrx {
namespace {

TEST(JsonWriterTest, IndentsAndKeepsTheOrder) {
    JsonWriter json;
    json.beginObject();
    json.key("zebra").value(true);
    json.key("apple").beginArray();
    json.value(std::int64_t{-1});
    json.beginObject();
    json.endObject();
    json.endArray();
    json.key("none").beginArray();
    json.endArray();
    json.key("texts").inlineArray({u"a", u"b"});
    json.key("nothing").null();
    json.endObject();
    EXPECT_EQ(json.take(),
              "{\n  \"zebra\": true,\n  \"apple\": [\n    -1,\n    {}\n  ],\n  \"none\": [],\n"
              "  \"texts\": [\"a\", \"b\"],\n  \"nothing\": null\n}\n");
}

TEST(JsonWriterTest, IsReadBackWhateverTheTextHolds) {
    String text = u"\"\\/\b\f\n\r\t \u007F \u00E4 \u2028 \U0001F600 ";
    for (char16_t unit = 1; unit < 0x20; ++unit) {
        text.append(unit);
    }
    JsonWriter json;
    json.value(text);
    const boost::json::value read = boost::json::parse(json.take());
    EXPECT_EQ(std::string(read.as_string()), text.toUtf8());
}

TEST(JsonWriterTest, ReplacesHalfCharacters) {
    const char16_t unpaired[] = {u'x', 0xD800, u'y', 0};
    JsonWriter json;
    json.value(String(unpaired));
    EXPECT_EQ(json.take(), "\"x\uFFFDy\"\n");
}

}  // namespace
}  // namespace vrx
