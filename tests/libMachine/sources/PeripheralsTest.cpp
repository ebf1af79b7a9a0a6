#include <gmock/gmock.h>
#include <sys/stat.h>

#include "libInventory/Inventory.h"
#include "libInventory/recording/SysInfoWriter.h"
#include "libMachine/MachineCollector.h"
#include "libMachine/ids/InputKind.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "tests/libMachine/ids/ExampleEdid.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const std::string CONNECTORS = "/sys/devices/pci0000:00/0000:00:02.0/drm/card1/card1-";

std::string joined(const std::vector<CollectNote>& notes) {
    std::string all;
    for (const CollectNote& note : notes) {
        all += noteText(note) + "\n";
    }
    return all;
}

/// The laptop, recorded, with a panel that tells what it is and a monitor whose EDID is damaged.
class PeripheralsTest : public ::testing::Test {
protected:
    PeripheralsTest() : machine("laptop") {
        std::string damaged = exampleEdid();
        damaged[60] = '!';
        machine.file(CONNECTORS + "eDP-1/edid", exampleEdid());
        machine.file(CONNECTORS + "HDMI-A-1/edid", damaged);
        machine.file("/usr/share/hwdata/pnp.ids", "AAA\tAnother\nXQA\tExample Displays\n");
        machine.collect();
    }

    PropertyCategoryImp categoryOf(const String& hwLocator, StringView key) const {
        const IPropertyImp* const property = machine.device(hwLocator).findProperty(key);
        return property == nullptr ? PropertyCategoryImp() : property->category();
    }

    SavedMachine machine;
};

TEST_F(PeripheralsTest, monitorsStandAtTheirConnectors) {
    EXPECT_EQ(machine.summary(u"pci:0000:00:02.0/eDP-1"), "Monitor|Example 27Q|eDP-1");
    EXPECT_EQ(machine.parentOf(u"pci:0000:00:02.0/eDP-1"), "pci:0000:00:02.0");
    EXPECT_EQ(machine.text(u"pci:0000:00:02.0/eDP-1", u"Vendor"), "Example Displays");
    EXPECT_EQ(machine.text(u"pci:0000:00:02.0/eDP-1", u"VendorId"), "XQA");
    EXPECT_EQ(machine.text(u"pci:0000:00:02.0/eDP-1", u"NativeMode"), "2560x1440 @ 60 Hz");
    EXPECT_EQ(machine.text(u"pci:0000:00:02.0/eDP-1", u"Width"), "60 cm");
    EXPECT_EQ(machine.text(u"pci:0000:00:02.0/eDP-1", u"ManufactureDate"), "2023-W14");
    EXPECT_EQ(machine.summary(u"pci:0000:00:02.0/HDMI-A-1"), "Monitor|Monitor|HDMI-A-1") << "there, but unknown";
    EXPECT_THAT(joined(machine.notes), HasSubstr("card1-HDMI-A-1/edid: damaged; left out: what the monitor is"));
    EXPECT_EQ(machine.count(u"Monitor"), 2U);
    EXPECT_EQ(machine.count(u"Display"), 1U) << "the firmware's frame buffer is none";
    EXPECT_EQ(machine.text(u"pci:0000:00:02.0", u"VideoMemory"), "512 MB");
}

TEST_F(PeripheralsTest, soundAndCamerasAreTheirDevices) {
    EXPECT_EQ(machine.device(u"pci:0000:00:1f.3").type().toString(), u"AudioDevice") << "Multimedia by its class";
    EXPECT_EQ(machine.summary(u"pci:0000:00:1f.3/codec:0"), "AudioDevice|Example AC257|/proc/asound/PCH/codec#0");
    EXPECT_EQ(machine.text(u"pci:0000:00:1f.3/codec:0", u"DeviceId"), "0257");
    EXPECT_EQ(machine.text(u"pci:0000:00:1f.3/codec:2", u"VendorId"), "-");
    EXPECT_EQ(machine.count(u"AudioDevice"), 3U) << "no loopback";
    EXPECT_EQ(machine.summary(u"usb:1-6"), "Camera|Example Camera|/sys/bus/usb/devices/1-6");
    EXPECT_TRUE(machine.hasCapability(u"usb:1-6", u"UsbDevice"));
    EXPECT_EQ(machine.text(u"usb:1", u"Ports"), "12");
}

