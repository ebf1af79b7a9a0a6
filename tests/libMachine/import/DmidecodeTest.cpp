#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>

#include "libMachine/import/Converters.h"
#include "libMachine/smbios/SmbiosFacts.h"
#include "libMachine/smbios/SmbiosTable.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::string contentOf(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::string bladeText() { return contentOf(std::filesystem::path(VRX_TEST_DATA) / "data/convert/dmidecode-blade.txt"); }

/// All that a store holds, a device a line.
std::string dump(const StateManager& store) {
    std::string all;
    const std::function<void(const IDeviceImp&)> add = [&](const IDeviceImp& device) {
        all += fmt::format("{} [{}] {} <{}>", device.type().toString().toUtf8(), device.hwLocator().toUtf8(),
                           device.name().toUtf8(), device.osLocator().toUtf8());
        for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
            all += fmt::format(" {}={};", property->key().toUtf8(), property->value().toString(false).toUtf8());
        }
        all += "\n";
        for (const auto& child : device.children()) {
            add(*child);
        }
    };
    if (store.deviceCount() != 0) {
        add(*store.rootDevice());
    }
    return all;
}

struct Converted {
    explicit Converted(std::string_view text) {
        DamageList list;
        Recording recording;
        convertDmidecode(text, recording, list);
        for (const ImportDamage& kind : list.all()) {
            damage.push_back(damageText(kind));
        }
        if (recording.size() != 0) {
            recording.storeIn(store);
        }
    }

    std::string dump() const { return vrx::dump(store); }

    StateManager store;
    std::vector<std::string> damage;
};

