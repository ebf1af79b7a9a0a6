#include "libMachine/MachineCollector.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "libInventory/recording/SysInfoWriter.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/linux/SysfsTopology.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

using ::testing::HasSubstr;

constexpr const char* DMI = "/sys/firmware/dmi/tables/DMI";
constexpr std::uint8_t ARRAY = 16;
constexpr std::uint8_t MODULE = 17;

std::string joined(const std::vector<CollectNote>& notes) {
    std::string all;
    for (const CollectNote& note : notes) {
        all += noteText(note) + "\n";
    }
    return all;
}

std::string textOf(const CpuPackage& package) {
    std::string text = fmt::format("package {} from {}:", package.id, package.firstCpu);
    for (const CpuCore& core : package.cores) {
        text += fmt::format(" core {} from {}, {} threads;", core.id, core.firstCpu, core.threads);
    }
    for (const CpuCache& cache : package.caches) {
        text += fmt::format(" L{} kind {} from {} core {}, {} bytes, {} a line, {} ways;", cache.level,
                            static_cast<int>(cache.kind), cache.firstCpu,
                            cache.core ? static_cast<int>(*cache.core) : -1, cache.bytes, cache.lineSize, cache.ways);
    }
    return text;
}

/// A module of 40 bytes with label and bank; the size in MB, 0 for an empty slot.
void addModule(SmbiosBuilder& table, std::uint16_t handle, const std::string& label, const std::string& bank,
               std::uint64_t size, const std::string& serial) {
    table.add(MODULE, handle, 0x28,
              {{0x04, 0x1000, 2},
               {0x08, 72, 2},
               {0x0A, 64, 2},
               {0x0C, size, 2},
               {0x0E, 9, 1},
               {0x10, 1, 1},
               {0x11, 2, 1},
               {0x12, 0x1A, 1},
               {0x15, 3200, 2},
               {0x17, 3, 1},
               {0x18, 4, 1},
               {0x1A, 5, 1},
               {0x1B, 2, 1},
               {0x20, 2933, 2},
               {0x26, 1200, 2}},
              {label, bank, "Example Memory", serial, "EM-32G "});
}

TEST(MachineCollectorTest, recordsASavedServer) {
    SavedMachine machine("server");
    machine.processors(2, 2, "Example(R)  CPU 6300 @ 2.40GHz");
    machine.collect();
    ASSERT_TRUE(machine.isRecorded) << joined(machine.notes);

    EXPECT_EQ(machine.store.rootDevice()->hwLocator(), u"system");
    EXPECT_EQ(machine.summary(u"system"), "System|Example Systems Rack 200|/sys/devices/system");
    EXPECT_EQ(machine.text(u"system", u"Version"), "-") << "a placeholder";
    EXPECT_EQ(machine.text(u"system", u"Virtual"), "-");
    EXPECT_EQ(machine.text(u"chassis", u"ChassisType"), "Rack Mount Chassis");
    EXPECT_EQ(machine.summary(u"board"), "Motherboard|Example Systems R200-MB|/sys/class/dmi/id");
    EXPECT_EQ(machine.text(u"bios", u"FirmwareVersion"), "1.4.2");
    EXPECT_EQ(machine.text(u"bios", u"ReleaseDate"), "2023-12-15");

    EXPECT_EQ(machine.text(u"memory", u"Size"), "3 GB") << "three blocks of 1 GB";
    EXPECT_EQ(machine.text(u"memory", u"UsableSize"), "15.494731903076172 GB");
    EXPECT_THAT(joined(machine.notes), HasSubstr("/sys/firmware/dmi/tables/DMI: absent; left out: memory modules"));
    const auto mayHide = [&](StringView type, StringView key) {
        return std::ranges::any_of(machine.store.unread(), [&](const UnreadSource& unread) {
            return key.empty() ? unread.mayHide(CapabilityImp(type)) : unread.mayHide(CapabilityImp(type), key);
        });
    };
    EXPECT_TRUE(mayHide(u"MemoryModule", u"") && mayHide(u"Processor", u"Socket"));
    EXPECT_FALSE(mayHide(u"Processor", u"") || mayHide(u"Network", u"Address"));
}