TEST_F(PeripheralsTest, inputDevicesAreOneByHardware) {
    EXPECT_EQ(machine.summary(u"input:isa0060/serio0"),
              "Keyboard|Example Keyboard|/proc/bus/input/devices#isa0060/serio0");
    EXPECT_EQ(machine.summary(u"input:i2c-EXTP0001:00"),
              "TouchPad|EXTP0001:00 Touchpad|/proc/bus/input/devices#i2c-EXTP0001:00");
    EXPECT_TRUE(machine.hasCapability(u"input:i2c-EXTP0001:00", u"PointingDevice"));
    EXPECT_EQ(machine.parentOf(u"input:i2c-EXTP0001:00"), "pci:0000:00:15.0");
    EXPECT_EQ(machine.summary(u"usb:1-3"), "PointingDevice|Example Receiver|/sys/bus/usb/devices/1-3");
    EXPECT_EQ(machine.count(u"Input"), 3U) << "no button, nothing over the air, no software";
}

TEST_F(PeripheralsTest, batteriesTellApartWhatChanges) {
    EXPECT_EQ(machine.summary(u"battery:BAT0"), "Battery|Example Cells EX-50|/sys/class/power_supply/BAT0");
    EXPECT_EQ(machine.text(u"battery:BAT0", u"DesignCapacity"), "50.02 Wh");
    EXPECT_EQ(machine.text(u"battery:BAT0", u"DesignVoltage"), "11.55 V");
    EXPECT_EQ(machine.text(u"battery:BAT0", u"SerialNumber"), "1234");
    EXPECT_EQ(machine.text(u"battery:BAT0", u"Charge"), "46 %");
    for (const StringView key : {u"Charge", u"Status", u"FullCapacity", u"Cycles"}) {
        EXPECT_EQ(categoryOf(u"battery:BAT0", key), PropertyCategoryImp::Volatile()) << toUtf8(key);
    }
    EXPECT_EQ(machine.summary(u"power:AC"), "PowerAdapter|Power supply AC|/sys/class/power_supply/AC");
    EXPECT_EQ(machine.count(u"Power"), 2U) << "no empty bay, no mouse";
}

TEST_F(PeripheralsTest, whatTheFirmwareKnowsOfABatteryIsTheSameBattery) {
    SmbiosBuilder table;
    table.add(22, 7, 0x1A, {{4, 1, 1}, {5, 2, 1}, {8, 3, 1}, {0x0A, 50000, 2}}, {"Rear", "Firmware Cells", "FW-50"});
    table.add(43, 8, 0x1F, {{4, 0x4D5458, 4}, {8, 2, 1}}, {});
    machine.file("/sys/firmware/dmi/tables/DMI", table.bytes);
    machine.collect();
    EXPECT_EQ(machine.summary(u"battery:BAT0"), "Battery|Example Cells EX-50|/sys/class/power_supply/BAT0");
    EXPECT_EQ(machine.text(u"battery:BAT0", u"Slot"), "Rear");
    EXPECT_EQ(machine.text(u"battery:BAT0", u"DesignCapacity"), "50.02 Wh");
    EXPECT_EQ(machine.count(u"Battery"), 1U);
    EXPECT_EQ(machine.text(u"tpm", u"Vendor"), "XTM");
    EXPECT_EQ(machine.count(u"TrustedPlatformModule"), 1U);
}

