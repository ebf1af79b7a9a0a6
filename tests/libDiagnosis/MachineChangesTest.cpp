#include "libDiagnosis/MachineChanges.h"

#include <gmock/gmock.h>

#include <boost/make_shared.hpp>

#include "libInventory/Inventory.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"
#include "libSystemState/values/DataTypeImp.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void load(StateManager& store, StringView devices) {
    ASSERT_TRUE(Inventory::importStateFromXmlString(concat(u"<SysInfo>", devices, u"</SysInfo>"), store));
}

std::string sideOf(const std::optional<String>& text) { return text ? text->toUtf8() : "none"; }

/// "KIND before -> after: values" for each change; devices by their locators.
std::vector<std::string> changesBetween(const StateManager& before, const StateManager& after, bool all = false) {
    std::vector<std::string> lines;
    for (const DeviceChange& change : machineChanges(before, after, all)) {
        std::string line = change.before ? change.before->hwLocator().toUtf8() : "none";
        line += change.isMoved() || !change.before || !change.after
                    ? " -> " + (change.after ? change.after->hwLocator().toUtf8() : "none")
                    : "";
        for (const ValueChange& value : change.values) {
            line += ", " + value.key.toUtf8() + " " + sideOf(value.before) + " -> " + sideOf(value.after);
        }
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> changesBetween(StringView before, StringView after) {
    StateManager first;
    StateManager second;
    load(first, before);
    load(second, after);
    return changesBetween(first, second);
}

const StringView MACHINE =
    uR"(<Device type="System" name="S" hwLocator="system" osLocator=""/>
<Device type="Fan" name="F" hwLocator="" osLocator=""><property key="Speed" value="1"/></Device>
<Device type="Fan" name="F" hwLocator="" osLocator=""><property key="Speed" value="2"/></Device>
<Device type="Fan" name="F" hwLocator="" osLocator=""><property key="Speed" value="2"/></Device>)";

TEST(MachineChangesTest, KnowNoOrder) {
    const StringView reversed =
        uR"(<Device type="Fan" name="F" hwLocator="" osLocator=""><property key="Speed" value="2"/></Device>
<Device type="Fan" name="F" hwLocator="" osLocator=""><property key="Speed" value="2"/></Device>
<Device type="Fan" name="F" hwLocator="" osLocator=""><property key="Speed" value="1"/></Device>
<Device type="System" name="S" hwLocator="system" osLocator=""/>)";
    EXPECT_THAT(changesBetween(MACHINE, MACHINE), IsEmpty());
    EXPECT_THAT(changesBetween(MACHINE, reversed), IsEmpty());
    const String changed = String(reversed).replace(u"\"1\"", u"\"3\"");
    EXPECT_THAT(changesBetween(MACHINE, changed), ElementsAre(", Speed 1 -> 3"));
}

TEST(MachineChangesTest, TellMovedDevicesFromMissingAndAddedOnes) {
    const auto disk = [](StringView place, StringView serial, StringView size) {
        return concat(u"<Device type='Storage' name='D' hwLocator='", place,
                      u"' osLocator=''><property key='SerialNumber' value='", serial,
                      u"'/><property key='Size' value='", size, u"'/></Device>");
    };
    const StringView fan = u"<Device type='Fan' name='F' hwLocator='fan:1' osLocator=''/>";
    const StringView movedFan = u"<Device type='Fan' name='F' hwLocator='fan:2' osLocator=''/>";
    const StringView otherType = u"<Device type='Battery' name='F' hwLocator='fan:1' osLocator=''/>";
    EXPECT_THAT(changesBetween(disk(u"1", u"a", u"5") + disk(u"2", u"b", u"5"), disk(u"3", u"a", u"6")),
                ElementsAre("1 -> 3, Size 5 -> 6", "2 -> none"));
    EXPECT_THAT(changesBetween(disk(u"1", u"a", u"5"), disk(u"2", u"b", u"5")), ElementsAre("none -> 2", "1 -> none"));
    EXPECT_THAT(changesBetween(fan, movedFan), ElementsAre("fan:1 -> fan:2"));
    EXPECT_THAT(changesBetween(fan, otherType), ElementsAre("none -> fan:1", "fan:1 -> none"));
}

