/// Which machine is which on the other day, what a change of a device means, and what is none because a recording
/// cannot tell.

#include "libDiagnosis/machines/FleetChanges.h"

#include <gmock/gmock.h>

#include <map>

#include "libSystemState/UnreadSource.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Recordings by name; an empty one cannot be read.
using Day = std::map<std::string, std::string>;

std::string device(const std::string& type, const std::string& place, const std::string& properties) {
    std::string text = "<Device type=\"" + type + "\" name=\"N\" hwLocator=\"" + place + "\" osLocator=\"\">";
    for (std::size_t at = 0; at < properties.size();) {  // "Key=value Key=value"
        const std::size_t end = std::min(properties.find(' ', at), properties.size());
        const std::size_t middle = properties.find('=', at);
        text += "<property key=\"" + properties.substr(at, middle - at) + "\" value=\"" +
                properties.substr(middle + 1, end - middle - 1) + "\"/>";
        at = end + 1;
    }
    return text + "</Device>";
}

std::string box(const std::string& properties, const std::string& devices = "") {
    return device("System", "system", properties) + devices;
}

std::string module(const std::string& place, const std::string& serial) {
    return device("MemoryModule", place, "SerialNumber=" + serial);
}

FleetDay dayOf(const Day& recordings, const std::vector<UnreadSource>& unread = {}) {
    FleetDay day;
    for (const auto& [name, devices] : recordings) {
        day.names.push_back(name);
    }
    day.load = [recordings, unread](const std::string& name, StateManager& store) -> std::string {
        const std::string& devices = recordings.at(name);
        for (const UnreadSource& source : unread) {
            store.addUnread(source);
        }
        return !devices.empty() && Inventory::importStateFromXmlString(
                                       String::UTF8Decode("<SysInfo>" + devices + "</SysInfo>"), store)
                   ? ""
                   : "torn";
    };
    return day;
}

/// "before>after kind" for each machine, by their names.
std::vector<std::string> pairs(const Day& before, const Day& after) {
    std::vector<std::string> lines;
    for (const FleetMachine& machine : fleetChanges(dayOf(before), dayOf(after), false)) {
        constexpr const char* KINDS[] = {"equal", "changed", "came", "went", "unreadable"};
        lines.push_back(machine.before + ">" + machine.after + " " + KINDS[static_cast<int>(machine.kind)]);
    }
    return lines;
}

std::string lineOf(const FleetMachine& machine, const FleetDeviceChange& change) {
    constexpr const char* KINDS[] = {"went", "came", "moved", "replaced", "updated", "changed"};
    std::string line = machine.after + " " + KINDS[static_cast<int>(change.kind)] + " " + change.placeBefore.toUtf8() +
                       ">" + change.placeAfter.toUtf8();
    return change.otherMachine.empty() ? line
                                       : line + ", other " + change.otherMachine + " " + change.otherPlace.toUtf8();
}

std::vector<std::string> changes(const Day& before, const Day& after) {
    std::vector<std::string> lines;
    for (const FleetMachine& machine : fleetChanges(dayOf(before), dayOf(after), false)) {
        for (const FleetDeviceChange& change : machine.changes) {
            lines.push_back(lineOf(machine, change));
        }
    }
    return lines;
}

TEST(FleetChangesTest, machinesAreKnownByUuidThenByModelAndSerialNumberThenByName) {
    EXPECT_THAT(pairs({{"a", box("UUID=u1 SerialNumber=1")}, {"b", box("UUID=u2 SerialNumber=2")}},
                      {{"a", box("UUID=u2 SerialNumber=2")}, {"b", box("UUID=u1 SerialNumber=1")}}),
                ElementsAre("b>a equal", "a>b equal"));
    EXPECT_THAT(pairs({{"a", box("Model=M SerialNumber=1")}, {"b", box("Model=N SerialNumber=1")}},
                      {{"c", box("Model=N SerialNumber=1")}, {"d", box("Model=M SerialNumber=1")}}),
                ElementsAre("b>c equal", "a>d equal"));
    EXPECT_THAT(pairs({{"a", box("Model=M")}, {"b", box("Model=N")}}, {{"a", box("Model=N")}, {"c", box("Model=N")}}),
                ElementsAre("a>a changed", ">c came", "b> went"));
}

TEST(FleetChangesTest, whatSeveralHaveTellsNoMachine) {
    const std::string oem = "Model=M SerialNumber=To_be_filled UUID=03000200-0400-0500-0006-000700080009";
    EXPECT_THAT(pairs({{"a", box(oem)}, {"b", box(oem)}}, {{"a", box(oem)}, {"b", box(oem + " SKU=1")}}),
                ElementsAre("a>a equal", "b>b changed"));
    EXPECT_THAT(pairs({{"a", box(oem)}, {"b", box(oem)}}, {{"c", box(oem)}}),
                ElementsAre(">c came", "a> went", "b> went"));
}

TEST(FleetChangesTest, aRecordingThatCannotBeReadIsNoMachineThatWent) {
    EXPECT_THAT(pairs({{"a", box("SerialNumber=1")}, {"b", ""}}, {{"a", ""}, {"b", box("SerialNumber=2")}}),
                ElementsAre("a>a unreadable", "b>b unreadable"));
    EXPECT_THAT(pairs({{"a", ""}}, {}), ElementsAre("a> unreadable"));
}