TEST_F(PeripheralsTest, sensorsGoByTheirChipsPlaceAndLabel) {
    EXPECT_EQ(machine.summary(u"platform:coretemp.0/temp:Package id 0"),
              "TemperatureSensor|coretemp Package id 0|/sys/class/hwmon/coretemp/temp1");
    EXPECT_EQ(machine.text(u"platform:coretemp.0/temp:Package id 0", u"Temperature"), "45 degC");
    EXPECT_EQ(machine.text(u"platform:coretemp.0/temp:Core 0", u"Temperature"), "-1.5 degC");
    EXPECT_EQ(machine.text(u"thermal:acpitz/temp:temp1", u"Temperature"), "27.8 degC");
    EXPECT_EQ(machine.parentOf(u"pci:0000:01:00.0/temp:Composite"), "pci:0000:01:00.0");
    EXPECT_EQ(machine.text(u"pci:0000:00:15.0/i2c:2d/fan:CPU Fan", u"Speed"), "0 RPM") << "a fan may stand still";
    EXPECT_EQ(machine.text(u"pci:0000:00:15.0/i2c:2d/fan:fan2", u"Speed"), "-") << "the chip says that it is faulty";
    EXPECT_EQ(machine.text(u"pci:0000:00:15.0/i2c:2d/in:in0", u"Voltage"), "1.032 V");
    EXPECT_EQ(machine.text(u"pci:0000:00:15.0/i2c:2d/curr:curr1", u"Current"), "2.5 A");
    EXPECT_EQ(machine.text(u"pci:0000:00:15.0/i2c:2d/power:power1", u"Power"), "12.5 W");
    EXPECT_EQ(machine.count(u"Sensor"), 9U) << "not the battery's, which the battery tells";
    EXPECT_EQ(categoryOf(u"thermal:acpitz/temp:temp1", u"Temperature"), PropertyCategoryImp::Volatile());
}

TEST_F(PeripheralsTest, partitionsStandBelowTheirDisk) {
    EXPECT_EQ(machine.summary(u"pci:0000:01:00.0/ns:1/part:1"), "Volume|Partition 1|/dev/nvme0n1p1");
    EXPECT_EQ(machine.parentOf(u"pci:0000:01:00.0/ns:1/part:2"), "pci:0000:01:00.0/ns:1");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0/ns:1/part:1", u"Size"), "512 MB");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0/ns:1/part:1", u"Label"), "EFI system");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0/ns:1/part:1", u"UUID"), "5a1c7f2e-0b1d-4c55-9e77-0123456789ab");
    EXPECT_EQ(categoryOf(u"pci:0000:01:00.0/ns:1/part:1", u"FileSystem"), PropertyCategoryImp::Internal());
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0/ns:1/part:2", u"UUID"), "-");
}

TEST_F(PeripheralsTest, smallDevicesOfTheBoard) {
    EXPECT_EQ(machine.summary(u"tpm"), "TrustedPlatformModule|Trusted platform module|/dev/tpm0");
    EXPECT_EQ(machine.text(u"tpm", u"Version"), "2.0");
    EXPECT_EQ(machine.summary(u"serial:3f8"), "SerialPort|Serial port|/dev/ttyS0");
    EXPECT_EQ(machine.text(u"serial:3f8", u"Model"), "16550A");
    EXPECT_EQ(machine.count(u"Port"), 1U) << "not the empty place";
    EXPECT_EQ(machine.summary(u"rtc:rtc_cmos"), "Clock|Real-time clock|/dev/rtc0");
}

TEST_F(PeripheralsTest, anUpdateOfTheSystemDoesNotChangeARecording) {
    EXPECT_EQ(machine.summary(u"os"), "OperatingSystem|Example Linux|/");
    EXPECT_EQ(machine.text(u"os", u"Version"), "7.2 (Second)");
    EXPECT_EQ(machine.text(u"os", u"HostName"), "lab-laptop-17");
    const std::string before = sysInfoXml(machine.store, false);
    machine.file("/etc/os-release", "NAME='Example Linux'\nVERSION=\"8 (\\\"Third\\\")\"");
    machine.file("/proc/sys/kernel/osrelease", "7.0.0");
    machine.file("/sys/class/power_supply/BAT0/energy_full", "40000000");
    machine.file("/sys/class/power_supply/BAT0/status", "Full");
    machine.file("/sys/devices/platform/coretemp.0/hwmon/hwmon4/temp1_input", "99000");
    machine.collect();
    EXPECT_EQ(sysInfoXml(machine.store, false), before);
    EXPECT_THAT(before, Not(HasSubstr("lab-laptop")));
    EXPECT_EQ(machine.text(u"os", u"Version"), "8 (\"Third\")");
    EXPECT_EQ(machine.text(u"platform:coretemp.0/temp:Package id 0", u"Temperature"), "99 degC");
}

