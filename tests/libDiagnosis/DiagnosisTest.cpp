#include "libDiagnosis/Diagnosis.h"

#include <gmock/gmock.h>

#include <random>
#include <set>

#include "libReport/CheckRun.h"
#include "libReport/faults/FaultText.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// The words of the faults of a machine with those devices, checked against a script with that content.
std::vector<std::string> faultsOf(const String& devices, const String& content, const char16_t* switches = u"") {
    StateManager machine;
    EXPECT_TRUE(Inventory::importStateFromXmlString(concat(u"<SysInfo>", devices, u"</SysInfo>"), machine));
    CheckRun run(machine);
    EXPECT_TRUE(run.inventory().loadInventoryScript(
        concat(u"<inventory-check", StringView(switches), u">", content, u"</inventory-check>")));
    const CheckReport report = run.run();
    EXPECT_EQ(report.faults.empty(), report.verdict == Verdict::Passed);
    std::vector<std::string> texts;
    for (const Fault& fault : report.faults) {
        texts.push_back(faultText(fault));
    }
    return texts;
}

String device(StringView type, StringView place, StringView size, StringView serial = u"") {
    return concat(u"<Device type='", type, u"' name='' hwLocator='", place,
                  u"' osLocator=''><property key='Size' value='", size, u"' units='GB'/>",
                  serial.empty() ? u"" : u"<property key='SerialNumber' value='", serial, serial.empty() ? u"" : u"'/>",
                  u"</Device>");
}

String asks(StringView type, StringView place, StringView size, StringView serial = u"") {
    return concat(u"<device type='", type, place.empty() ? u"'" : u"' hwlocator='", place, place.empty() ? u"" : u"'",
                  u"><property key='Size' value='^", size, u" GB$'/>",
                  serial.empty() ? u"" : u"<property key='SerialNumber' value='^", serial,
                  serial.empty() ? u"" : u"$'/>", u"</device>");
}

constexpr StringView DIMM = u"MemoryModule";
constexpr StringView NO_MORE = u"<fail-on-extra type='MemoryModule'/>";

TEST(DiagnosisTest, FindsMovedAndSwappedDevicesByWhatIdentifiesThem) {
    EXPECT_THAT(faultsOf(device(DIMM, u"A2", u"32", u"S1") + device(DIMM, u"A1", u"16", u"S9"),
                         asks(DIMM, u"A1", u"32", u"S1") + NO_MORE),
                ElementsAre("MemoryModule moved A1 → A2 (serial number S1); another stands in its place"));
    EXPECT_THAT(faultsOf(device(DIMM, u"A1", u"32", u"S2") + device(DIMM, u"A2", u"32", u"S1"),
                         asks(DIMM, u"A1", u"32", u"S1") + asks(DIMM, u"A2", u"32", u"S2")),
                ElementsAre("A1 and A2: the MemoryModules are swapped"));
    // A serial number that two devices have says nothing.
    EXPECT_THAT(
        faultsOf(device(DIMM, u"A2", u"32", u"0") + device(DIMM, u"A3", u"32", u"0"), asks(DIMM, u"A1", u"32", u"0")),
        ElementsAre("A1: MemoryModule is missing"));
}

TEST(DiagnosisTest, FindsThemByContentOnlyWhereThatIsSure) {
    EXPECT_THAT(faultsOf(device(DIMM, u"A1", u"16") + device(DIMM, u"A2", u"32"),
                         asks(DIMM, u"A1", u"32") + asks(DIMM, u"A2", u"16")),
                ElementsAre("A1 and A2: the MemoryModules are swapped"));
    EXPECT_THAT(faultsOf(device(DIMM, u"B1", u"32"), asks(DIMM, u"A1", u"32") + NO_MORE),
                ElementsAre("MemoryModule moved A1 → B1"));
    // Nobody says that the one at B1 should not be there.
    EXPECT_THAT(faultsOf(device(DIMM, u"B1", u"32"), asks(DIMM, u"A1", u"32")),
                ElementsAre("A1: MemoryModule is missing"));
    // Two are missing: which of them moved?
    EXPECT_THAT(
        faultsOf(device(DIMM, u"B1", u"32"), asks(DIMM, u"A1", u"32") + asks(DIMM, u"A2", u"32") + NO_MORE),
        ElementsAre("A1: MemoryModule is missing", "A2: MemoryModule is missing", "B1: MemoryModule is too many"));
    // The one at A1 moved to B1 or B2: an element without a place has taken one of the two.
    EXPECT_THAT(faultsOf(device(DIMM, u"B1", u"32") + device(DIMM, u"B2", u"32"),
                         asks(DIMM, u"A1", u"32") + asks(DIMM, u"", u"32") + NO_MORE),
                ElementsAre(StartsWith("A1: MemoryModule is missing"), "B2: MemoryModule is too many"));
}

