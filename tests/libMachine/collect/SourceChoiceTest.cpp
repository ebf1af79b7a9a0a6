#include "libMachine/collect/SourceChoice.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "libInventory/recording/SysInfoWriter.h"
#include "libMachine/MachineCollector.h"
#include "libMachine/smbios/FirmwareTable.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "tests/libMachine/support/SavedMachine.h"

namespace vrx {
namespace {

using ::testing::HasSubstr;

CollectOptions optionsOf(std::vector<std::string> wanted, std::vector<std::string> excluded) {
    CollectOptions options;
    options.sources = std::move(wanted);
    options.excluded = std::move(excluded);
    return options;
}

TEST(SourceChoiceTest, namesThatMeanNothingAreFound) {
    EXPECT_FALSE(unknownName(optionsOf({"pci", "sensors"}, {"sensors", "battery", "NIC"})));
    const auto source = unknownName(optionsOf({"pci", "Battery"}, {"nix"}));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->name, "Battery");
    EXPECT_FALSE(source->isExcluded);
    EXPECT_EQ(source->known.size(), collectSources().size());
    const auto excluded = unknownName(optionsOf({}, {"Batery"}));
    ASSERT_TRUE(excluded);
    EXPECT_EQ(excluded->name, "Batery");
    EXPECT_TRUE(excluded->isExcluded);
    EXPECT_THAT(excluded->known, ::testing::IsSupersetOf({String(u"sensors"), String(u"Battery")}));
    EXPECT_TRUE(unknownName(optionsOf({}, {"ALL"})));
    EXPECT_TRUE(unknownName(optionsOf({""}, {})));
}

TEST(SourceChoiceTest, aSourceAloneGivesTheSameLocators) {
    SavedMachine machine("server");
    machine.collect(optionsOf({"network", "storage"}, {}));
    EXPECT_EQ(machine.summary(u"pci:0000:01:00.0"), "Ethernet|Dual Port 10G Adapter|beta") << "network amended it";
    EXPECT_EQ(machine.parentOf(u"pci:0000:01:00.0/port:1"), "pci:0000:01:00.0");
    EXPECT_EQ(machine.parentOf(u"pci:0000:00:17.0/ata:3"), "system") << "the controller was not asked for";
    EXPECT_EQ(machine.count(u"StorageController"), 0U);
    EXPECT_EQ(machine.count(u"UsbHub"), 0U);
}

TEST(SourceChoiceTest, whatNobodyAskedForIsUnread) {
    SavedMachine machine("server");
    const auto hides = [&machine](StringView type, StringView key) {
        return std::ranges::any_of(machine.store.unread(), [&](const UnreadSource& unread) {
            return key.empty() ? unread.mayHide(CapabilityImp(type)) : unread.mayHide(CapabilityImp(type), key);
        });
    };
    machine.collect(optionsOf({}, {"network", "Sensor"}));
    EXPECT_TRUE(hides(u"FanSensor", u"") && hides(u"Ethernet", u"Address"));
    EXPECT_FALSE(hides(u"Ethernet", u"") || hides(u"UsbDevice", u"")) << "PCI tells of the adapters";
    machine.collect(optionsOf({"storage"}, {}));
    EXPECT_TRUE(hides(u"Ethernet", u"") && hides(u"Processor", u""));
    EXPECT_FALSE(hides(u"Storage", u""));
}

TEST(SourceChoiceTest, whatIsBelowAnExcludedDeviceMovesUp) {
    SavedMachine machine("server");
    machine.collect(optionsOf({}, {"UsbHub", "pcibridge", "storage"}));
    EXPECT_EQ(machine.parentOf(u"usb:1-2"), "pci:0000:00:14.0");
    EXPECT_EQ(machine.parentOf(u"pci:0000:01:00.0"), "system");
    EXPECT_EQ(machine.count(u"PciBridge") + machine.count(u"UsbHub") + machine.count(u"Storage"), 0U);
    EXPECT_EQ(machine.count(u"SataController"), 1U);
    machine.collect(optionsOf({}, {"Network", "System", "StorageController"}));
    EXPECT_EQ(machine.count(u"Network"), 0U) << "kinds of adapters as well";
    EXPECT_EQ(machine.store.rootDevice()->hwLocator(), u"system") << "the root stays";
}

TEST(SourceChoiceTest, anonymousRecordingsHoldTheSameDevices) {
    SavedMachine machine("laptop");
    machine.collect();
    const std::size_t devices = machine.store.deviceCount();
    CollectOptions options;
    options.isAnonymous = true;
    machine.collect(options);
    EXPECT_EQ(machine.store.deviceCount(), devices);
    const std::string xml = sysInfoXml(machine.store, true);
    for (const char* const secret : {"001d00000077", "00:1d:00:00:00:77", "FL0000A17", "CAM0012345", "lab-laptop",
                                     "5a1c7f2e", "1A2B-3C4D", "0118e1c2d3"}) {
        EXPECT_THAT(xml, ::testing::Not(HasSubstr(secret)));
    }
    EXPECT_THAT(xml, HasSubstr("Example Cells"));
    machine.collect(options);
    EXPECT_EQ(sysInfoXml(machine.store, true), xml);
}

TEST(FirmwareTableTest, findsTheTableInWhatWasSaved) {
    const std::string table = SmbiosBuilder()
                                  .add(1, 0x10, 8, {{4, 1, 1}, {5, 2, 1}}, {"Saved Systems", "Model 9"})
                                  .add(127, 2, 4, {}, {})
                                  .bytes;
    std::string modern = std::string("_SM3_") + std::string(27, '\0') + table;
    modern[12] = static_cast<char>(table.size());
    modern[16] = 32;
    std::string old = std::string("_SM_") + std::string(28, '\0') + table;
    old[22] = static_cast<char>(table.size());
    old[24] = 32;
    for (const std::string& file : {table, modern, old}) {
        EXPECT_EQ(tableInFile(file), table);
    }
    modern[23] = '\x7F';
    EXPECT_EQ(tableInFile(modern), "") << "leads out of the file";
    EXPECT_EQ(tableInFile("_SM_"), "_SM_");

    SavedMachine machine;
    machine.file("/dump.bin", old);
    CollectOptions options;
    options.smbiosPath = machine.folder() + "/dump.bin";
    StateManager store;
    std::vector<CollectNote> notes;
    ASSERT_TRUE(collectMachine(store, options, notes));
    EXPECT_EQ(notes.size(), 0U) << "nobody expects a machine's files beside its table";
    EXPECT_EQ(store.rootDevice()->name(), u"Saved Systems Model 9") << "not this machine";
    EXPECT_EQ(store.getDevices(CapabilityImp(StringView(u"PciDevice")), false).size(), 0U);

    machine.file("/dump.bin", "no table");
    StateManager empty;
    EXPECT_FALSE(collectMachine(empty, options, notes));
    EXPECT_EQ(empty.deviceCount(), 0U);
}

}  // namespace
}  // namespace vrx