TEST(BoardTest, devicesWithoutABusStandOnTheBoard) {
    SavedMachine machine;
    machine.files(
        "/sys/class/drm/card0 -> ../../devices/platform/soc/fec0.gpu/drm/card0\n"
        "/sys/devices/platform/soc/fec0.gpu/drm/card0/device -> ../../../fec0.gpu\n"
        "/sys/class/drm/card0-HDMI-A-2 -> ../../devices/platform/soc/fec0.gpu/drm/card0/card0-HDMI-A-2\n"
        "/sys/devices/platform/soc/fec0.gpu/drm/card0/card0-HDMI-A-2/status = connected\n"
        "/sys/class/sound/card0 -> ../../devices/platform/soc/107c.hdmi/sound/card0\n"
        "/sys/devices/platform/soc/107c.hdmi/sound/card0/device -> ../../../107c.hdmi\n"
        "/sys/devices/platform/soc/107c.hdmi/sound/card0/id = board\n"
        "/sys/class/video4linux/video0 -> ../../devices/platform/soc/fe80.csi/video4linux/video0\n"
        "/sys/devices/platform/soc/fe80.csi/video4linux/video0/device -> ../../../fe80.csi\n"
        "/sys/devices/platform/soc/fe80.csi/video4linux/video0/name = Board CAMERA 1\n"
        "/sys/class/video4linux/video1 -> ../../devices/platform/soc/fe90.codec/video4linux/video1\n"
        "/sys/devices/platform/soc/fe90.codec/video4linux/video1/device -> ../../../fe90.codec\n"
        "/sys/devices/platform/soc/fe90.codec/video4linux/video1/name = board-decoder\n"
        "/sys/class/tpm/tpm0 -> ../../devices/pnp0/00:05/tpm/tpm0\n"
        "/sys/devices/pnp0/00:05/tpm/tpm0/device -> ../../../00:05\n"
        "/sys/devices/pnp0/00:05/caps = Manufacturer: 0x58514100\\nTCG version: 1.2\\nFirmware version: 13.12\n"
        "/sys/class/tty/ttyAMA0 -> ../../devices/platform/soc/fe20.serial/tty/ttyAMA0\n"
        "/sys/devices/platform/soc/fe20.serial/tty/ttyAMA0/device -> ../../../fe20.serial\n"
        "/sys/devices/platform/soc/fe20.serial/tty/ttyAMA0/type = 32\n");
    machine.collect();
    EXPECT_EQ(machine.summary(u"platform:fec0.gpu"), "Display|Graphics adapter|/sys/devices/platform/soc/fec0.gpu");
    EXPECT_EQ(machine.parentOf(u"platform:fec0.gpu/HDMI-A-2"), "platform:fec0.gpu");
    EXPECT_EQ(machine.summary(u"platform:107c.hdmi"), "AudioDevice|Sound card board|/proc/asound/board");
    EXPECT_EQ(machine.summary(u"platform:fe80.csi"), "Camera|Board CAMERA 1|/dev/video0");
    EXPECT_EQ(machine.count(u"Camera"), 1U) << "no decoder";
    EXPECT_EQ(machine.text(u"tpm", u"Vendor"), "XQA");
    EXPECT_EQ(machine.text(u"tpm", u"FirmwareVersion"), "13.12");
    EXPECT_EQ(machine.summary(u"platform:fe20.serial"), "SerialPort|Serial port|/dev/ttyAMA0");
}