TEST(DiagnosisTest, BlamesTheDeviceAtThePlaceThoughAnElementWithoutAPlaceTookIt) {
    EXPECT_THAT(faultsOf(device(DIMM, u"A1", u"16") + device(DIMM, u"A2", u"32"),
                         asks(DIMM, u"A1", u"32") + concat(u"<device type='MemoryModule'/>", NO_MORE)),
                ElementsAre("A1: MemoryModule is 16 GB, expected 32 GB"));
}

TEST(DiagnosisTest, TakesTheNearestOfSeveral) {
    const String machine = device(DIMM, u"A1", u"8") + device(DIMM, u"A2", u"31") + device(DIMM, u"A3", u"4");
    EXPECT_THAT(faultsOf(machine, asks(DIMM, u"", u"32")),
                ElementsAre("MemoryModule is missing; nearest is MemoryModule (A2), which is 31 GB, expected 32 GB"));
    EXPECT_THAT(faultsOf(machine, asks(DIMM, u"A3", u"32"), u" check-hwLocators='false'"),
                ElementsAre("MemoryModule is missing; nearest is MemoryModule (A3), which is 4 GB, expected 32 GB"));
    EXPECT_THAT(faultsOf(machine, asks(DIMM, u"", u"32") + asks(DIMM, u"", u"9") + asks(DIMM, u"", u"5")),
                ElementsAre("A2: MemoryModule is 31 GB, expected 32 GB", "A1: MemoryModule is 8 GB, expected 9 GB",
                            "A3: MemoryModule is 4 GB, expected 5 GB"));
}

TEST(DiagnosisTest, SpeaksOfTheAlternativeOfWhichMostIsThere) {
    const String two = concat(u"<or>", asks(u"NvmeDrive", u"slot:2", u"900"), u"<and>", asks(u"Fan", u"f:1", u"1"),
                              asks(u"Fan", u"f:2", u"1"), u"</and></or>");
    EXPECT_THAT(faultsOf(device(u"Fan", u"f:2", u"1"), two),
                ElementsAre("f:1: Fan is missing (or an NvmeDrive at slot:2)"));
    const String one =
        concat(u"<or>", asks(u"NvmeDrive", u"slot:2", u"900"), asks(u"SolidStateDrive", u"slot:2", u"900"), u"</or>");
    EXPECT_THAT(faultsOf(device(u"SolidStateDrive", u"slot:2", u"500"), one),
                ElementsAre("slot:2: SolidStateDrive is 500 GB, expected 900 GB (or an NvmeDrive)"));
}

TEST(DiagnosisTest, TellsWhatWasReplacedByWhat) {
    const String disk =
        u"<device type='HardDiskDrive' name='^D1$' hwlocator='b'><property key='SerialNumber' value='^1$'/></device>";
    const auto replaced = [&disk](const char16_t* there) {
        return faultsOf(there, disk);
    };
    EXPECT_THAT(replaced(u"<Device type='HardDiskDrive' name='D1' hwLocator='b'>"
                         u"<property key='SerialNumber' value='2'/></Device>"),
                ElementsAre("b: HardDiskDrive was replaced by one of the same model, 2 in place of 1"));
    EXPECT_THAT(replaced(u"<Device type='HardDiskDrive' name='D2' hwLocator='b'>"
                         u"<property key='SerialNumber' value='1'/></Device>"),
                ElementsAre("b: HardDiskDrive was replaced by another model, D2 in place of D1"));
    EXPECT_THAT(replaced(u"<Device type='NvmeDrive' name='D1' hwLocator='b'/>"),
                ElementsAre("b: an NvmeDrive in place of a HardDiskDrive"));
}

