#include "libMachine/record/CleanText.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(CleanTextTest, tidiesWhatVendorsWrite) {
    EXPECT_EQ(cleanText("  ST500\t\x01 DM  002 \n"), u"ST500 DM 002");
    EXPECT_EQ(cleanText(std::string_view("cut\0off", 7)), u"cut");
    EXPECT_EQ(cleanText("\x1F \x7F"), u"");
    EXPECT_EQ(cleanText("Caf\xC3\xA9 \xFF"), u"Caf\u00E9 \uFFFD");
}

TEST(CleanTextTest, knowsPlaceholdersFromValues) {
    for (const char16_t* const text : {u"",
                                       u"To be filled by o.e.m.",
                                       u"NOT SPECIFIED",
                                       u"none",
                                       u"0000000",
                                       u"FFFFFFFF",
                                       u"--",
                                       u"........",
                                       u"xxxxxxxx",
                                       u"00000000-0000-0000-0000-000000000000",
                                       u"Dimm0_SerNum",
                                       u"A1_AssetTagNum0",
                                       u"SerNum3",
                                       u"Array1_PartNumber0",
                                       u"0123456789",
                                       u"Unknown",
                                       u"*",
                                       u"03000200-0400-0500-0006-000700080009",
                                       u"01234567890123456789AB",
                                       u"01234567",
                                       u"9876543210",
                                       u"MB-1234567890",
                                       u"(none)",
                                       u"Fill By OEM",
                                       u"TBD by OEM",
                                       u"NotProvided",
                                       u"Type1Sku0",
                                       u"Type1ProductConfigId",
                                       u"Type2 - Board Asset Tag",
                                       u"XxXxXxX",
                                       u"SKU=NotProvided;ModelName=PowerEdge R630",
                                       u"Base Board Chassis Location",
                                       u"ModulePartNumber00",
                                       u"No Serial Number",
                                       u"serialnumber"}) {
        EXPECT_TRUE(isPlaceholder(text)) << String(text).toUtf8();
    }
    for (const char16_t* const text : {u"0",
                                       u"00",
                                       u"F00000",
                                       u"A1",
                                       u"1.0",
                                       u"Nonesuch",
                                       u"Serial",
                                       u"No-Name 4",
                                       u"00CE00B300CE",
                                       u"Model 500",
                                       u"X",
                                       u"S_3",
                                       u"7",
                                       u"Manufacturer & Sons",
                                       u"SKU=0717;ModelName=PowerEdge C4140",
                                       u"Version 2",
                                       u"SKU-7",
                                       u"System Board",
                                       u"DIMM_A1",
                                       u"Slot 1",
                                       u"1234",
                                       u"Power Supply 1",
                                       u"Type 2 x4",
                                       u"9965698-040",
                                       u"PSU 1",
                                       u"BIOS",
                                       u"2021-10-05"}) {
        EXPECT_FALSE(isPlaceholder(text)) << String(text).toUtf8();
    }
}

}  // namespace
}  // namespace vrx