/// The table of which dmidecode-blade.txt is the text.
std::string bladeTable() {
    SmbiosBuilder table;
    table.add(0, 0x00, 0x1A, {{4, 1, 1}, {5, 2, 1}, {8, 3, 1}, {0x14, 0x09010403, 4}},
              {"Example BIOS", "V1.2", "02/29/2024"});
    table.add(1, 0x01, 0x1B,
              {{4, 1, 1},
               {5, 2, 1},
               {7, 3, 1},
               {8, 0x7766554433221100, 8},
               {16, 0xFFEEDDCCBBAA9988, 8},
               {0x19, 4, 1},
               {0x1A, 5, 1}},
              {"Example Systems", "Blade 7", "SN-1", "To be filled by O.E.M.", "Blades"});
    table.add(2, 0x02, 0x0F, {{4, 1, 1}, {5, 2, 1}, {6, 3, 1}, {7, 4, 1}, {8, 5, 1}, {0x0D, 0x0A, 1}},
              {"Example Systems", "B7-MB", "1.0", "MB-1", "N/A"});
    table.add(2, 0x03, 0x0F, {{4, 1, 1}, {5, 2, 1}, {7, 3, 1}, {0x0A, 4, 1}, {0x0D, 0x07, 1}},
              {"Example Systems", "B7-IO", "IO-1", "Bay 2"});
    table.add(3, 0x04, 0x16, {{4, 1, 1}, {5, 0x9C, 1}, {7, 2, 1}}, {"Example Systems", "CH-1"});
    table.add(3, 0x05, 0x18, {{4, 1, 1}, {5, 0x1D, 1}, {7, 2, 1}, {0x11, 10, 1}, {0x13, 0x0201, 2}, {0x17, 3, 1}},
              {"Example Systems", "CH-2", "B7-ENC"});
    table.add(4, 0x10, 0x30,
              {{4, 1, 1},
               {5, 3, 1},
               {7, 2, 1},
               {8, 0xBFEBFBFF00050657, 8},
               {0x10, 3, 1},
               {0x14, 0x08340FA0, 4},
               {0x18, 0x3641, 2},
               {0x1E, 0x20, 2},
               {0x20, 4, 1},
               {0x23, 0x180C10, 3}},
              {"CPU0", "Intel(R) Corporation", "Example(R) CPU 4214 @ 2.20GHz", "Unknown"});
    table.add(4, 0x11, 0x30, {{4, 1, 1}, {5, 3, 1}, {0x14, 4000, 2}, {0x19, 0x36, 1}, {0x1E, 0xFFFF, 2}}, {"CPU1"});
    table.add(4, 0x12, 0x30,
              {{4, 1, 1},
               {5, 3, 1},
               {7, 2, 1},
               {8, 0x410FD0C1, 8},
               {0x10, 3, 1},
               {0x14, 3000, 2},
               {0x16, 2600, 2},
               {0x18, 0x0641, 2},
               {0x1E, 0xFFFF, 2},
               {0x20, 4, 1},
               {0x23, 0xFFFFFF, 3},
               {0x2A, 0x012C012C012C, 6}},
              {"CPU2", "ARM Ltd.", "Example N1", "P-2"});
    table.add(7, 0x20, 0x1B, {{5, 0x0182, 2}, {9, 0x8108, 2}}, {});
    table.add(16, 0x30, 0x17, {{5, 3, 1}, {6, 3, 1}, {7, 0x80000000, 4}, {0x0D, 3, 2}, {0x0F, 2304ULL << 30, 8}}, {});
    table.add(16, 0x31, 0x17, {{5, 5, 1}, {6, 3, 1}, {7, 0x8000, 4}, {0x0D, 1, 2}}, {});
    table.add(17, 0x40, 0x5C,
              {{4, 0x30, 2},
               {8, 0x00400048, 4},
               {0x0C, 0x7FFF, 2},
               {0x0E, 9, 1},
               {0x10, 0x0201, 2},
               {0x12, 0x1A, 1},
               {0x13, 0x2080, 2},
               {0x15, 0xFFFF, 2},
               {0x17, 0x06050403, 4},
               {0x1B, 2, 1},
               {0x1C, 32768, 4},
               {0x20, 2933, 2},
               {0x26, 1200, 2},
               {0x54, 3200, 4}},
              {"A1", "Node 0", "Example Memory", "M-1", "A1_AssetTagNum0", "EM-32G      "});
    table.add(17, 0x41, 0x28, {{4, 0x30, 2}, {8, 0xFFFFFFFF, 4}, {0x0E, 9, 1}, {0x10, 0x0201, 2}, {0x17, 3, 1}},
              {"A2", "Node 0", "NO DIMM"});
    table.add(17, 0x42, 0x28,
              {{4, 0x30, 2},
               {0x0C, 0xFFFF, 2},
               {0x0E, 0x77, 1},
               {0x10, 0x0201, 2},
               {0x12, 1, 1},
               {0x13, 0x8000, 2},
               {0x17, 0x0403, 2}},
              {"A3", "Node 1", "UNKNOWN", "00000000"});
    table.add(17, 0x43, 0x28, {{4, 0x31, 2}, {0x0C, 32, 2}, {0x10, 1, 1}}, {"SYSTEM ROM"});
    table.add(9, 0x50, 0x11, {{4, 0x040DB101, 4}, {8, 4, 1}, {0x0F, 0x3B, 1}}, {"PCIe Slot 1"});
    table.add(9, 0x51, 0x11, {{4, 0x030A1701, 4}, {8, 3, 1}, {0x0D, 0xFFFFFFFF, 4}}, {"M.2"});
    table.add(39, 0x60, 0x16, {{6, 0x0201, 2}, {8, 3, 1}, {0x0A, 0x0504, 2}, {0x0C, 700, 2}, {0x0E, 2, 2}},
              {"Power Supply 1", "Example Power", "PS-1", "EP-700", "1.3"});
    table.add(39, 0x61, 0x16, {{6, 1, 1}, {0x0C, 0x8000, 2}}, {"Power Supply 2"});
    table.add(22, 0x70, 0x1A,
              {{4, 0x0201, 2}, {8, 0x0203, 2}, {0x0A, 4800, 2}, {0x0C, 11400, 2}, {0x10, 0x0F1C, 2}, {0x14, 0x0A04, 2}},
              {"Front", "Example Cells", "EC-48", "LiP"});
    table.add(27, 0x71, 0x0F, {{6, 0x65, 1}, {0x0C, 5600, 2}, {0x0E, 1, 1}}, {"CPU Fan"});
    table.add(27, 0x72, 0x0F, {{6, 0x63, 1}, {0x0C, 0x8000, 2}}, {});
    table.add(38, 0x80, 0x12, {{4, 0x2001, 2}}, {});
    table.add(43, 0x81, 0x1F, {{4, 0x504D5845, 4}, {8, 2, 1}, {0x0A, 0x00070002, 4}, {0x12, 1, 1}}, {"Example TPM"});
    table.add(127, 0x92, 4, {}, {});
    return table.bytes;
}