TEST(MachineCollectorTest, processorsHaveCoresAndCaches) {
    SavedMachine machine;
    machine.processors(2, 2, "Example(R)  CPU 6300 @ 2.40GHz");
    setenv("HWLOC_SYNTHETIC", "pack:7 core:3 pu:1", 1);  // meant for other programs; a recording is not to be fooled
    machine.collect();
    EXPECT_STREQ(std::getenv("HWLOC_SYNTHETIC"), "pack:7 core:3 pu:1");
    unsetenv("HWLOC_SYNTHETIC");

    EXPECT_EQ(std::getenv("HWLOC_FSROOT"), nullptr);
    EXPECT_EQ(machine.count(u"Processor"), 2U);
    EXPECT_EQ(machine.count(u"ProcessorCore"), 4U);
    EXPECT_EQ(machine.count(u"Cache"), 4U * 3U + 2U);
    EXPECT_EQ(machine.summary(u"cpu:1"), "Processor|Example(R) CPU 6300 @ 2.40GHz|/sys/devices/system/cpu/cpu4");
    EXPECT_EQ(machine.text(u"cpu:1", u"Clock"), "2400 MHz");
    EXPECT_EQ(machine.text(u"cpu:1", u"Cores"), "2");
    EXPECT_EQ(machine.text(u"cpu:1", u"Threads"), "4");
    EXPECT_EQ(machine.summary(u"cpu:1/core:4"), "ProcessorCore|CPU 1 core 4|/sys/devices/system/cpu/cpu6");
    EXPECT_EQ(machine.parentOf(u"cpu:1/core:4"), "cpu:1");
    EXPECT_EQ(machine.text(u"cpu:1/core:4/l1d", u"Size"), "48 KB");
    EXPECT_EQ(machine.text(u"cpu:1/core:4/l1i", u"CacheType"), "Instruction");
    EXPECT_EQ(machine.text(u"cpu:1/core:4/l2", u"Size"), "1.25 MB");
    EXPECT_EQ(machine.parentOf(u"cpu:1/core:4/l2"), "cpu:1/core:4");
    EXPECT_EQ(machine.parentOf(u"cpu:1/l3:0"), "cpu:1");

    // What changes by itself is known, and kept out of a recording.
    const IPropertyImp* const clock = machine.device(u"cpu:0").findProperty(u"CurrentClock");
    ASSERT_NE(clock, nullptr);
    EXPECT_EQ(clock->category(), PropertyCategoryImp::Volatile());
    const std::string xml = sysInfoXml(machine.store, false);
    EXPECT_THAT(xml, HasSubstr("key=\"Clock\""));
    EXPECT_THAT(xml, ::testing::Not(HasSubstr("CurrentClock")));
    EXPECT_THAT(xml, ::testing::Not(HasSubstr("Microcode")));
    EXPECT_THAT(sysInfoXml(machine.store, true), HasSubstr("CurrentClock"));
}

// What the topology library does not show, the kernel does: here two processors of one package, which it drops when a
// bus's locality contradicts them, and all others when processor 0 is offline.
TEST(MachineCollectorTest, processorsThatTheTopologyLibraryLeavesOutAreRead) {
    SavedMachine whole;
    whole.processors(2, 2, "Example CPU");
    whole.collect();
    const RootFolder root(whole.folder());
    const SysfsProcessors processors = readSysfsProcessors(root);
    ASSERT_EQ(processors.online.size(), 2U);
    const CpuTopology topology = readCpuTopology(root);
    for (const CpuPackage& expected : topology.packages) {
        const CpuPackage package = readSysfsPackage(root, expected.id, processors.online.at(expected.id));
        EXPECT_EQ(textOf(package), textOf(expected));
    }

    SavedMachine machine;
    machine.processors(2, 2, "Example CPU");
    std::filesystem::remove_all(machine.folder() + "/sys/devices/system/cpu/cpu0/topology");
    std::filesystem::remove_all(machine.folder() + "/sys/devices/system/cpu/cpu0/cache");
    machine.file("/sys/devices/system/cpu/cpu0/online", "0\n");
    machine.collect();
    EXPECT_EQ(machine.text(u"cpu:0", u"Threads"), "3");
    EXPECT_EQ(machine.text(u"cpu:1", u"Cores"), "2");
    EXPECT_EQ(machine.parentOf(u"cpu:1/core:4/l1d"), "cpu:1/core:4");
    EXPECT_EQ(machine.text(u"cpu:1/l3:0", u"Size"), whole.text(u"cpu:1/l3:0", u"Size"));
    EXPECT_THAT(joined(machine.notes), HasSubstr("processors 0 are offline; left out: cores, threads and caches"));

    // A cache that holds half of the second package: of objects that overlap the library keeps the first.
    SavedMachine overlapping;
    overlapping.processors(2, 2, "Example CPU");
    overlapping.file("/sys/devices/system/cpu/cpu0/cache/index3/shared_cpu_map", "3f\n");
    overlapping.collect();
    EXPECT_EQ(overlapping.count(u"Processor"), 2U);
    EXPECT_EQ(overlapping.text(u"cpu:1", u"Threads"), "4");
    EXPECT_EQ(overlapping.parentOf(u"cpu:1/core:4/l1d"), "cpu:1/core:4");
}

