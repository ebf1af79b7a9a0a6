#include "libCommon/containers/OrderedHashTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "libCommon/text/NumberText.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

String keysOf(const OrderedHashTable<String, int>& table) {
    String keys;
    for (const auto& [key, value] : table) {
        keys += key;
    }
    return keys;
}

}  // namespace

TEST(OrderedHashTableTest, iteratesInTheOrderOfFirstInsertion) {
    OrderedHashTable<String, int> table;
    table[u"z"] = 1;
    EXPECT_TRUE(table.insert(u"a", 2));
    table.set(u"m", 3);
    table.set(u"z", 4);
    EXPECT_FALSE(table.insert(u"a", 5));
    EXPECT_EQ(keysOf(table), u"zam");
    EXPECT_EQ(*table.find(u"z"), 4);
    EXPECT_TRUE(table.remove(u"z"));
    EXPECT_EQ(table.find(u"z"), nullptr);
    EXPECT_EQ(++table[u"z"], 1);
    EXPECT_EQ(keysOf(table), u"amz");
}

TEST(OrderedHashTableTest, agreesWithAPlainListUnderRandomChanges) {
    std::minstd_rand random(7);
    OrderedHashTable<String, int> table;
    std::vector<std::pair<String, int>> list;
    for (int round = 0; round < 20000; ++round) {
        const String key = toText(static_cast<std::uint32_t>(random() % 200));
        const auto at = std::ranges::find(list, key, &std::pair<String, int>::first);
        if (random() % 2 == 0) {
            ASSERT_EQ(table.insert(key, round), at == list.end());
            if (at == list.end()) {
                list.emplace_back(key, round);
            }
        } else {
            ASSERT_EQ(table.remove(key), at != list.end());
            if (at != list.end()) {
                list.erase(at);
            }
        }
        ASSERT_EQ(table.size(), list.size());
    }
    auto expected = list.begin();
    for (const auto& [key, value] : table) {
        ASSERT_EQ(key, expected->first);
        ASSERT_EQ(value, expected->second);
        ASSERT_EQ(*table.find(key), value);
        ++expected;
    }
    EXPECT_EQ(expected, list.end());
}

}  // namespace vrx
