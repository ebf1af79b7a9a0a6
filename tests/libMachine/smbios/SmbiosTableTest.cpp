#include "libMachine/smbios/SmbiosTable.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

SmbiosTable tableOf(const std::string& bytes) { return SmbiosTable(std::vector<char>(bytes.begin(), bytes.end())); }

std::string goodTable() {
    return SmbiosBuilder()
        .add(1, 0x10, 8, {{4, 1, 1}, {5, 3, 1}}, {"Maker", "Second", "Third"})
        .add(16, 0x20, 15, {{7, 0x01000000, 4}}, {})
        .add(17, 0x21, 6, {{4, 0x20, 2}}, {"A1"})
        .add(127, 0x7F, 4, {}, {})
        .bytes;
}

/// Reads all that a user of the table could ask for; the sanitizers watch.
std::size_t readAll(const SmbiosTable& table) {
    std::size_t size = 0;
    for (const SmbiosStructure& structure : table.structures()) {
        for (std::size_t offset = 0; offset < 300; ++offset) {
            size += structure.text(offset).size() + structure.qword(offset) % 2;
        }
    }
    return size;
}

TEST(SmbiosTableTest, readsFieldsAndTexts) {
    const SmbiosTable table = tableOf(goodTable() + "garbage behind the end");
    EXPECT_FALSE(table.isDamaged());
    ASSERT_EQ(table.structures().size(), 4U);
    const SmbiosStructure& system = table.structures()[0];
    const SmbiosStructure& memoryArray = table.structures()[1];
    EXPECT_EQ(system.handle(), 0x10);
    EXPECT_EQ(system.text(4), "Maker");
    EXPECT_EQ(system.text(5), "Third");
    EXPECT_EQ(system.text(6), "") << "number 0 is no text";
    EXPECT_EQ(memoryArray.type(), SmbiosTable::MEMORY_ARRAY);
    EXPECT_EQ(memoryArray.dword(7), 0x01000000U);
    EXPECT_EQ(memoryArray.text(7), "") << "a structure without texts";
    EXPECT_EQ(table.structures()[2].word(4), 0x20);
}

TEST(SmbiosTableTest, whatIsNotThereReadsAsNothing) {
    const SmbiosTable table = tableOf(SmbiosBuilder().add(1, 0, 6, {{4, 9, 1}, {5, 0xFF, 1}}, {"Only"}).bytes);
    const SmbiosStructure& structure = table.structures()[0];
    EXPECT_EQ(structure.text(4), "") << "a text number that the set does not have";
    EXPECT_EQ(structure.word(5), 0) << "half of the word lies behind the structure";
    EXPECT_EQ(structure.byte(200), 0);
    EXPECT_FALSE(structure.has(static_cast<std::size_t>(-1), 2));
}

TEST(SmbiosTableTest, damageEndsTheTableWhereItStands) {
    const std::string first = SmbiosBuilder().add(1, 0, 5, {{4, 1, 1}}, {"Maker"}).bytes;
    struct Case {
        std::string bytes;
        std::size_t structures;
        bool isDamaged;
    };
    const std::vector<Case> cases = {
        {"", 0, false},
        {first, 1, false},                                              // no end structure, but nothing is missing
        {first + std::string("\x11\x03\x00\x00\x00\x00", 6), 1, true},  // shorter than its header
        {first + std::string("\x11\x00\x00\x00\x00\x00", 6), 1, true},  // would never move on
        {first + std::string("\x11\xFF\x00\x00\x00\x00", 6), 1, true},  // longer than the table
        {first + "\x11", 1, true},
        {first.substr(0, first.size() - 1), 1, true},  // the set of texts has no end
        {first.substr(0, 5), 1, true},                 // and no texts either
    };
    for (const Case& damaged : cases) {
        const SmbiosTable table = tableOf(damaged.bytes);
        EXPECT_EQ(table.structures().size(), damaged.structures) << damaged.bytes.size();
        EXPECT_EQ(table.isDamaged(), damaged.isDamaged) << damaged.bytes.size();
    }
    EXPECT_EQ(tableOf(first.substr(0, first.size() - 3)).structures()[0].text(4), "Make");
}

TEST(SmbiosTableTest, hostileBytesAreReadWithinBounds) {
    const std::string good = goodTable();
    std::mt19937 random(20261121);
    for (std::size_t size = 0; size <= good.size(); ++size) {
        EXPECT_LE(tableOf(good.substr(0, size)).structures().size(), 4U);
    }
    std::size_t structures = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = good;
        for (int change = 0; change < 4; ++change) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        const SmbiosTable table = tableOf(bytes);
        readAll(table);
        structures += table.structures().size();
        EXPECT_LE(table.structures().size(), bytes.size() / 4);
    }
    EXPECT_GT(structures, 2000U) << "most changes leave something to be read";
}

}  // namespace
}  // namespace vrx