TEST(MachineCollectorTest, memoryModulesComeFromSmbios) {
    SmbiosBuilder table;
    table.add(ARRAY, 0x1000, 0x0F, {{0x05, 3, 1}, {0x06, 6, 1}, {0x07, 0x18000000, 4}, {0x0D, 3, 2}}, {});
    table.add(ARRAY, 0x1001, 0x0F, {{0x05, 5, 1}, {0x0D, 1, 2}}, {});  // flash memory of the firmware
    addModule(table, 0x1100, "A1", "Not Specified", 0x7FFF, " S-0001 ");
    addModule(table, 0x1101, "A2", "Not Specified", 0, "None");
    addModule(table, 0x1102, "A3", "Not Specified", 16384, "00000000");
    table.add(MODULE, 0x1103, 0x28, {{0x04, 0x1001, 2}, {0x0C, 16, 2}, {0x10, 1, 1}}, {"SYSTEM ROM"});

    SavedMachine machine("server");
    machine.file(DMI, table.bytes);
    machine.collect();
    EXPECT_EQ(machine.summary(u"dimm:A1"), "MemoryModule|Example Memory EM-32G|/sys/firmware/dmi/entries/17-0");
    EXPECT_EQ(machine.parentOf(u"dimm:A1"), "memory/array:0");
    EXPECT_EQ(machine.text(u"dimm:A1", u"SerialNumber"), "S-0001");
    EXPECT_EQ(machine.text(u"dimm:A1", u"Size"), "-") << "says that the wider field has it, which is 0";
    EXPECT_EQ(machine.text(u"dimm:A1", u"Bank"), "-");
    EXPECT_EQ(machine.summary(u"dimm:A2"), "Slot|Memory slot|/sys/firmware/dmi/entries/17-1");
    EXPECT_EQ(machine.text(u"dimm:A3", u"SerialNumber"), "-");
    EXPECT_EQ(machine.text(u"dimm:A3", u"Size"), "16 GB");
    EXPECT_EQ(machine.text(u"dimm:A3", u"Speed"), "3200 MT/s");
    EXPECT_EQ(machine.text(u"dimm:A3", u"ConfiguredSpeed"), "2933 MT/s");
    EXPECT_EQ(machine.text(u"dimm:A3", u"Voltage"), "1.2 V");
    EXPECT_EQ(machine.text(u"dimm:A3", u"MemoryType"), "DDR4");
    EXPECT_EQ(machine.text(u"memory/array:0", u"MaximumSize"), "384 GB");
    EXPECT_EQ(machine.text(u"memory/array:0", u"ErrorCorrection"), "Multi-bit ECC");
    EXPECT_EQ(machine.text(u"memory", u"InstalledSize"), "16 GB");
    EXPECT_EQ(machine.store.devicesByHwLocator(u"dimm:SYSTEM ROM").size(), 0U) << "no system memory";
}

TEST(MachineCollectorTest, slotsWithEqualLabelsAreToldApart) {
    SmbiosBuilder table;
    addModule(table, 1, "DIMM 0", "P0 CHANNEL A", 8192, "S1");
    addModule(table, 2, "DIMM 0", "P0 CHANNEL B", 8192, "S2");
    addModule(table, 3, "DIMM 1", "P0 CHANNEL B", 0, "None");
    addModule(table, 4, "DIMM 1", "P0 CHANNEL B", 8192, "S4");
    SavedMachine machine;
    machine.file("/proc/meminfo", "MemTotal: 1024 kB\n");
    machine.file(DMI, table.bytes);
    machine.collect();
    EXPECT_EQ(machine.text(u"dimm:P0 CHANNEL A/DIMM 0", u"SerialNumber"), "S1");
    EXPECT_EQ(machine.text(u"dimm:P0 CHANNEL B/DIMM 0", u"SerialNumber"), "S2");
    EXPECT_EQ(machine.text(u"dimm:P0 CHANNEL B/DIMM 1#2", u"SerialNumber"), "S4");
    EXPECT_EQ(machine.parentOf(u"dimm:P0 CHANNEL B/DIMM 1"), "memory");
}