TEST(MachineChangesTest, PairByPlaceAndSerialNumberBeforeNamesOfTheKernel) {
    const auto device = [](StringView place, StringView name, StringView address) {
        return concat(u"<Device type='Ethernet' name='N' hwLocator='", place, u"' osLocator='", name,
                      u"'><property key='Address' value='", address, u"'/></Device>");
    };
    for (const StringView place : {u"pci:1", u""}) {
        const String before = device(place, u"eth0", u"a") + device(place, u"eth1", u"b");
        const String after = device(place, u"eth0", u"b") + device(place, u"eth1", u"a");
        const std::string at = toUtf8(place);
        EXPECT_THAT(changesBetween(before, after), ElementsAre(at + ",  eth1 -> eth0", at + ",  eth0 -> eth1"));
    }
    StateManager before;
    StateManager after;
    load(before, device(u"1", u"eth0", u"a") + device(u"2", u"eth1", u"b") + device(u"3", u"slot 3", u"c"));
    load(after, device(u"1", u"wlan0", u"a") + device(u"2", u"eth2", u"x") + device(u"3", u"slot 4", u"c"));
    std::vector<bool> renamed;
    for (const DeviceChange& change : machineChanges(before, after, false)) {
        renamed.push_back(change.isOnlyRenamed());
    }
    EXPECT_THAT(renamed, ElementsAre(true, false, false));
}

TEST(MachineChangesTest, PairPropertiesByKeyWhateverTheirOrder) {
    const auto fan = [](StringView properties) {
        return concat(u"<Device type='Fan' name='F' hwLocator='f' osLocator=''>", properties, u"</Device>");
    };
    EXPECT_THAT(
        changesBetween(fan(u"<property key='B' value='1'/><property key='A' value='2'/><property key='A' value='3'/>"),
                       fan(u"<property key='A' value='2'/><property key='C' value='4'/><property key='B' value='1'/>")),
        ElementsAre("f, A 3 -> none, C none -> 4"));
    EXPECT_THAT(changesBetween(u"<Device type='Fan' name='F' hwLocator='f' osLocator='a'/>",
                               u"<Device type='Fan' name='G' hwLocator='f' osLocator='b'><Capability>UsbDevice"
                               u"</Capability></Device>"),
                ElementsAre("f,  F -> G,  a -> b,  Fan -> UsbDevice, Fan"));
}

TEST(MachineChangesTest, LeaveOutWhatChangesByItself) {
    StateManager live;
    StateManager recorded;
    load(recorded,
         u"<Device type='Fan' name='F' hwLocator='f' osLocator=''><property key='Speed' value='900'/>"
         u"<property key='Blades' value='7'/></Device>");
    const auto fan = DeviceImp::createGeneric(CapabilityImp(String(u"Fan")), CapabilityImp(), 0, u"F", u"", u"", u"f");
    const auto add = [&fan](StringView key, std::uint32_t value, PropertyCategoryImp category) {
        const auto spec = boost::make_shared<PropertySpecImp>(String(key), category, DataTypeImp(DataTypeImp::UINT32),
                                                              CapabilityImp());
        fan->addProperty(boost::make_shared<PropertyImp>(spec, ValueImp(value)));
    };
    add(u"Speed", 950, PropertyCategoryImp::Volatile());
    add(u"Blades", 7, PropertyCategoryImp::SysInfo());
    live.addDevice(fan, nullptr);
    EXPECT_THAT(changesBetween(recorded, live), IsEmpty());
    EXPECT_THAT(changesBetween(recorded, live, true), ElementsAre("f, Speed 900 -> 950"));
}

}  // namespace
}  // namespace vrx