TEST(DmidecodeTest, textAndTableOfAMachineGiveTheSameDevices) {
    SavedMachine machine;
    machine.file("/sys/firmware/dmi/tables/DMI", bladeTable());
    machine.collect();
    ASSERT_TRUE(machine.isRecorded);
    const Converted converted(bladeText());
    EXPECT_THAT(converted.damage, IsEmpty());
    EXPECT_EQ(converted.dump(), dump(machine.store));
}

TEST(DmidecodeTest, devicesAreWhatATechnicianWouldSay) {
    const std::string all = Converted(bladeText()).dump();
    for (
        const char* const line : {
            "System [system] Example Systems Blade 7 </sys/devices/system> Vendor=Example Systems; Model=Blade 7; "
            "Family=Blades; SerialNumber=SN-1; UUID=33221100-5544-7766-8899-aabbccddeeff; Placeholders=SKU;\n",
            "Chassis [chassis:Blade Enclosing] Chassis </sys/firmware/dmi/entries/3-1> Vendor=Example Systems; "
            "ChassisType=Blade Enclosing; SKU=B7-ENC; SerialNumber=CH-2; RackUnits=10;\n",
            "Motherboard [board:Bay 2] Example Systems B7-IO </sys/firmware/dmi/entries/2-1>",
            "SerialNumber=MB-1; BoardType=Motherboard; Placeholders=AssetTag;\n",
            "FirmwareVersion=V1.2; ReleaseDate=2024-02-29; Revision=3.4; ControllerRevision=1.9;\n",
            "Processor [cpu:0] Example(R) CPU 4214 @ 2.20GHz </sys/firmware/dmi/entries/4-0> Clock=2200 MHz; "
            "Vendor=GenuineIntel; Model=Example(R) CPU 4214 @ 2.20GHz; Family=6; ModelNumber=85; Stepping=7; "
            "Cores=12; Threads=24; Slot=CPU0; SocketType=Socket LGA3647-1; SocketMaxClock=4000 MHz; "
            "Placeholders=SerialNumber;\n",
            "Cache [cpu:0/l3:0] L3 cache </sys/firmware/dmi/entries/7-0> Level=3; CacheType=Unified; Size=16.5 MB;\n",
            "Processor [cpu:1] Example N1 </sys/firmware/dmi/entries/4-2> Vendor=ARM Ltd.; Model=Example N1; "
            "Cores=300; Threads=300; Slot=CPU2; SerialNumber=P-2; Clock=2600 MHz;",
            "Slot [socket:CPU1] Processor socket </sys/firmware/dmi/entries/4-1>",
            "Memory [memory] Memory </proc/meminfo> InstalledSize=32 GB;\n",
            "MaximumSize=2.25 TB; Slots=3; ErrorCorrection=None;\n",
            "MemoryModule [dimm:A1] Example Memory EM-32G </sys/firmware/dmi/entries/17-0> Slot=A1; Bank=Node 0; "
            "FormFactor=DIMM; Vendor=Example Memory; PartNumber=EM-32G; SerialNumber=M-1; Size=32 GB; MemoryType=DDR4; "
            "Buffering=Registered; Speed=3200 MT/s; ConfiguredSpeed=2933 MT/s; Voltage=1.2 V; DataWidth=64 bit; "
            "TotalWidth=72 bit; Ranks=2; Placeholders=AssetTag;\n",
            "Slot [dimm:A2] Memory slot </sys/firmware/dmi/entries/17-1> Slot=A2; Bank=Node 0; FormFactor=DIMM;\n",
            "MemoryModule [dimm:A3] Memory module </sys/firmware/dmi/entries/17-2> Slot=A3; Bank=Node 1; "
            "Buffering=Load Reduced; Placeholders=Vendor, SerialNumber;\n",
            "Slot [slot:PCIe Slot 1] Expansion slot </sys/firmware/dmi/entries/9-0> Slot=PCIe Slot 1; "
            "SlotType=x16 PCI Express 3; SlotLength=Long; Usage=In Use;\n",
            "PowerSupply [psu:Power Supply 1] Example Power EP-700 </sys/firmware/dmi/entries/39-0> "
            "Slot=Power Supply 1; Vendor=Example Power; PartNumber=EP-700; Revision=1.3; SerialNumber=PS-1; "
            "MaxPower=700 W;\n",
            "Slot [psu:Power Supply 2] Power supply bay ",
            "Battery [battery:Front] Example Cells EC-48 </sys/firmware/dmi/entries/22-0> Slot=Front; "
            "Vendor=Example Cells; Model=EC-48; SerialNumber=0F1C; Technology=LiP; DesignCapacity=48 Wh; "
            "DesignVoltage=11.4 V;\n",
            "Fan [fan:CPU Fan] CPU Fan </sys/firmware/dmi/entries/27-0> CoolingType=Chip Fan; NominalSpeed=5600 RPM;\n",
            "ManagementController [bmc] Management controller </sys/firmware/dmi/entries/38-0> InterfaceType=KCS; "
            "IpmiVersion=2.0;\n",
            "Vendor=EXMP; Model=Example TPM; Version=2.0; FirmwareVersion=7.2;\n",
        }) {
        EXPECT_THAT(all, HasSubstr(line));
    }
    EXPECT_THAT(all, Not(HasSubstr("SYSTEM ROM")));
    EXPECT_THAT(all, Not(HasSubstr("fan:1"))) << "a cooling device that nobody described";
}