TEST(MachineCollectorTest, smbiosFillsInWhatTheKernelDoesNotShow) {
    SmbiosBuilder table;
    table.add(0, 1, 0x18, {{4, 1, 1}, {5, 2, 1}, {8, 3, 1}, {0x14, 5, 1}, {0x15, 14, 1}}, {"Maker", "V9", "soon"});
    table.add(1, 2, 0x1B, {{4, 1, 1}, {7, 2, 1}, {8, 0x0011223344556677, 8}, {16, 0x8899AABBCCDDEEFF, 8}},
              {"Not Specified", "SN\x01 7 "});
    table.add(3, 3, 0x15, {{5, 0x83, 1}}, {});  // a desktop with a lock
    table.add(4, 4, 0x23, {{4, 1, 1}, {5, 3, 1}, {0x16, 3100, 2}, {0x18, 0x41, 1}}, {"U3E1"});
    table.bytes += "\x11";
    SavedMachine machine;
    machine.processors(1, 1, "Example CPU");
    machine.file(DMI, table.bytes);
    machine.collect();
    EXPECT_EQ(machine.summary(u"system"), "System|System|/sys/devices/system");
    EXPECT_EQ(machine.text(u"system", u"SerialNumber"), "SN 7");
    EXPECT_EQ(machine.text(u"system", u"UUID"), "44556677-2233-0011-ffee-ddccbbaa9988");
    EXPECT_EQ(machine.text(u"bios", u"Revision"), "5.14");
    EXPECT_EQ(machine.text(u"bios", u"ReleaseDate"), "soon");
    EXPECT_EQ(machine.text(u"chassis", u"ChassisType"), "Desktop");
    EXPECT_EQ(machine.text(u"cpu:0", u"Slot"), "U3E1");
    EXPECT_EQ(machine.text(u"cpu:0", u"Clock"), "3100 MHz");
    EXPECT_EQ(machine.store.devicesByHwLocator(u"board").size(), 0U);
    EXPECT_THAT(joined(machine.notes), HasSubstr("the table is damaged"));
}

TEST(MachineCollectorTest, pciFunctionsAreATreeWithNames) {
    SavedMachine machine("server");
    machine.collect();
    EXPECT_EQ(machine.summary(u"pci:0000:00:1c.0"), "PciBridge|Root Port|/sys/bus/pci/devices/0000:00:1c.0");
    EXPECT_EQ(machine.parentOf(u"pci:0000:01:00.0"), "pci:0000:00:1c.0");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Vendor"), "Example Devices");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Class"), "Ethernet controller");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"ClassCode"), "020000");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Subsystem"), "Adapter for Rack 200");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Slot"), "2");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"MaxLinkSpeed"), "8 GT/s");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Speed"), "10000 Mbit/s");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"LinkSpeed"), "-") << "unknown at the moment";
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"LinkWidth"), "4");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"SlotMaxLinkWidth"), "16");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"SlotMaxLinkSpeed"), "16 GT/s");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"NumaNode"), "-");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Driver"), "exnet");
    EXPECT_EQ(machine.summary(u"pci:10000:01:00.0"),
              "NvmeController|PCI device 1d01:0499|/sys/bus/pci/devices/10000:01:00.0");
    EXPECT_EQ(machine.text(u"pci:10000:01:00.0", u"Vendor"), "Other Devices");
    EXPECT_TRUE(machine.hasCapability(u"pci:10000:01:00.0", u"PciDevice"));
}

// A link that trained narrower has to be seen by a script that was made before; what saving power changes has not.
TEST(MachineCollectorTest, widthsOfLinksAreRecorded) {
    SavedMachine machine("server");
    const std::string nvme = "/sys/bus/pci/devices/10000:01:00.0/";
    machine.file(nvme + "max_link_width", "4\n");
    machine.file(nvme + "current_link_width", "2\n");
    machine.file(nvme + "current_link_speed", "2.5 GT/s PCIe\n");
    machine.collect();
    for (const String& locator : {String(u"pci:0000:01:00.0"), String(u"pci:10000:01:00.0/ns:1")}) {
        const IPropertyImp* const width = machine.device(locator).findProperty(u"LinkWidth");
        ASSERT_NE(width, nullptr) << locator.toUtf8();
        EXPECT_EQ(width->category(), PropertyCategoryImp::SysInfo());
    }
    EXPECT_EQ(machine.text(u"pci:10000:01:00.0/ns:1", u"LinkWidth"), "2");
    EXPECT_EQ(machine.text(u"pci:10000:01:00.0/ns:1", u"MaxLinkWidth"), "4");
    for (const auto& [locator, key] : {std::pair<String, String>(u"pci:10000:01:00.0/ns:1", u"LinkSpeed"),
                                       std::pair<String, String>(u"pci:0000:00:1c.0", u"LinkWidth")}) {
        EXPECT_EQ(machine.device(locator).findProperty(key)->category(), PropertyCategoryImp::Volatile());
    }
}

