#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "tests/libMachine/support/ConvertedMachine.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string convertData(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(VRX_TEST_DATA "/data/convert/" + name, std::ios::binary).rdbuf();
    return text.str();
}

struct Expected {
    std::string locator;
    std::string text;
};

void expectDevices(const ConvertedMachine& machine, std::initializer_list<Expected> devices) {
    for (const Expected& device : devices) {
        EXPECT_EQ(machine.at(device.locator), device.text) << device.locator;
    }
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

TEST(LshwRecordingTest, givesWhatTheRecorderWouldGive) {
    const ConvertedMachine machine(convertData("workstation.lshw.xml"));
    const std::string pci = "/sys/bus/pci/devices/";
    expectDevices(
        machine,
        {{"system",
          "System name=Example Works Bench 300 os=/sys/devices/system Vendor=Example Works Model=Bench 300 Version=2 "
          "SKU=SKU-7 SerialNumber=EW-0042 UUID=a0b1c2d3-0001-0002-0003-000000000042"},
         {"chassis", "Chassis name=Chassis os=/sys/class/dmi/id above=system ChassisType=Desktop"},
         {"board",
          "Motherboard name=Example Works EW-B1 os=/sys/class/dmi/id above=system Vendor=Example Works Model=EW-B1"},
         {"bios",
          "BIOS name=BIOS os=/sys/class/dmi/id above=system Vendor=Example BIOS FirmwareVersion=1.2 "
          "ReleaseDate=2020-03-04"},
         {"cpu:0",
          "Processor name=Intel(R) Core(TM) i5-1234 CPU @ 2.50GHz os=/sys/firmware/dmi/entries/4-0 above=system "
          "Clock=2500 MHz Vendor=GenuineIntel Model=Intel(R) Core(TM) i5-1234 CPU @ 2.50GHz Family=6 ModelNumber=94 "
          "Stepping=3 Cores=4 Threads=8 Slot=U3E1"},
         {"cpu:1", ""},
         {"dimm:DIMM_A1",
          "MemoryModule name=Example Memory EM-8G os=/sys/firmware/dmi/entries/17-0 above=memory/array:0 Slot=DIMM_A1 "
          "FormFactor=DIMM Vendor=Example Memory PartNumber=EM-8G SerialNumber=M0001 Size=8 GB MemoryType=DDR4 "
          "Speed=2666 MT/s DataWidth=64 bit"},
         {"dimm:DIMM_A2",
          "Slot name=Memory slot os=/sys/firmware/dmi/entries/17-1 above=memory/array:0 Slot=DIMM_A2 FormFactor=DIMM"},
         {"pci:0000:00:01.0",
          "PciBridge name=PCI bridge os=" + pci + "0000:00:01.0 above=system Vendor=Example Silicon Class=PCI bridge"},
         {"pci:0000:01:00.0",
          "Ethernet name=Two Port Adapter os=eth0 above=pci:0000:00:01.0 Vendor=Example Networks "
          "Model=Two Port Adapter VendorId=8086 DeviceId=1521 Driver=igb(Internal) Address=02:00:00:00:00:0a "
          "LinkState=up(Volatile) Speed=1000 Mbit/s(Volatile)"},
         {"pci:0000:01:00.0/port:1",
          "Ethernet name=Two Port Adapter os=eth1 above=pci:0000:01:00.0 Address=02:00:00:00:00:01(Volatile)"},
         {"usb:1",
          "UsbHub name=2.0 root hub os=/sys/bus/usb/devices/usb1 above=pci:0000:00:14.0 Vendor=Linux Foundation "
          "Model=2.0 root hub VendorId=1d6b DeviceId=0002 UsbVersion=2.00"},
         {"usb:1-2.1",
          "Keyboard name=Keys 101 os=/sys/bus/usb/devices/1-2.1 above=usb:1 Vendor=Example Input Model=Keys 101 "
          "Revision=0121 Speed=1.5 Mbit/s"},
         {"pci:0000:00:17.0/ata:2",
          "SolidStateDrive name=Example SSD 500 os=/dev/sda above=pci:0000:00:17.0 Model=Example SSD 500 "
          "SerialNumber=D0001 FirmwareVersion=F1 Size=465.7617416381836 GB SectorSize=512 B Transport=SATA "
          "Removable=false "
          "Rotational=false"},
         {"pci:0000:00:17.0/ata:2/part:1",
          "Volume name=Partition 1 os=/dev/sda1 above=pci:0000:00:17.0/ata:2 Size=465.6612854003906 GB"},
         {"pci:0000:00:17.0/ata:3",
          "HardDiskDrive name=Example Disk os=/dev/sdb above=pci:0000:00:17.0 Model=Example Disk SerialNumber=D0001 "
          "Size=931.5133895874023 GB Transport=SATA Removable=false Rotational=true RotationRate=7200 RPM"},
         {"net:bond0", ""}});
    EXPECT_EQ(machine.recording.size(), 21U) << machine.all();
    EXPECT_THAT(machine.damage, ElementsAre("modules or disks with the serial number of another one: 1 "
                                            "(first: pci:0000:00:17.0/ata:3)"));
}

TEST(LshwRecordingTest, readsJsonWithItsMistakes) {
    const ConvertedMachine machine(convertData("blade.lshw.json"));
    expectDevices(
        machine,
        {{"system",
          "System name=Example Works Blade 9 os=/sys/devices/system Vendor=Example Works "
          "Model=Blade 9"},
         {"pci:0000:45:00.0/ns:1",
          "NvmeDrive name=Example Flash Drive 9300 os=/dev/nvme0n1 above=pci:0000:45:00.0 "
          "Vendor=Example Flash Model=Drive 9300 SerialNumber=N0001 FirmwareVersion=FW1 "
          "WWN=eui.0000000000000001 Size=3.4931472167372704 TB SectorSize=512 B Transport=NVMe Removable=false"}});
    EXPECT_THAT(machine.at("cpu:0"), HasSubstr("Vendor=AuthenticAMD Model=AMD EPYC 7000 Family=23 ModelNumber=49 "
                                               "Stepping=0 Cores=32 Threads=64"));
    EXPECT_THAT(machine.at("pci:0000:45:00.0"), testing::StartsWith("NvmeController "));
    EXPECT_THAT(machine.at("psu:PSU 550"), HasSubstr("MaxPower=550 W"));
    EXPECT_EQ(machine.recording.size(), 7U) << machine.all();
    EXPECT_THAT(machine.damage, ElementsAre("missing commas in JSON, put in: 1 (first: line 11)"));
}

TEST(LshwRecordingTest, keepsWhatItsVersionsFailToMeasure) {
    const auto node = [](std::string_view id, std::string_view kind, std::string_view content) {
        return "<node id='" + std::string(id) + "' class='" + std::string(kind) + "'" + std::string(content) +
               "</node>";
    };
    const std::string text =
        "<node id='host' class='system'>" +
        node("cpu:0", "processor",
             " handle='DMI:0004'><product>Intel Xeon</product><slot>P0</slot>" +
                 node("cache", "memory", " handle='DMI:0007'><slot>L3</slot>")) +
        node("cpu:1", "processor",
             " handle='DMI:0005'><description>CPU [empty]</description><product>00000000</product>"
             "<slot>P1</slot>") +
        node("memory", "memory",
             " handle='DMI:0010'><size units='bytes'>34359738368</size>" +
                 node("bank:0", "memory",
                      " handle='DMI:0011'><description>DIMM DDR4 [empty]</description><slot>A1</slot>"
                      "<product>M-16</product><vendor>0x2C00</vendor><serial>S1</serial>") +
                 node("bank:1", "memory",
                      " handle='DMI:0012'><description>DIMM [empty]</description><slot>A2</slot>"
                      "<product>NO DIMM</product><vendor>NO DIMM</vendor><serial>NO DIMM</serial>")) +
        node("memory:1", "memory",
             " handle='DMI:0020'><size units='bytes'>16777216</size>" +
                 node("bank", "memory",
                      " handle='DMI:0021'><description>FLASH Non-volatile 33 MHz</description>"
                      "<slot>ROM</slot><size units='bytes'>16777216</size>")) +
        "</node>";
    const ConvertedMachine machine(text);
    expectDevices(machine, {{"dimm:ROM", ""}, {"memory/array:1", ""}});
    EXPECT_THAT(machine.at("dimm:A1"), HasSubstr("Vendor=Micron Technology VendorId=0x2C00(Internal) PartNumber=M-16"));
    EXPECT_THAT(machine.at("dimm:A2"), testing::StartsWith("Slot "));
    EXPECT_THAT(machine.at("memory"), HasSubstr("InstalledSize=32 GB"));
    EXPECT_THAT(machine.at("cpu:0/l3:0"), HasSubstr("Level=3"));
    const auto isUnread = [&machine](StringView type, StringView key) {
        return std::ranges::any_of(machine.recording.unread(), [&](const UnreadSource& unread) {
            return unread.mayHide(CapabilityImp(type), key);
        });
    };
    EXPECT_TRUE(isUnread(u"MemoryModule", u"Size"));
    EXPECT_FALSE(isUnread(u"MemoryModule", u"Speed") || isUnread(u"Storage", u"Size"));
    EXPECT_THAT(machine.at("socket:P1"), testing::StartsWith("Slot "));
    EXPECT_THAT(machine.damage,
                ElementsAre("memory modules and caches that do not tell their size, kept without one: 1 (first: L3)",
                            "memory modules that are called empty and have a part or serial number, kept: 1 (first: "
                            "dimm:A1)"));
}

TEST(LshwRecordingTest, tellsDrivesFromVolumesAndFromWhatIsPluggedIn) {
    const auto machineWith = [](std::string_view controller, std::string_view host, std::string_view disk) {
        std::string text = "<node class='system'><node id='storage' class='storage'><description>";
        text.append(controller).append("</description><businfo>pci@0000:03:00.0</businfo>");
        const bool isOnBoard = !host.empty();
        text.append(isOnBoard ? "</node><node id='scsi' class='storage'><configuration>" : "").append(host);
        text.append(isOnBoard ? "</configuration>" : "");
        text.append("<node id='disk' class='disk'><businfo>scsi@6:0.0.0</businfo>").append(disk);
        text.append(
            "<node id='volume' class='volume'><businfo>scsi@6:0.0.0,1</businfo><logicalname>/dev/sda1"
            "</logicalname></node></node></node></node>");
        return ConvertedMachine(text);
    };
    const std::string raid = "pci:0000:03:00.0/scsi:0:0:0";
    const ConvertedMachine volume =
        machineWith("RAID bus controller", "", "<product>MR9271-8i</product><vendor>LSI</vendor>");
    EXPECT_THAT(volume.at(raid), testing::StartsWith("Volume name=LSI MR9271-8i "));
    EXPECT_THAT(volume.at(raid + "/part:1"), HasSubstr("above=" + raid));
    EXPECT_THAT(machineWith("RAID bus controller", "", "<product>ST2000NM</product><vendor>SEAGATE</vendor>").at(raid),
                testing::StartsWith("Storage "));
    EXPECT_THAT(
        machineWith("SATA controller", "<setting id='driver' value='usb-storage'/>", "<product>Virtual HDisk</product>")
            .at("unplaced/host:6/scsi:0:0:0"),
        HasSubstr("Transport=USB"));
    const ConvertedMachine card(
        "<node class='system'><node id='memory' class='memory'><description>FLASH memory"
        "</description><businfo>pci@0000:04:00.0</businfo></node></node>");
    EXPECT_THAT(card.at("pci:0000:04:00.0"), testing::StartsWith("SolidStateDrive "));
}

// The type has to come out of what lshw tells in any version and language.
TEST(LshwRecordingTest, tellsTypesOfPciFunctions) {
    struct Row {
        std::string_view attributes;
        std::string_view content;
        std::string_view type;
    };
    static constexpr Row ROWS[] = {
        {"id='storage' class='storage'", "<description>RAID bus controller</description>", "RaidController"},
        {"id='sas' class='storage'", "", "SasController"},
        {"id='storage' class='storage'", "<capabilities><capability id='nvm_express'/></capabilities>",
         "NvmeController"},
        {"id='ide' class='storage'", "<description>Schnittstelle</description>", "IdeController"},
        {"id='network' class='network'", "<logicalname>wlan0</logicalname>", "WirelessNetwork"},
        {"id='network' class='network'", "<logicalname>ib0</logicalname>", "Infiniband"},
        {"id='multimedia' class='multimedia'", "<configuration><setting id='driver' value='snd_hda'/></configuration>",
         "AudioDevice"},
        {"id='firewire' class='bus'", "<capabilities><capability id='ohci'/></capabilities>", "FirewireController"},
        {"id='serial' class='bus'", "<description>SMBus</description>", "I2cBus"},
        {"id='display' class='display'", "", "Display"},
        {"id='generic' class='generic'", "<description>System peripheral</description>", "PciDevice"},
    };
    for (const Row& row : ROWS) {
        std::string text = "<node class='system'><node ";
        text.append(row.attributes).append("><businfo>pci@00:1F.2</businfo>").append(row.content) += "</node></node>";
        EXPECT_THAT(ConvertedMachine(text).at("pci:0000:00:1f.2"), testing::StartsWith(std::string(row.type) + " "))
            << text;
    }
}

/// A document of format 2 as format 3 writes it: kinds of objects as bits, sizes with their unit, digits behind a
/// revision, and what is said of the machine in the topology.
std::string inThirdFormat(std::string text) {
    const std::string_view pairs[][2] = {{"version=\"2.0\"", "version=\"3.1\""},
                                         {"osdev_type=\"3\"", "osdev_type=\"48\""},
                                         {"osdev_type=\"2\"", "osdev_type=\"16\""},
                                         {"osdev_type=\"0\"", "osdev_type=\"1\""},
                                         {"976762584", "976762584KiB"},
                                         {"16777216", "16777216KiB"},
                                         {"] 01\"", "] 01 02\""}};
    for (const auto& [from, to] : pairs) {
        text = replaced(text, from, to);
    }
    const std::string vendor = R"(<info name="DMISysVendor" value="Example Works"/>)";
    return replaced(replaced(text, vendor, ""), "</topology>", vendor + "</topology>");
}

TEST(HwlocXmlTest, readsAllFormats) {
    const std::string second = convertData("node.hwloc2.xml");
    std::string first = replaced(second, "\"Package\"", "\"Socket\"");
    for (const char* level : {"L1Cache", "L3Cache"}) {
        first = replaced(first, level, "Cache");
    }
    const ConvertedMachine machine(second);
    first = replaced(first, " version=\"2.0\"", "");
    EXPECT_EQ(ConvertedMachine(first).all(), machine.all());
    EXPECT_EQ(ConvertedMachine(inThirdFormat(second)).all(), machine.all());
    EXPECT_EQ(ConvertedMachine(replaced(second, "\"Machine\"", "\"NUMANode\"")).all(), machine.all());
    expectDevices(
        machine,
        {{"cpu:1",
          "Processor name=Example CPU os=/sys/devices/system/cpu/cpu0 above=system Vendor=GenuineIntel "
          "Model=Example CPU Family=6 Cores=2 Threads=4"},
         {"cpu:1/core:4", "ProcessorCore name=CPU 1 core 4 os=/sys/devices/system/cpu/cpu1 above=cpu:1 Threads=2"},
         {"cpu:1/core:5/l1d",
          "Cache name=L1 data cache os=/sys/devices/system/cpu/cpu0/cache above=cpu:1/core:5 Level=1 CacheType=Data "
          "Size=32 KB LineSize=64 B Associativity=8"},
         {"cpu:1/l3:0",
          "Cache name=L3 cache os=/sys/devices/system/cpu/cpu1/cache above=cpu:1 Level=3 CacheType=Unified Size=32 MB "
          "LineSize=64 B Associativity=16"},
         {"memory", "Memory name=Memory os=/proc/meminfo above=system UsableSize=16 GB(Internal) InstalledSize=16 GB"},
         {"dimm:DIMM_A1",
          "MemoryModule name=Memory module os= above=memory Slot=DIMM_A1 SerialNumber=M0001 Size=16 GB "
          "MemoryType=DDR4"},
         {"pci:0000:02:00.0/ns:1",
          "NvmeDrive name=Example Flash os=/dev/nvme0n1 above=pci:0000:02:00.0 Model=Example Flash SerialNumber=N0002 "
          "Size=931.5133895874023 GB"}});
    EXPECT_THAT(machine.at("pci:0000:01:00.0"),
                AllOf(testing::StartsWith("Ethernet "), HasSubstr(" os=eno1 above=pci:0000:00:1c.0 "),
                      HasSubstr("VendorId=8086 DeviceId=1521"), HasSubstr("Revision=01 Address=02:00:00:00:00:0a")));
    EXPECT_THAT(machine.at("pci:0000:01:00.0/port:1"), HasSubstr("Address=02:00:00:00:00:0b"));
    EXPECT_THAT(machine.at("pci:0000:03:00.0"),
                AllOf(HasSubstr(" os=ib0 "), HasSubstr("Address=80:00:00:48:fe:80:0a NodeGuid=0002:c903:00f9:bfa0")));
}

// Whatever is missing or wrong: a machine with its root, or none, but never a crash or a value that was cut in half.
TEST(ForeignRecordingTest, takesDamagedRecordings) {
    static constexpr std::size_t STEP = 97;
    for (const char* const name : {"workstation.lshw.xml", "blade.lshw.json", "node.hwloc2.xml"}) {
        const std::string whole = convertData(name);
        const std::string all = ConvertedMachine(whole).all();
        std::size_t converted = 0;
        for (std::size_t size = 0; size < whole.size(); size += STEP) {
            const ConvertedMachine cut(whole.substr(0, size));
            converted += cut.isConverted ? 1U : 0U;
            EXPECT_EQ(cut.isConverted, cut.recording.size() > 0);
            for (std::size_t place = 0; place < cut.recording.size(); ++place) {
                EXPECT_THAT(all, HasSubstr(cut.recording.at(place).hwLocator + " ")) << name << " " << size;
            }
            EXPECT_TRUE(!cut.isConverted || !cut.damage.empty()) << name << " " << size;

            std::string broken = whole;
            broken[size] = "\xFF<&\"{\0"[size % 6];
            EXPECT_TRUE(ConvertedMachine(broken).isConverted || size < 2 * STEP) << name << " " << size;
        }
        EXPECT_GT(converted, whole.size() / STEP / 2) << name;
    }
}

TEST(ForeignRecordingTest, leavesOutWhatIsCutOffAndNumbersThatCountIt) {
    EXPECT_THAT(ConvertedMachine("<node class='system'><serial>1234567").all(), IsEmpty());
    EXPECT_THAT(ConvertedMachine(R"({"class":"system","id":"a","children":[{"class":"disk","businfo":"scsi@0:0.0.0",)"
                                 R"("product":"P","size":10002)")
                    .all(),
                Not(HasSubstr("scsi:")));
    const std::string lshw = convertData("workstation.lshw.xml");
    const ConvertedMachine secondBank(lshw.substr(0, lshw.find("DIMM_A2")));
    EXPECT_THAT(secondBank.at("dimm:DIMM_A1"), HasSubstr("Size=8 GB"));
    EXPECT_THAT(secondBank.all(),
                AllOf(Not(HasSubstr("dimm:1")), Not(HasSubstr("Slots=")), Not(HasSubstr("InstalledSize="))));
    const std::string hwloc = convertData("node.hwloc2.xml");
    const ConvertedMachine secondCore(hwloc.substr(0, hwloc.find("\"Core\" os_index=\"5\"")));
    EXPECT_THAT(secondCore.all(), AllOf(HasSubstr("cpu:1/core:4/l1d"), Not(HasSubstr("l3")), Not(HasSubstr("Cores="))));
}

// What a format has no room for is not known; of a type that it tells of, no device means none.
TEST(ForeignRecordingTest, saysWhichTypesARecordingCannotShow) {
    struct Row {
        const char* file;
        std::vector<const char16_t*> hidden;
        std::vector<const char16_t*> known;
    };
    const Row rows[] = {
        {"dmidecode-blade.txt", {u"Storage", u"NvmeDrive", u"FibreChannel", u"USB"}, {u"Processor", u"DIMM", u"Slot"}},
        {"node.hwloc2.xml", {u"Fan", u"PSU", u"Slot", u"Volume"}, {u"Core", u"Network", u"NvmeDrive", u"DIMM"}},
        {"workstation.lshw.xml", {u"Fan", u"Sensor", u"PSU", u"Core"}, {u"Storage", u"Infiniband", u"DIMM", u"USB"}},
        {"blade.lshw.json", {u"DIMM", u"BIOS", u"TPM"}, {u"PSU", u"Display"}},
        {"server.redfish.json", {u"Core", u"Monitor", u"Battery"}, {u"Fan", u"Volume", u"Infiniband"}},
    };
    for (const Row& row : rows) {
        const ConvertedMachine machine(convertData(row.file));
        const auto isHidden = [&machine](const char16_t* type) {
            return std::ranges::any_of(machine.recording.unread(), [type](const UnreadSource& unread) {
                return !unread.types.isAll() && unread.mayHide(CapabilityImp(type));
            });
        };
        EXPECT_TRUE(std::ranges::all_of(row.hidden, isHidden)) << row.file;
        EXPECT_TRUE(std::ranges::none_of(row.known, isHidden)) << row.file;
    }
}

}  // namespace
}  // namespace vrx