TEST(DiagnosisTest, PutsTheIdentityOfTheMachineFirstAndSumsLast) {
    EXPECT_THAT(
        faultsOf(u"<Device type='System' name='S' hwLocator='s'><property key='Model' value='Y'/></Device>"
                 u"<Device type='Fan' name='F' hwLocator='f'/>",
                 u"<device type='Memory'/><device type='Fan' hwlocator='g'/><device type='Processor'/>"
                 u"<device type='System'><property key='Model' value='^X$'/></device><fail-on-extra type='Fan'/>"
                 u"<not><device type='Fan' name='^F$'/></not>"),
        ElementsAre("another machine: s: System Model is Y, expected X", "Processor is missing", "g: Fan is missing",
                    "f: Fan \"F\" must not be there", "Memory is missing"));
}

TEST(DiagnosisTest, ReadsWhatADeviceHasAndMustNotHave) {
    EXPECT_THAT(faultsOf(u"<Device type='BIOS' name='B' hwLocator='b'><property key='Mode' value='old'/>"
                         u"<property key='Version' value='1'/></Device>",
                         u"<device type='BIOS'><not><property key='Mode' value='^old$'/></not></device>"),
                ElementsAre("b: BIOS Mode is old, which must not be"));
    EXPECT_THAT(faultsOf(u"<Device type='BIOS' name='B' hwLocator='b'><property key='Version' value='1'/></Device>",
                         u"<device type='BIOS'><or><property key='Version' value='^2$'/>"
                         u"<property key='Version' value='^3$'/></or></device>"),
                ElementsAre("b: BIOS Version is 1, expected 2 or 3"));
}

/// Everything that the engine misses or has too much is in one fault, and no device is in two.
TEST(DiagnosisTest, FoldsWhatStandsBelowAMissingOrExtraDevice) {
    const auto part = [](StringView type, StringView place) {
        return concat(u"<device type='", type, u"' hwlocator='", place, u"'/>");
    };
    const String system = u"<Device type='System' name='S' hwLocator='s'/>";
    const String adapter = part(u"Ethernet", u"pci:0000:3b:00.0") + part(u"Port", u"pci:0000:3b:00.0/port:1") +
                           part(u"Ethernet", u"pci:0000:3b:00.1");
    EXPECT_THAT(faultsOf(system, adapter),
                ElementsAre("pci:0000:3b:00.0: Ethernet is missing with 2 devices below it"));
    const String disks =
        part(u"RaidController", u"r:1") + part(u"Disk", u"r:1/bay:0") + part(u"Volume", u"r:1/bay:0/part:1");
    EXPECT_THAT(faultsOf(system, disks), ElementsAre("r:1: RaidController is missing with 2 devices below it"));
    // The disk moved or is there, so what is wrong with it is another thing.
    EXPECT_THAT(faultsOf(u"<Device type='Disk' name='D' hwLocator='r:1/bay:0'/>", disks),
                ElementsAre("r:1: RaidController is missing", "r:1/bay:0/part:1: Volume is missing"));
    EXPECT_THAT(faultsOf(device(u"Disk", u"b", u"32", u"S1"),
                         part(u"RaidController", u"r:1") + asks(u"Disk", u"r:1/bay:0", u"32", u"S1")),
                testing::UnorderedElementsAre("r:1: RaidController is missing",
                                              "Storage moved r:1/bay:0 → b (serial number S1)"));
    // Nobody knows of the sensor.
    EXPECT_THAT(faultsOf(system + u"<UnreadSource source='bus' reason='needs root'><DeviceType>FanSensor</DeviceType>"
                                  u"</UnreadSource>",
                         part(u"Fan", u"f:1") + part(u"FanSensor", u"f:1/speed")),
                ElementsAre("f:1: Fan is missing", StartsWith("FanSensor (f:1/speed) may be there")));
    // What hangs on an extra hub is decided on by itself, what a processor is made of is not.
    const auto extra = [&system](StringView type, StringView place, StringView below, StringView placeBelow) {
        return faultsOf(system + device(type, place, u"1") + device(below, placeBelow, u"1"),
                        u"<fail-on-extra type='Processor'/><fail-on-extra type='Cache'/><fail-on-extra type='UsbHub'/>"
                        u"<fail-on-extra type='FlashDrive'/>");
    };
    EXPECT_THAT(extra(u"Processor", u"cpu:1", u"Cache", u"cpu:1/l3:0"),
                ElementsAre("cpu:1: Processor is too many with 1 device below it"));
    EXPECT_THAT(extra(u"UsbHub", u"usb:1-2", u"FlashDrive", u"usb:1-2.1"), testing::SizeIs(2));
}