// The kernel lists it, so it is recorded, and what cannot be read of it is named.
TEST(MachineCollectorTest, functionsThatShowLittleAreRecorded) {
    SavedMachine machine("server");
    machine.file("/sys/bus/pci/devices/0000:05:00.0/class", "0x020000\n");
    machine.collect();
    EXPECT_EQ(machine.summary(u"pci:0000:05:00.0"), "Ethernet|PCI device|/sys/bus/pci/devices/0000:05:00.0");
    EXPECT_EQ(machine.text(u"pci:0000:05:00.0", u"VendorId"), "-");
    EXPECT_THAT(joined(machine.notes), HasSubstr("0000:05:00.0/vendor: absent; left out: what the PCI device"));
}

TEST(MachineCollectorTest, networkAdaptersAreTheirFunctions) {
    SavedMachine machine("server");
    machine.collect();
    EXPECT_EQ(machine.summary(u"pci:0000:01:00.0"), "Ethernet|Dual Port 10G Adapter|beta") << "the first port";
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Address"), "00:1d:00:00:00:01");
    EXPECT_EQ(machine.summary(u"pci:0000:01:00.0/port:1"), "Ethernet|Dual Port 10G Adapter|alpha");
    EXPECT_EQ(machine.parentOf(u"pci:0000:01:00.0/port:1"), "pci:0000:01:00.0");
    machine.file("/sys/class/net/bond0/type", "1\n");
    machine.collect();
    EXPECT_EQ(machine.count(u"Network"), 2U) << "no bond, no bridge, no loopback, no veth";
}

// Tests may run as root, who may read everything.
TEST(MachineCollectorTest, filesThatMayNotBeReadAreNamed) {
    namespace fs = std::filesystem;
    SavedMachine machine("server");
    const auto open = [](const fs::path& path) {
        fs::permissions(path, fs::perms(0555), fs::perm_options::add);
    };
    open(machine.folder());
    for (const auto& entry : fs::recursive_directory_iterator(machine.folder())) {
        if (!entry.is_symlink()) {
            open(entry.path());
        }
    }
    fs::permissions(machine.folder() + "/sys/class/net/alpha/address", fs::perms::none);
    const uid_t user = geteuid();
    static constexpr uid_t NOBODY = 65534;
    ASSERT_TRUE(user != 0 || (seteuid(NOBODY) == 0 && prctl(PR_SET_DUMPABLE, 1) == 0)) << "else no /proc/self either";
    machine.collect();
    ASSERT_EQ(user == 0 ? seteuid(0) : 0, 0);
    EXPECT_THAT(joined(machine.notes),
                HasSubstr("/sys/class/net/alpha/address: permission denied; left out: properties"));
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0/port:1", u"Address"), "-");
    EXPECT_TRUE(std::ranges::any_of(machine.store.unread(), [](const UnreadSource& unread) {
        return unread.mayHide(CapabilityImp(u"Ethernet"), u"Address") && !unread.mayHide(CapabilityImp(u"Ethernet"));
    }));
}

