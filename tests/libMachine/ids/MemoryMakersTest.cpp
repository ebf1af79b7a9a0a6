#include "libMachine/ids/MemoryMakers.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(MemoryMakersTest, namesTheMakerOfEveryFormOfItsCode) {
    constexpr std::pair<const char*, const char*> CODES[] = {{"00CE00B300CE", "Samsung"},
                                                             {"80CE", "Samsung"},
                                                             {"0x2C00", "Micron Technology"},
                                                             {"802C0000802C", "Micron Technology"},
                                                             {"AD00000000000000", "SK Hynix"},
                                                             {"2CFFFFFFFFFFFFFF", "Micron Technology"},
                                                             {"7F7F7F0B00000000", "Nanya"},
                                                             {"830B", "Nanya"},
                                                             {"859B", "Crucial"},
                                                             {"9B85", "Crucial"},
                                                             {"0198", "Kingston"},
                                                             {"9801", "Kingston"},
                                                             {"C1494E46494E454F", "Infineon"},
                                                             {"JEDEC ID:7F 7F 7F 7F 7F 51", "Qimonda"},
                                                             {"Bank 4, Hex 0x0B", "Nanya"},
                                                             {"Bank 4, Hex 0x", ""},
                                                             {"Samsung", ""},
                                                             {"DEAD", ""},
                                                             {"CE", ""},
                                                             {"7F7F", ""},
                                                             {"", ""}};
    for (const auto& [code, maker] : CODES) {
        EXPECT_EQ(memoryMaker(code), maker) << code;
    }
}

TEST(MemoryMakersTest, readsTextsThatAreWrittenInHexadecimalDigits) {
    EXPECT_EQ(textInHex("0x484D54333235533642465238432D483920202020"), "HMT325S6BFR8C-H9");
    for (const char* const text :
         {"HMT325S6BFR8C-H9", "80908209", "3132333435363738", "4D33393341", "00CE00B300CE0102"}) {
        EXPECT_EQ(textInHex(text), "") << text;
    }
}

}  // namespace
}  // namespace vrx