TEST(FleetChangesTest, aChangeIsToldByTheValuesThatDiffer) {
    const auto between = [](const std::string& before, const std::string& after) {
        return changes({{"a", box("SerialNumber=1", device("Storage", "bay:1", before))}},
                       {{"a", box("SerialNumber=1", device("Storage", "bay:1", after))}});
    };
    EXPECT_THAT(between("Model=X FirmwareVersion=1", "Model=X FirmwareVersion=2"),
                ElementsAre("a updated bay:1>bay:1"));
    EXPECT_THAT(between("Model=X SerialNumber=1 FirmwareVersion=1", "Model=X SerialNumber=2 FirmwareVersion=2"),
                ElementsAre("a replaced bay:1>bay:1"));
    EXPECT_THAT(between("Model=X", "Model=Y"), ElementsAre("a replaced bay:1>bay:1"));
    EXPECT_THAT(between("Model=X Speed=1 Revision=1", "Model=X Speed=2 Revision=2"),
                ElementsAre("a changed bay:1>bay:1"));
    EXPECT_THAT(between("Model=X", "Model=X SerialNumber=1"), ElementsAre("a changed bay:1>bay:1"));
    EXPECT_THAT(between("Model=X", "Model=X"), IsEmpty());
}

TEST(FleetChangesTest, piecesMoveWithinMachinesAndBetweenThem) {
    const auto boxOf = [](const std::string& serial, const std::string& devices) {
        return box("SerialNumber=" + serial, devices);
    };
    EXPECT_THAT(changes({{"a", boxOf("1", module("A1", "m1"))}}, {{"a", boxOf("1", module("A2", "m1"))}}),
                ElementsAre("a moved A1>A2"));
    EXPECT_THAT(changes({{"a", boxOf("1", module("A1", "m1"))}, {"b", boxOf("2", "")}},
                        {{"a", boxOf("1", "")}, {"b", boxOf("2", module("B1", "m1"))}}),
                ElementsAre("a went A1>, other b B1", "b moved >B1, other a A1"));
    // Into the place of another, which is gone for good.
    EXPECT_THAT(changes({{"a", boxOf("1", module("A1", "m1"))}, {"b", boxOf("2", module("B1", "m2"))}},
                        {{"a", boxOf("1", "")}, {"b", boxOf("2", module("B1", "m1"))}}),
                ElementsAre("a went A1>, other b B1", "b moved B1>B1, other a A1"));
    // At two places at once: nobody knows which one moved.
    EXPECT_THAT(
        changes({{"a", boxOf("1", module("A1", "m1"))}, {"b", boxOf("2", "")}, {"c", boxOf("3", "")}},
                {{"a", boxOf("1", "")}, {"b", boxOf("2", module("B1", "m1"))}, {"c", boxOf("3", module("C1", "m1"))}}),
        ElementsAre("a went A1>", "b came >B1", "c came >C1"));
}

TEST(FleetChangesTest, whatOneRecordingCannotTellIsNoChange) {
    const std::string disk = device("Storage", "bay:1", "SerialNumber=d");
    const Day poor{{"a", box("SerialNumber=1", device("Fan", "fan:1", "Speed=1"))}};
    const Day rich{{"a", box("SerialNumber=1", device("Fan", "fan:1", "Speed=1 Label=x Note=y") + disk)}};
    const std::vector<UnreadSource> gaps{{u"disks", CapabilityImp(u"Storage"), u"not recorded", {}},
                                         {u"labels", CapabilityImp(u"Fan"), u"needs root", {u"Label"}}};
    const auto compare = [](const FleetDay& before, const FleetDay& after) {
        const std::vector<FleetMachine> machines = fleetChanges(before, after, false);
        std::string text = std::to_string(machines[0].untold.devices) + "+" + std::to_string(machines[0].untold.values);
        for (const FleetDeviceChange& change : machines[0].changes) {
            text += "; " + lineOf(machines[0], change);
        }
        return text;
    };
    EXPECT_EQ(compare(dayOf(poor, gaps), dayOf(rich)), "1+1; a changed fan:1>fan:1");
    EXPECT_EQ(compare(dayOf(rich), dayOf(poor, gaps)), "1+1; a changed fan:1>fan:1");
    EXPECT_EQ(compare(dayOf(poor), dayOf(rich, gaps)), "0+0; a changed fan:1>fan:1; a came >bay:1");
    std::vector<UnreadSource> foreign = gaps;
    foreign.push_back({u"properties", CapabilityImp::ALL(), u"of a program", {UnreadSource::UNTOLD_PROPERTY}});
    EXPECT_EQ(compare(dayOf(poor, foreign), dayOf(rich)), "1+2");
    // Another fan of that recording has the key, so its program tells of it.
    const Day some{{"a", box("SerialNumber=1", device("Fan", "fan:1", "Speed=1") + device("Fan", "fan:2", "Note=z"))}};
    EXPECT_EQ(compare(dayOf(some, foreign), dayOf(rich)), "1+1; a changed fan:1>fan:1; a went fan:2>");
}

}  // namespace
}  // namespace vrx