TEST(DmidecodeTest, olderAndCopiedFormsReadTheSame) {
    const std::string modern =
        "Handle 0x0001, DMI type 17, 40 bytes\nMemory Device\n\tArray Handle: 0x0009\n\tSize: 8 GB\n"
        "\tLocator: D1\n\tSpeed: 667 MT/s\n\tConfigured Memory Speed: 533 MT/s\n\n"
        "Handle 0x0009, DMI type 16, 15 bytes\nPhysical Memory Array\n\tUse: System Memory\n"
        "\tSupported:\n\t\tSize: 1 GB\n\tNumber Of Devices: 2\n";
    const std::string expected = Converted(modern).dump();
    ASSERT_THAT(expected, HasSubstr("Size=8 GB; Speed=667 MT/s; ConfiguredSpeed=533 MT/s;"));
    ASSERT_THAT(expected, HasSubstr("Slots=2;"));
    const std::vector<std::string> others = {
        "# dmidecode 2.7\nHandle 0x0001\n\tDMI type 17, 27 bytes.\n\tMemory Device\n\t\tArray Handle: 0x0009\n"
        "\t\tSize: 8192 MB\n\t\tLocator: D1\n\t\tSpeed: 667 MHz (1.5 ns)\n\t\tConfigured Clock Speed: 533 MHz\n"
        "Handle 0x0009\n\tDMI type 16, 15 bytes.\n\tPhysical Memory Array\n\t\tUse: System Memory\n"
        "\t\tNumber Of Devices: 2\n",
        "Handle 0x0001, DMI type 17, 40 bytes.\r\nMemory Device\r\n   Array Handle: 0x0009\r\n   Size: 8 GB\r\n"
        "   Locator:   D1  \r\n   Speed: 667 MT/s\r\n   Configured Memory Speed: 533 MT/s\r\n\r\n"
        "  Handle 0x0009, DMI type 16, 15 bytes\r\n  Physical Memory Array\r\n     Number Of Devices: 2\r\n",
        "Handle 0x0001, DMI type 17, 40 bytes\nMemory Device\nArray Handle: 0x0009\nSize: 8 GB\nLocator: D1\n"
        "Speed: 667 MT/s\nType Detail:\nNone of these\nConfigured Memory Speed: 533 MT/s\n\n"
        "Handle 0x0009, DMI type 16, 15 bytes\nPhysical Memory Array\nNumber Of Devices: 2",
    };
    for (const std::string& other : others) {
        const Converted converted(other);
        EXPECT_EQ(converted.dump(), expected) << other;
        EXPECT_THAT(converted.damage, IsEmpty()) << other;
    }
    EXPECT_EQ(Converted("no machine\nat all\n").store.deviceCount(), 0U);
}

