#include "libSystemState/capabilities/CapabilityImp.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

CapabilityImp named(const char16_t* name) { return CapabilityImp(name); }

TEST(CapabilityImpTest, looksUpNamesAndAliasesWithoutCase) {
    const std::pair<const char16_t*, const char*> cases[] = {{u"machine", "System"},
                                                             {u"UEFI", "BIOS"},
                                                             {u"core", "ProcessorCore"},
                                                             {u"DISK", "Storage"},
                                                             {u"HardDisk", "HardDiskDrive"},
                                                             {u"nvme", "NvmeDrive"},
                                                             {u"logicaldrive", "Volume"},
                                                             {u"hba", "SasController"},
                                                             {u"nic", "Network"},
                                                             {u"VideoAdapter", "Display"},
                                                             {u"i2cBUS", "I2cBus"},
                                                             {u"unknown", "Generic"}};
    for (const auto& [text, canonical] : cases) {
        EXPECT_EQ(named(text).toString(0, false).toUtf8(), canonical);
    }
    EXPECT_EQ(named(u"SSD"), named(u"solidstatedrive"));
    EXPECT_NE(named(u"SSD"), named(u"HDD"));
}

TEST(CapabilityImpTest, isSatisfiedByItselfAndWhatStandsBelow) {
    EXPECT_TRUE(named(u"Storage").isCapable(named(u"Storage")));
    EXPECT_TRUE(named(u"Storage").isCapable(named(u"SSD")));
    EXPECT_FALSE(named(u"SSD").isCapable(named(u"Storage")));
    EXPECT_FALSE(named(u"Storage").isCapable(named(u"Volume")));
    EXPECT_FALSE(named(u"Storage").isCapable(named(u"RAID")));
    EXPECT_FALSE(named(u"Processor").isCapable(named(u"Core")));
    EXPECT_FALSE(named(u"Memory").isCapable(named(u"MemoryArray")));
    EXPECT_TRUE((named(u"Network") | named(u"Storage")).isCapable(named(u"SSD")));

    const CapabilityImp& all = CapabilityImp::ALL();
    const CapabilityImp nonsense = named(u"nonsense");
    EXPECT_TRUE(all.isCapable(named(u"Printer")));
    EXPECT_TRUE(all.isCapable(nonsense));
    EXPECT_TRUE(all.isCapable(CapabilityImp()));
    EXPECT_FALSE(nonsense.isCapable(nonsense));
    EXPECT_FALSE(nonsense.isCapable(named(u"Printer")));
    EXPECT_FALSE(CapabilityImp().isCapable(named(u"Printer")));
    EXPECT_FALSE(named(u"Printer").isCapable(nonsense));
}

TEST(CapabilityImpTest, intersectsAlongLinesOfDescent) {
    EXPECT_TRUE(named(u"Storage").intersect(named(u"SSD")));
    EXPECT_TRUE(named(u"SSD").intersect(named(u"Storage")));
    EXPECT_FALSE(named(u"SSD").intersect(named(u"HDD")));
    EXPECT_TRUE((named(u"SSD") | named(u"Fan")).intersect(named(u"Cooling") | named(u"HDD")));
    EXPECT_TRUE(CapabilityImp::ALL().intersect(named(u"Fan")));
    EXPECT_TRUE(named(u"Fan").intersect(CapabilityImp::ALL()));
    EXPECT_FALSE(CapabilityImp::ALL().intersect(CapabilityImp()));
    EXPECT_FALSE(CapabilityImp::INVALID().intersect(CapabilityImp::ALL()));
    EXPECT_FALSE(named(u"nonsense").intersect(named(u"nonsense")));
}

TEST(CapabilityImpTest, unitesInTableOrder) {
    const CapabilityImp set = named(u"Fan") | named(u"SSD") | named(u"System") | named(u"blower");
    EXPECT_EQ(set.toString().toUtf8(), "System, SolidStateDrive, Fan");
    EXPECT_EQ(set.names().size(), 3u);
    EXPECT_EQ(set, named(u"System") | (named(u"SSD") | named(u"Fan")));
    EXPECT_EQ(set.node(), 0);
    EXPECT_EQ(named(u"Fan") | named(u"Fan"), named(u"Fan"));
    EXPECT_NE((named(u"Fan") | named(u"Fan")).node(), 0);
    EXPECT_EQ((set | CapabilityImp::ALL()).toString(), u"ALL");
    EXPECT_EQ(CapabilityImp() | set, set);
    EXPECT_EQ(set | named(u"nonsense"), set);
    EXPECT_EQ(named(u"nonsense") | set, set);
    EXPECT_TRUE((named(u"nonsense") | named(u"rubbish")).isEmpty());
}

TEST(CapabilityImpTest, unknownNamesEqualInvalidAndKeepTheirText) {
    EXPECT_EQ(named(u"Flux Capacitor"), CapabilityImp::INVALID());
    EXPECT_EQ(named(u"Flux Capacitor"), named(u""));
    EXPECT_EQ(named(u"Flux Capacitor").toString(0, false), u"Flux Capacitor");
    EXPECT_EQ(named(u"").toString(), u"");
    EXPECT_EQ(CapabilityImp::INVALID().toString(), u"INVALID");
    EXPECT_NE(CapabilityImp::INVALID(), CapabilityImp());
    EXPECT_TRUE(named(u"ALL").isInvalid());  // only the constant stands for everything
}

TEST(CapabilityImpTest, definesNamesBelowExistingOnes) {
    ASSERT_TRUE(CapabilityImp::define(u"ZonedDrive", u"hdd"));
    ASSERT_TRUE(CapabilityImp::define(u"ÄußererLüfter", u"zoneddrive"));
    EXPECT_EQ(named(u"äUßERERlÜFTER").toString(), u"ÄußererLüfter");
    EXPECT_TRUE(named(u"Storage").isCapable(named(u"ÄußererLüfter")));
    EXPECT_FALSE(named(u"SSD").isCapable(named(u"ZonedDrive")));
    EXPECT_EQ((named(u"ZonedDrive") | named(u"Generic")).toString(), u"Generic, ZonedDrive");

    EXPECT_FALSE(CapabilityImp::define(u"zoneddrive", u"SSD"));
    EXPECT_FALSE(CapabilityImp::define(u"DIMM", u"Storage"));
    EXPECT_FALSE(CapabilityImp::define(u"", u"Storage"));
    EXPECT_FALSE(CapabilityImp::define(u"Orphan", u"Nobody"));
    EXPECT_FALSE(CapabilityImp::define(u"all", u"Storage"));
    EXPECT_TRUE(named(u"Orphan").isInvalid());
}

}  // namespace
}  // namespace vrx