/// Random machines and scripts of modules and fans.
class RandomModules {
public:
    String machine() {
        String devices;
        for (std::size_t i = 1 + m_random() % 5; i-- > 0;) {
            devices += device(oneOf({DIMM, u"Fan"}), oneOf({u"A", u"B", u"C", u"D"}), oneOf({u"8", u"16"}),
                              oneOf({u"", u"S1", u"S2", u"S3"}));
        }
        return concat(u"<SysInfo>", devices, u"</SysInfo>");
    }

    String script() {
        String content = NO_MORE;
        for (std::size_t i = m_random() % 6; i-- > 0;) {
            content += asks(oneOf({DIMM, u"Fan"}), oneOf({u"", u"A", u"B", u"C", u"E"}), oneOf({u"8", u"16"}),
                            oneOf({u"", u"S1", u"S2"})) +
                       u"\n";
        }
        return concat(u"<inventory-check>\n", content, u"</inventory-check>");
    }

private:
    String oneOf(std::initializer_list<StringView> texts) { return *(texts.begin() + m_random() % texts.size()); }

    std::mt19937 m_random{7};
};

TEST(DiagnosisTest, TellsEachThingOnce) {
    RandomModules random;
    for (unsigned trial = 0; trial < 400; ++trial) {
        const String devices = random.machine();
        const String content = random.script();
        StateManager machine;
        ASSERT_TRUE(Inventory::importStateFromXmlString(devices, machine));
        CheckRun run(machine);
        ASSERT_TRUE(run.inventory().loadInventoryScript(content));
        const CheckReport report = run.run();
        std::multiset<std::uint64_t> rows;
        std::size_t devicesTold = 0;
        std::size_t extrasTold = 0;
        for (const Fault& fault : report.faults) {
            extrasTold += fault.kind == FaultKind::Extra ? 1 : 0;
            devicesTold += (fault.device ? 1 : 0) + (fault.other ? 1 : 0);
            if (fault.kind != FaultKind::Extra) {
                rows.insert(fault.place.row);
            }
            if (fault.otherPlace) {
                rows.insert(fault.otherPlace->row);
            }
        }
        std::multiset<std::uint64_t> missing;
        for (const XmlElement* const element : run.inventory().missingElements()) {
            missing.insert(placeIn(*element).row);
        }
        EXPECT_EQ(rows, missing) << devices.toUtf8() << content.toUtf8();
        EXPECT_LE(devicesTold, machine.deviceCount()) << devices.toUtf8() << content.toUtf8();
        EXPECT_LE(extrasTold, report.extra.size());
        EXPECT_GE(devicesTold, report.extra.size()) << devices.toUtf8() << content.toUtf8();
    }
}

TEST(DiagnosisTest, SaysTheSameOfOneOfManyMachines) {
    RandomModules random;
    std::size_t faults = 0;
    for (unsigned trial = 0; trial < 40; ++trial) {
        Inventory loaded;
        ASSERT_TRUE(loaded.loadInventoryScript(random.script()));
        WantedDevices asked;
        for (unsigned i = 0; i < 8; ++i) {
            StateManager machine;
            ASSERT_TRUE(Inventory::importStateFromXmlString(random.machine(), machine));
            const auto check = [&](WantedDevices* known) {
                CheckRun run(machine);
                run.inventory().loadInventoryScript(loaded);
                CheckReport report = run.run({.asked = known});
                report.started = DateTime();
                report.annotatedScript = nullptr;
                faults += report.faults.size();
                return writerNamed(checkWriters(), "json")->write(report, TextFormat());
            };
            ASSERT_EQ(check(&asked), check(nullptr)) << loaded.script().toString().toUtf8();
        }
    }
    EXPECT_GT(faults, 500U);
}

}  // namespace
}  // namespace vrx