TEST(DmidecodeTest, damageIsCountedByKindAndTheRestIsKept) {
    const auto module = [](std::string_view handle, std::string_view label, std::string_view size) {
        return fmt::format(
            "Handle {}, DMI type 17, 40 bytes\nMemory Device\n\tSize: {}\n\tForm Factor: DIMM\n\tLocator: {}\n"
            "\tSerial Number: S-1\n\n",
            handle, size, label);
    };
    const std::string text = "9 structures occupying 400 bytes.\nTable at 0x1.\n\n" + module("0x0001", "A1", "8 GB") +
                             module("0x0001", "A1", "8 GB") + module("0x0002", "B1", "8x4 GB") +
                             module("0x00", "C1", "4 furlongs") + module("0x00", "C2", "1 GB") +
                             "Handle 0x0Z\nStray\n" +
                             "Handle 0x0007, DMI type 1, 27 bytes\nSystem Information\n\tProduct Na\n" +
                             "rer: Example\n\t0123456789ABCDEF0123456789ABCDEF\n\tManufacturer: Example\n\tSKU Num";
    const Converted converted(text);
    EXPECT_THAT(converted.damage,
                ElementsAre("structures whose first line cannot be read, left out: 1 (first: line 40)",
                            "lines that cannot be read, left out: 3 (first: line 43)",
                            "structures that the recording announces and does not have: 2",
                            "structures with the handle of another one: 2 (first: line 11, handle 0x0001)",
                            "numbers that cannot be read, left out: 2 (first: line 20, Size)"));
    const std::string all = converted.dump();
    EXPECT_THAT(all, HasSubstr("Vendor=Example;"));
    EXPECT_THAT(all, Not(HasSubstr("InstalledSize"))) << "there may be more modules";
    EXPECT_EQ(converted.store.getDevices(CapabilityImp(StringView(u"MemoryModule")), false).size(), 4U);
    EXPECT_THAT(all, HasSubstr("[dimm:B1] Memory module"));
    EXPECT_THAT(all, HasSubstr("[dimm:C2]"));
}

