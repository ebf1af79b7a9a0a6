#include "libMachine/linux/DiskPlace.h"

#include <gtest/gtest.h>

#include "libMachine/ids/VpdPages.h"
#include "libMachine/linux/DevicePlace.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/Recording.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

constexpr const char* CONTROLLER = "/sys/devices/pci0000:00/0000:00:05.0";

TEST(DiskPlaceTest, locatorsDoNotDependOnTheOrderOfDiscovery) {
    struct Case {
        std::string way;  ///< from the controller to the disk
        std::string locator;
        std::string transport;
    };
    const Case cases[] = {
        {"/ata9/host8/target8:0:0/8:0:0:0/block/sda", "pci:5/ata:1", "ATA"},
        {"/ata8/host7/target7:2:0/7:2:0:0/block/sda", "pci:5/ata:8/2:0", "ATA"},  // a port that tells no number
        {"/host0/port-0:0/end_device-0:0/target0:0:4/0:0:4:0/block/sda", "pci:5/bay:11", "SAS"},
        {"/host0/port-0:1/end_device-0:1/target0:0:5/0:0:5:0/block/sda", "pci:5/phy:3", "SAS"},
        {"/host0/port-0:2/end_device-0:2/target0:0:6/0:0:6:0/block/sda", "pci:5/scsi:0:6:0", "SAS"},
        {"/host3/target3:2:1/3:2:1:0/block/sda", "pci:5/scsi:2:1:0", "SCSI"},
        {"/virtio2/host3/target3:0:1/3:0:1:0/block/sda", "pci:5/scsi:0:1:0", "VirtIO"},
        {"/virtio1/block/vda", "pci:5/disk", "VirtIO"},
        {"/mmc_host/mmc0/mmc0:0001/block/mmcblk0", "pci:5/card:0001", "MMC"},
        {"/usb2/2-1/2-1:1.0/host9/target9:0:0/9:0:0:1/block/sdc", "pci:5/scsi:0:0:1", "USB"},
        {"/nvme/nvme3/nvme3n2", "pci:5/ns:2", "NVMe"},
    };
    Recording recording;
    recording.add({});
    DeviceRecord controller;
    controller.hwLocator = "pci:5";
    controller.sysPath = CONTROLLER;
    recording.add(controller);
    for (const Case& disk : cases) {
        SavedMachine machine;
        const std::string name(lastName(disk.way));
        machine.file(CONTROLLER + disk.way + "/nsid", "2\n");
        machine.link("/sys/block/" + name, std::string("../devices/pci0000:00/0000:00:05.0") + disk.way);
        machine.file(std::string(CONTROLLER) + "/ata9/ata_port/ata9/port_no", "1\n");
        machine.file(std::string(CONTROLLER) + "/ata9/link9/ata_link/link9/sata_spd", "<unknown>\n");
        const std::string host = std::string(CONTROLLER) + "/host0/port-0:";
        machine.file(host + "0/end_device-0:0/sas_device/end_device-0:0/bay_identifier", "11\n");
        machine.file(host + "1/end_device-0:1/sas_device/end_device-0:1/phy_identifier", "3\n");
        const DiskPlace place = placeOfDisk(RootFolder(machine.folder()), recording, name);
        EXPECT_EQ(place.hwLocator, disk.locator) << disk.way;
        EXPECT_EQ(place.transport, disk.transport) << disk.way;
        EXPECT_EQ(place.sysPath, CONTROLLER + disk.way);
    }
    EXPECT_EQ(locatorAbove(recording, "/sys/devices/platform/fe33.mmc/mmc_host/mmc0"), "platform:fe33.mmc");
    EXPECT_EQ(locatorAbove(recording, "/sys/block/sda"), "unplaced");
}

TEST(DevicePlaceTest, keepsAddressesAndDropsWhatTheKernelCounts) {
    Recording recording;
    recording.add({});
    DeviceRecord controller;
    controller.hwLocator = "pci:5";
    controller.sysPath = CONTROLLER;
    recording.add(controller);
    const std::string below = CONTROLLER;
    EXPECT_EQ(placeOfFolder(recording, below), "pci:5");
    EXPECT_EQ(placeOfFolder(recording, below + "/i2c-3/3-001b"), "pci:5/i2c:1b");
    EXPECT_EQ(placeOfFolder(recording, below + "/i2c-3/3-0070/i2c-9/9-0052"), "pci:5/i2c:70/i2c:52");
    EXPECT_EQ(placeOfFolder(recording, below + "/spi_master/spi0/spi0.1/hwmon"), "pci:5/spi:1");
    EXPECT_EQ(placeOfFolder(recording, below + "/nvme/nvme4/hwmon2"), "pci:5");
    EXPECT_EQ(placeOfFolder(recording, below + "/usb1/1-0/1-12345"), "pci:5") << "no address";
    EXPECT_EQ(placeOfFolder(recording, "/sys/devices/platform/soc/fe20.i2c/i2c-1/1-0068"), "platform:fe20.i2c/i2c:68");
    EXPECT_EQ(placeOfFolder(recording, "/sys/devices/LNXSYSTM:00/LNXSYBUS:00/ACPI000D:00"), "platform:ACPI000D:00");
    EXPECT_EQ(placeOfFolder(recording, "/sys/devices/platform"), "platform:platform");
    EXPECT_EQ(placeOfFolder(recording, "/somewhere/else"), "unplaced");
}

std::string page(unsigned number, const std::string& content) {
    return std::string({'\0', static_cast<char>(number), static_cast<char>(content.size() >> 8),
                        static_cast<char>(content.size())}) +
           content;
}

TEST(VpdPagesTest, readWhatIsThere) {
    std::string identify(512, ' ');
    identify.replace(20, 6, "S1NA01");  // words hold their letters swapped
    identify.replace(46, 4, ".1A0");
    identify.replace(54, 14, "xEmalp eiDksX ");
    const std::string whole = page(0x89, std::string(56, '\0') + identify);
    EXPECT_EQ(vpdAtaIdentity(whole).serialNumber, "1SAN10" + std::string(14, ' '));
    EXPECT_EQ(vpdAtaIdentity(whole).firmwareVersion, "1.0A    ");
    EXPECT_EQ(vpdAtaIdentity(whole).model, "Example Disk X" + std::string(26, ' '));
    EXPECT_EQ(vpdSerialNumber(page(0x80, " SN7 ") + "behind"), " SN7 ");
    EXPECT_EQ(vpdRotationRate(page(0xB1, std::string("\x1C\x20", 2) + "....")), 7200U);
    EXPECT_EQ(vpdRotationRate(page(0xB1, std::string("\x00\x01", 2))), 0U) << "does not rotate";
}

TEST(VpdPagesTest, shortOrWrongPagesGiveNothing) {
    const std::string whole = page(0x89, std::string(568, 'x'));
    for (std::size_t size = 0; size < whole.size(); size += size < 8 ? 1 : 56) {
        EXPECT_EQ(vpdAtaIdentity(whole.substr(0, size)).model, "") << size;
    }
    EXPECT_EQ(vpdSerialNumber(whole), "");
    EXPECT_EQ(vpdSerialNumber(std::string("\0\x80\xFF\xFF"
                                          "A",
                                          5)),
              "A")
        << "shorter than it says";
    EXPECT_EQ(vpdRotationRate(std::string("\0\xB1\0\x01\x1C", 5)), 0U);
}

}  // namespace
}  // namespace vrx