TEST(MachineCollectorTest, disksStandBelowTheirControllers) {
    SavedMachine machine("server");
    machine.collect();
    EXPECT_EQ(machine.summary(u"pci:0000:00:17.0/ata:3"), "HardDiskDrive|Example Disk 500|/dev/sda");
    EXPECT_EQ(machine.parentOf(u"pci:0000:00:17.0/ata:3"), "pci:0000:00:17.0");
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0/ata:3", u"Size"), "465.7617416381836 GB");
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0/ata:3", u"Vendor"), "-") << "ATA is no vendor";
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0/ata:3", u"FirmwareVersion"), "0A1B");
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0/ata:3", u"WWN"), "-") << "made up by the kernel";
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0/ata:3", u"Transport"), "SATA");
    EXPECT_EQ(machine.summary(u"pci:10000:01:00.0/ns:1"), "NvmeDrive|Example Flash 1T|/dev/nvme4n1");
    EXPECT_EQ(machine.text(u"pci:10000:01:00.0/ns:1", u"WWN"), "eui.0025385b71b01234");
    EXPECT_EQ(machine.text(u"pci:10000:01:00.0/ns:1", u"Size"), "1 TB");
    EXPECT_EQ(machine.summary(u"usb:1-3/scsi:0:0:0"), "FlashDrive|Disk|/dev/sdb");
    EXPECT_EQ(machine.device(u"usb:1-3/scsi:0:0:0").findProperty(u"Size")->category(), PropertyCategoryImp::Volatile());
    EXPECT_EQ(machine.count(u"Storage"), 3U) << "no loop, no hidden way";
}

TEST(MachineCollectorTest, usbDevicesAreWhatTheirInterfacesSay) {
    SavedMachine machine("server");
    machine.collect();
    EXPECT_EQ(machine.summary(u"usb:1"), "UsbHub|2.0 root hub|/sys/bus/usb/devices/usb1");
    EXPECT_EQ(machine.text(u"usb:1", u"Vendor"), "Linux Foundation") << "not the kernel's version";
    EXPECT_EQ(machine.text(u"usb:1", u"Revision"), "-");
    EXPECT_EQ(machine.parentOf(u"usb:1"), "pci:0000:00:14.0");
    EXPECT_EQ(machine.summary(u"usb:1-2"), "Keyboard|Keyboard K1|/sys/bus/usb/devices/1-2");
    EXPECT_TRUE(machine.hasCapability(u"usb:1-2", u"PointingDevice"));
    EXPECT_EQ(machine.text(u"usb:1-2", u"Speed"), "1.5 Mbit/s");
    EXPECT_EQ(machine.parentOf(u"usb:1-2"), "usb:1");
    EXPECT_EQ(machine.summary(u"usb:1-3"), "UsbDevice|Stick 32|/sys/bus/usb/devices/1-3");
}

TEST(MachineCollectorTest, aContainerShowsLittleAndNothingIsMadeUp) {
    SavedMachine machine;
    machine.collect();
    EXPECT_FALSE(machine.isRecorded);
    EXPECT_EQ(machine.store.deviceCount(), 0U);
    EXPECT_THAT(joined(machine.notes), HasSubstr("neither /sys nor /proc"));

    machine.file("/proc/version", "Linux\n");
    machine.collect();
    EXPECT_FALSE(machine.isRecorded) << "the root device alone says nothing";

    machine.file("/proc/cpuinfo", "processor\t: 0\nmodel name\t: Example CPU\n\nprocessor\t: 1\n");
    ASSERT_EQ(mkfifo((machine.folder() + "/proc/meminfo").c_str(), 0600), 0);  // must not be waited for
    machine.link("/sys/class/net", "/sys/class/net");                          // leads out of the folder
    machine.collect();
    EXPECT_TRUE(machine.isRecorded);
    EXPECT_EQ(machine.store.deviceCount(), 2U) << sysInfoXml(machine.store, true);
    EXPECT_EQ(machine.text(u"cpu:0", u"Threads"), "2");
    EXPECT_THAT(joined(machine.notes), HasSubstr("left out: processor cores and caches"));
}

TEST(MachineCollectorTest, recordsThisMachineTwiceAlike) {
    std::vector<CollectNote> notes;
    StateManager first;
    StateManager second;
    ASSERT_TRUE(collectMachine(first, {}, notes)) << joined(notes);
    ASSERT_TRUE(collectMachine(second, {}, notes));
    EXPECT_EQ(sysInfoXml(first, false), sysInfoXml(second, false));

    std::set<String> guids;
    for (const auto& device : first.devicesCapableOf(CapabilityImp::ALL())) {
        EXPECT_TRUE(guids.insert(device->guid()).second) << device->guid().toUtf8();
        EXPECT_FALSE(device->name().isEmpty() || device->hwLocator().isEmpty() || device->osLocator().isEmpty());
        for (const auto& property : device->properties(PropertyCategoryImp::ALL())) {
            EXPECT_FALSE(property->value().toString(false).isEmpty()) << property->key().toUtf8();
        }
    }
    EXPECT_GT(first.deviceCount(), 1U);
}

}  // namespace
}  // namespace vrx