TEST(DmidecodeTest, textsThatWereCutOffAreNoticed) {
    const std::string whole = bladeText();
    for (std::size_t size = whole.find("Handle"); size < whole.rfind("Handle"); size += 97) {
        EXPECT_THAT(Converted(whole.substr(0, size)).damage, Not(IsEmpty())) << size;
    }
    const auto until = [&whole](std::string_view text) {
        return Converted(whole.substr(0, whole.find(text) + text.size())).dump();
    };
    EXPECT_THAT(until("Serial Number: M"), AllOf(HasSubstr("Version=1.0;"), Not(HasSubstr("SerialNumber=M;"))));
    EXPECT_THAT(until("Socket Designation: CPU0\n"), Not(HasSubstr("CPU0"))) << "nobody knows whether it is empty";
    EXPECT_THAT(until("Version: Example(R) CPU 4214 @ 2.20GHz\n"), HasSubstr("Processor [cpu:0]"));
    EXPECT_THAT(until("Total Width: 72 bits\n"), Not(HasSubstr("dimm:")));
    const std::size_t first = whole.find("Handle");
    const std::string part = whole.substr(first, whole.find("Handle 0x0005") - first);
    EXPECT_THAT(Converted(part).damage, IsEmpty()) << "a chosen part is no damage";
}

TEST(DmidecodeTest, hostileTablesAndTextsAreReadWithinBounds) {
    const std::string table = bladeTable();
    const std::string text = bladeText();
    std::mt19937 random(20261121);
    const auto mutated = [&random](std::string bytes) {
        for (int change = 0; change < 12; ++change) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        return bytes;
    };
    std::size_t facts = 0;
    for (int round = 0; round < 300; ++round) {
        const std::string bytes = mutated(table);
        facts += readSmbiosFacts(SmbiosTable({bytes.begin(), bytes.end()})).memory.modules.size();
        EXPECT_GT(Converted(mutated(text)).store.deviceCount(), 1U);
    }
    EXPECT_GT(facts, 300U) << "most changes leave something to be read";
}

TEST(DmidecodeTest, onboardDevicesStandOnThePciBus) {
    const std::string all = Converted(
                                "Handle 0x0001, DMI type 41, 11 bytes\nOnboard Device\n\tReference Designation: NIC 1\n"
                                "\tType: Ethernet\n\tStatus: Enabled\n\tBus Address: 0000:1c:00.0\n\n"
                                "Handle 0x0002, DMI type 41, 11 bytes\nOnboard Device\n\tReference Designation: RAID\n"
                                "\tType: SAS Controller\n\tStatus: Disabled\n\tBus Address: 0000:02:00.0\n\n"
                                "Handle 0x0003, DMI type 41, 11 bytes\nOnboard Device\n\tReference Designation: USB 1\n"
                                "\tType: Other\n\tStatus: Enabled\n\tBus Address: 0000:00:1d.0\n")
                                .dump();
    EXPECT_THAT(all, HasSubstr("Ethernet [pci:0000:1c:00.0] NIC 1 </sys/bus/pci/devices/0000:1c:00.0> Label=NIC 1;\n"));
    EXPECT_THAT(all, HasSubstr("UsbController [pci:0000:00:1d.0] USB 1"));
    EXPECT_THAT(all, Not(HasSubstr("RAID")));
}

TEST(DmidecodeTest, olderListsOfOnboardDevicesCountWhereNothingHasAnAddress) {
    const std::string list =
        "Handle 0x0001, DMI type 10, 8 bytes\nOn Board Device 1 Information\n\tType: Video\n\tStatus: Enabled\n"
        "\tDescription: Matrox\nOn Board Device 2 Information\n\tType: Ethernet\n\tStatus: Disabled\n"
        "\tDescription: NIC\n\nHandle 0x0002, DMI type 10, 6 bytes\nOn Board Device Information\n\tType: Ethernet\n"
        "\tStatus: Enabled\n\tDescription: To Be Filled By O.E.M.\n\n";
    const std::string slot =
        "Handle 0x0004, DMI type 9, 17 bytes\nSystem Slot Information\n\tDesignation: Riser\n\tCurrent Usage: In Use\n"
        "\tBus Address: 0000:1c:00.0\n";
    const Converted older(list + slot);
    EXPECT_THAT(older.damage, IsEmpty());
    EXPECT_THAT(older.dump(),
                AllOf(HasSubstr("Display [onboard:Matrox] Matrox </sys/firmware/dmi/entries/10-0> Label=Matrox;\n"),
                      HasSubstr("Ethernet [onboard:2] On-board device </sys/firmware/dmi/entries/10-1>"),
                      HasSubstr("[slot:Riser]"), Not(HasSubstr("NIC"))));
    const std::string newer =
        "Handle 0x0003, DMI type 41, 11 bytes\nOnboard Device\n\tReference Designation: LOM\n\tType: Ethernet\n"
        "\tStatus: Enabled\n\tBus Address: 0000:1c:00.0\n\n";
    EXPECT_THAT(Converted(list + newer + slot).dump(),
                AllOf(HasSubstr("Ethernet [pci:0000:1c:00.0] LOM"), HasSubstr("Slot [slot:Riser]"),
                      Not(HasSubstr("[onboard:"))));
    const std::string_view bytes("\x0A\x08\x01\x00\x83\x01\x05\x02Matrox\0NIC\0\0", 20);
    const std::vector<OnboardDeviceFacts> read =
        readSmbiosFacts(SmbiosTable({bytes.begin(), bytes.end()})).onboardDevices;
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].type + read[0].designation + read[1].type + read[1].designation, "VideoMatroxEthernetNIC");
    EXPECT_TRUE(read[0].isEnabled && !read[1].isEnabled);
}