TEST(StorageControllersTest, driversTellOfTheirBoards) {
    SavedMachine machine("server");
    machine.files(
        "/sys/class/scsi_host/host6 -> ../../devices/pci0000:00/0000:00:17.0/ata7/host6/scsi_host/host6\n"
        "/sys/devices/pci0000:00/0000:00:17.0/ata7/host6/scsi_host/host6/version_fw = 16.00\n"
        "/sys/devices/pci0000:00/0000:00:17.0/ata7/host6/scsi_host/host6/board_tracer = TR0815\n"
        "/sys/devices/pci0000:00/0000:00:17.0/ata7/host6/target6:0:0/6:0:0:0/raid_level = RAID 1(1+0)\n"
        "/sys/class/scsi_host/host8 -> ../../devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3:1.0/host8/scsi_host/host8\n"
        "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3:1.0/host8/scsi_host/host8/version_fw = 1\n");
    machine.collect();
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0", u"FirmwareVersion"), "16.00");
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0", u"SerialNumber"), "TR0815");
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0/ata:3", u"RaidLevel"), "RAID 1(1+0)");
    EXPECT_EQ(machine.text(u"usb:1-3", u"FirmwareVersion"), "-") << "no controller";
}

TEST(InputKindTest, tellsDevicesByWhatTheySend) {
    EXPECT_EQ(inputKind({"400 0 0 0 0 0", "0", "260800000000003", "2"}), u"TouchScreen");
    EXPECT_EQ(inputKind({"c03 1f0000 0 0 0 0", "0", "100000f000003", "0"}), u"PointingDevice") << "a tablet";
    EXPECT_EQ(inputKind({"7cdb000000000000 0 0 0 0", "0", "3003f", "0"}), u"Joystick");
    EXPECT_EQ(inputKind({"0", "0", "7", "40"}), u"") << "an accelerometer";
    EXPECT_EQ(inputKind({"3e000b00000000 0 0 0", "0", "0", "0"}), u"") << "keys of a headset";
    EXPECT_EQ(inputKind({"garbage \xFF", "-1", "", "99999999999999999999999"}), u"");
}

/// Everything that a tree can do to a reader: each place that a source looks at is a loop, a pipe, binary or huge.
TEST(HostileTreeTest, isReadToTheEnd) {
    SavedMachine machine("laptop");
    const std::string garbage = std::string("\xFF\xFE\0\x1B[31m", 8) + std::string(200000, '9');
    machine.link("/sys/class/hwmon/hwmon7", "hwmon8");
    machine.link("/sys/class/hwmon/hwmon8", "hwmon7");
    machine.link("/sys/class/drm/card9", "../../../../../../../../etc");
    machine.link("/sys/class/drm/card1-DP-2", ".");
    machine.link("/sys/class/input/input99", "/sys/class/input");
    machine.link("/sys/class/sound/card7", "/proc/self/root");
    machine.link("/sys/class/power_supply/LOOP", "../power_supply");
    machine.link("/sys/devices/platform/coretemp.0/block", "..");
    ASSERT_EQ(mkfifo((machine.folder() + CONNECTORS + "eDP-1/edid").c_str(), 0600), 0);
    for (const char* const path :
         {"/etc/os-release", "/sys/class/power_supply/BAT0/model_name", "/sys/class/power_supply/AC/online",
          "/proc/asound/card0/codec#0", "/sys/class/rtc/rtc0/name", "/run/udev/data/b259:1",
          "/sys/class/tpm/tpm7/device/caps", "/usr/share/hwdata/pnp.ids", "/sys/class/rtc/rtc1/name"}) {
        machine.file(path, garbage);
    }
    machine.file(CONNECTORS + "DP-1/edid", garbage);
    for (const char* const file :
         {"name", "temp1_label", "temp1_input", "temp2_fault", "temp99999999999999999999_input"}) {
        machine.file(std::string("/sys/devices/platform/coretemp.0/hwmon/hwmon4/") + file, garbage);
    }
    machine.collect();
    ASSERT_TRUE(machine.isRecorded);
    EXPECT_EQ(machine.summary(u"os"), "OperatingSystem|Linux|/");
    EXPECT_THAT(joined(machine.notes), HasSubstr("card1-DP-1/edid: damaged"));
    EXPECT_EQ(machine.count(u"Sensor"), 10U);
    const std::string xml = sysInfoXml(machine.store, true);
    EXPECT_THAT(xml, Not(HasSubstr("\x1B")));
    StateManager again;
    EXPECT_TRUE(Inventory::importStateFromXmlString(String::UTF8Decode(xml), again));
    EXPECT_EQ(again.deviceCount(), machine.store.deviceCount());
}

}  // namespace
}  // namespace vrx
