#include <gtest/gtest.h>

#include "libMachine/record/DeviceRecord.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

constexpr const char* DMI = "/sys/firmware/dmi/tables/DMI";
constexpr std::uint64_t IN_USE = 4;
constexpr std::uint64_t AVAILABLE = 3;

void addSlot(SmbiosBuilder& table, const std::string& label, std::uint64_t usage, std::uint64_t function) {
    table.add(9, static_cast<std::uint16_t>(table.bytes.size()), 0x11,
              {{4, 1, 1}, {5, 0xB1, 1}, {6, 0x0B, 1}, {7, usage, 1}, {0x10, function, 1}}, {label});
}

TEST(FirmwareSourceTest, slotsInUseBelongToTheDevicesInThem) {
    SmbiosBuilder table;
    addSlot(table, "SATA", IN_USE, 0x17 << 3);
    addSlot(table, "Riser 1", IN_USE, 0x1C << 3);     // a root port, with the adapter behind it
    addSlot(table, "Riser 2", IN_USE, 0x05 << 3);     // nothing there that the kernel knows of
    addSlot(table, "Riser 3", AVAILABLE, 0x1C << 3);  // free, whatever its port is
    addSlot(table, "Riser 3", AVAILABLE, 0x1D << 3);
    table.add(41, 0x900, 11, {{4, 1, 1}, {5, 0x85, 1}, {0x0A, 0x17 << 3, 1}}, {"On-board SATA"});
    table.add(41, 0x901, 11, {{4, 1, 1}, {5, 0x85, 1}, {9, 0x01, 1}}, {"NIC of the table"});
    SavedMachine machine("server");
    machine.file("/sys/devices/pci0000:00/0000:00:1c.0/0000:01:00.0/label", "NIC of the kernel\n");
    machine.file(DMI, table.bytes);
    machine.collect();
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0", u"Slot"), "-") << "it is on the board";
    EXPECT_EQ(machine.text(u"slot:SATA", u"Usage"), "In Use");
    EXPECT_EQ(machine.text(u"pci:0000:00:17.0", u"Label"), "On-board SATA");
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Slot"), "2") << "the kernel's name comes first";
    EXPECT_EQ(machine.text(u"pci:0000:01:00.0", u"Label"), "NIC of the kernel");
    EXPECT_EQ(machine.text(u"pci:0000:00:1c.0", u"Slot"), "-");
    EXPECT_EQ(machine.text(u"slot:Riser 2", u"Usage"), "In Use");
    EXPECT_EQ(machine.text(u"slot:Riser 3", u"SlotType"), "x8 PCI Express 3");
    EXPECT_EQ(machine.summary(u"slot:Riser 3#2"), "Slot|Expansion slot|/sys/firmware/dmi/entries/9-4");
    EXPECT_EQ(machine.count(u"Slot"), 4U);
}

TEST(FirmwareSourceTest, processorsAreTheKernelsAndEmptySocketsTheFirmwares) {
    SmbiosBuilder table;
    for (const auto& [label, status] : {std::pair("U1", 0x41), std::pair("U2", 0x41), std::pair("U3", 0x00)}) {
        table.add(4, 0x40, 0x30,
                  {{4, 1, 1},
                   {5, 3, 1},
                   {7, 2, 1},
                   {0x10, 2, 1},
                   {0x16, 2000, 2},
                   {0x18, static_cast<unsigned>(status), 1},
                   {0x23, 0x080808, 3}},
                  {label, "Not what the kernel says"});
    }
    SavedMachine machine;
    machine.processors(2, 2, "Example CPU @ 2.40GHz");
    machine.file(DMI, table.bytes);
    machine.collect();
    EXPECT_EQ(machine.text(u"cpu:1", u"Slot"), "U2");
    EXPECT_EQ(machine.text(u"cpu:1", u"Vendor"), "ExampleInc");
    EXPECT_EQ(machine.text(u"cpu:1", u"Clock"), "2400 MHz");
    EXPECT_EQ(machine.text(u"cpu:1", u"Cores"), "2");
    EXPECT_EQ(machine.summary(u"socket:U3"), "Slot|Processor socket|/sys/firmware/dmi/entries/4-2");
    EXPECT_EQ(machine.count(u"Slot"), 1U);
}

TEST(FirmwareSourceTest, suppliesWithoutALabelGoByTheirNumber) {
    SmbiosBuilder table;
    for (const char* const name : {"PWR SPLY,750W,RDNT", "PWR SPLY,750W,RDNT", "psu-3", "PSU", "PS 450"}) {
        table.add(39, 0x60, 0x0E, {{5, 2, 1}, {6, 1, 1}}, {name, "Not Specified"});
    }
    SavedMachine machine;
    machine.file(DMI, table.bytes);
    machine.collect();
    EXPECT_EQ(machine.summary(u"psu:1"), "PowerSupply|PWR SPLY,750W,RDNT|/sys/firmware/dmi/entries/39-1");
    EXPECT_EQ(machine.text(u"psu:1", u"Placeholders"), "Slot");
    EXPECT_EQ(machine.text(u"psu:psu-3", u"Model"), "-");
    EXPECT_EQ(machine.text(u"psu:3", u"Model"), "PSU");
}

TEST(FirmwareSourceTest, placeholdersAreListedUnlessAnotherSourceKnewBetter) {
    DeviceRecord device;
    device.type = u"System";
    device.text(property::SERIAL_NUMBER, "To Be Filled By O.E.M.");
    device.text(property::VENDOR, "Default string");
    device.text(property::VENDOR, "Unknown");
    device.text(property::MODEL, "  \t");
    device.text(property::VERSION, "");
    device.text(property::MICROCODE, "N/A", PropertyCategoryImp::Internal());
    device.text(property::ASSET_TAG, "--");
    device.text(property::ASSET_TAG, "A-17");
    Recording recording;
    recording.add(std::move(device));
    StateManager store;
    recording.storeIn(store);
    const IPropertyImp* const list = store.rootDevice()->findProperty(u"Placeholders");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->value().toStringArray(false).size(), 2U);
    EXPECT_EQ(list->value().toString(false), u"SerialNumber, Vendor");
    EXPECT_EQ(list->category(), PropertyCategoryImp::Internal()) << "for people, not for scripts";
    EXPECT_EQ(store.rootDevice()->findProperty(u"Model"), nullptr);
}

}  // namespace
}  // namespace vrx