TEST(DmidecodeTest, modulesOfOneModelAreEqualWhateverFirmwareWritesOfThem) {
    const auto memory = [](std::string_view fields) {
        return Converted("Handle 0x0001, DMI type 17, 40 bytes\nMemory Device\n\tLocator: D1\n" + std::string(fields) +
                         "\nHandle 0x0002, DMI type 17, 40 bytes\nMemory Device\n\tLocator: D2\n\tSize: 4097 MB\n")
            .dump();
    };
    EXPECT_THAT(memory("\tSize: 4096 MB\n\tManufacturer: 00CE00B300CE\n"
                       "\tPart Number: 4D333933413247343045423120202020\n"),
                AllOf(HasSubstr("MemoryModule [dimm:D1] Samsung M393A2G40EB1 <"), HasSubstr("VendorId=00CE00B300CE;"),
                      HasSubstr("PartNumber=M393A2G40EB1; Size=4 GB;"), HasSubstr("Size=4.0009765625 GB;"),
                      HasSubstr("InstalledSize=8.0009765625 GB;")));
    EXPECT_THAT(
        memory("\tSize: 512 GB\n\tType Detail: Synchronous Non-Volatile LRDIMM\n"
               "\tMemory Technology: Intel Optane DC persistent memory\n"),
        AllOf(HasSubstr("Storage [dimm:D1] Persistent memory module <"),
              HasSubstr("Technology=Intel Optane persistent memory;"), HasSubstr("InstalledSize=4.0009765625 GB;")));
    EXPECT_THAT(memory("\tSize: 16 MB\n\tType: Flash\n\tType Detail: Non-Volatile\n"), Not(HasSubstr("dimm:D1")));
}

TEST(DmidecodeTest, recordingsOfRealMachinesAreReadWithoutDamage) {
    const auto folder = std::filesystem::path(VRX_TEST_DATA) / "../../shared/machines/dmidecode";
    if (!std::filesystem::is_directory(folder)) {
        GTEST_SKIP() << folder << " is absent: no recordings of real machines to convert";
    }
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string text = contentOf(entry.path());
        const Converted converted(text);
        EXPECT_THAT(converted.damage, IsEmpty()) << entry.path();
        EXPECT_EQ(converted.dump(), Converted(text).dump()) << entry.path();
        EXPECT_GE(converted.store.getDevices(CapabilityImp(StringView(u"Processor")), false).size(), 2U)
            << entry.path();
        EXPECT_GE(converted.store.getDevices(CapabilityImp(StringView(u"MemoryModule")), false).size(), 2U)
            << entry.path();
        ++files;
    }
    EXPECT_GT(files, 0U);
}

}  // namespace
}  // namespace vrx
