#include "libInventory/recording/SysInfoWriter.h"

#include <gmock/gmock.h>
#include <boost/make_shared.hpp>

#include <limits>

#include "libCommon/values/Unit.h"
#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

namespace vrx {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Category = PropertyCategoryImp;

boost::shared_ptr<IDeviceImp> deviceOf(StringView type, const String& name, const String& hwLocator,
                                       const String& osLocator, const CapabilityImp& capabilities = CapabilityImp()) {
    return DeviceImp::createGeneric(CapabilityImp(type), capabilities, 0, name, u"", osLocator, hwLocator);
}

void addProperty(IDeviceImp& device, const String& key, ValueImp value, Category category = Category::SysInfo()) {
    const auto spec = boost::make_shared<PropertySpecImp>(key, category, value.type(), CapabilityImp::ALL());
    device.addProperty(boost::make_shared<PropertyImp>(spec, std::move(value)));
}

ValueImp measured(double number, StringView units) {
    const Unit unit = *Unit::lookupByString(units);
    return ValueImp(DiscreteMeasurement(unit.type(), number, unit.magnitude()));
}

void readBack(const StateManager& from, StateManager& to) {
    ASSERT_TRUE(Inventory::importStateFromXmlString(String::UTF8Decode(sysInfoXml(from, false)), to))
        << sysInfoXml(from, false);
}

/// Everything that a recording is to keep, as text.
std::string contentOf(const StateManager& store) {
    String all;
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        all += concat(u"[", device->type().toString(), u"][", device->capabilities().toString(), u"][", device->name(),
                      u"][", device->hwLocator(), u"][", device->osLocator(), u"]\n");
        for (const auto& property : device->properties(Category::ALL())) {
            all += concat(u"  [", property->key(), u"] ", property->value().toString(true));
            for (const String& entry : property->value().toStringArray(false)) {
                all += concat(u" [", entry, u"]");
            }
            all += u"\n";
        }
    }
    return all.toUtf8();
}

TEST(SysInfoWriterTest, devicesSurviveWithAwkwardTexts) {
    StateManager store;
    const auto root = store.addDevice(deviceOf(u"System", u"", u"", u""), nullptr);
    const auto bus =
        store.addDevice(deviceOf(u"PciBridge", u" a \"b\" <c> &amp; 'd' ", u"\t\n", u"x|y\\z\r\n",
                                 CapabilityImp(StringView(u"PciDevice")) | CapabilityImp(StringView(u"Slot"))),
                        nullptr, root);
    store.addDevice(deviceOf(u"Disk", u" ", u"%u0041", u"\u00E9\U0001F600\u2028"), nullptr, bus);
    store.addDevice(deviceOf(u"Unheard Of", u"name", u"hw", u""), nullptr, root);
    store.addDevice(deviceOf(u"", u"", u"only this", u""), nullptr, root);
    StateManager copy;
    readBack(store, copy);
    EXPECT_EQ(contentOf(copy), contentOf(store));
    EXPECT_EQ(copy.deviceCount(), 5U);
}

TEST(SysInfoWriterTest, whatCouldNotBeReadSurvives) {
    StateManager store;
    store.addDevice(deviceOf(u"System", u"n", u"h", u"o"), nullptr);
    store.addUnread({u"<DMI>", CapabilityImp(u"MemoryModule"), u"needs root", {}});
    store.addUnread({u"<DMI>", CapabilityImp(u"Slot"), u"needs root", {}});
    store.addUnread({u"dump", CapabilityImp::ALL(), u"cut off", {u"Serial Number", u"*"}});
    StateManager copy;
    readBack(store, copy);
    EXPECT_EQ(copy.deviceCount(), 1U);
    ASSERT_EQ(copy.unread().size(), 2U);
    EXPECT_EQ(copy.unread(), store.unread());
    EXPECT_TRUE(copy.unread()[0].mayHide(CapabilityImp(u"Memory")));
    EXPECT_TRUE(copy.unread()[0].mayHide(CapabilityImp(u"ExpansionSlot")));
    EXPECT_FALSE(copy.unread()[1].mayHide(CapabilityImp(u"Fan")));
    EXPECT_TRUE(copy.unread()[1].mayHide(CapabilityImp(u"Fan"), u"Speed"));

    StateManager odd;
    EXPECT_TRUE(Inventory::importStateFromXmlString(
        u"<s><Device/><UnreadSource><DeviceType>Fann</DeviceType></UnreadSource></s>", odd));
    EXPECT_TRUE(odd.unread()[0].mayHide(CapabilityImp(u"Fan"))) << "a type that nobody knows may be any";
}

TEST(SysInfoWriterTest, valuesSurvive) {
    StateManager store;
    const auto device = store.addDevice(deviceOf(u"System", u"n", u"h", u"o"), nullptr);
    addProperty(*device, u"", ValueImp(String(u"no key")));
    addProperty(*device, u" key\t", ValueImp(String()));
    addProperty(*device, u"blanks", ValueImp(String(u"  \t lead, trail\r\n ")));
    addProperty(*device, u"blank", ValueImp(String(u" ")));
    addProperty(*device, u"markup", ValueImp(String(u"<a b=\"c\">&#10;]]>--%u0041")));
    addProperty(*device, u"looks like one", ValueImp(String(u"5 GB")));
    addProperty(*device, u"twice", ValueImp(std::uint32_t{4294967295U}));
    addProperty(*device, u"twice", ValueImp(std::int32_t{-7}));
    addProperty(*device, u"flag", ValueImp(true));
    addProperty(*device, u"double", ValueImp(0.1));
    addProperty(*device, u"array", ValueImp(Array<String>{u"", u"b", u" ", u"", u"a, b", u"\n"}));
    addProperty(*device, u"one", ValueImp(Array<String>{u"alone"}));
    addProperty(*device, u"one empty", ValueImp(Array<String>{u""}));
    addProperty(*device, u"numbers", ValueImp(Array<std::int32_t>{-1, 2}));
    addProperty(*device, u"size", measured(465.76, u"GB"));
    addProperty(*device, u"speed", measured(1e-7, u"GT/s"));
    addProperty(*device, u"heat", measured(-40, u"\u00B0C"));
    addProperty(*device, u"no unit", ValueImp(DiscreteMeasurement(UnitKind::None, 3.5, UnitMagnitude())));
    addProperty(*device, u"endless", measured(std::numeric_limits<double>::infinity(), u"V"));
    addProperty(*device, u"last", ValueImp(String(u"still here")));
    StateManager copy;
    readBack(store, copy);
    EXPECT_EQ(contentOf(copy), contentOf(store));
    EXPECT_EQ(copy.rootDevice()->findProperty(u"size")->value().type(), DataTypeImp::DISCRETEMEASUREMENT);
    EXPECT_EQ(copy.rootDevice()->findProperty(u"looks like one")->value().type(), DataTypeImp::STRING);
    EXPECT_EQ(copy.rootDevice()->findProperty(u"array")->value().arraySize(), 6U);
}

TEST(SysInfoWriterTest, whatTheFormatCannotHold) {
    StateManager store;
    const auto device = store.addDevice(deviceOf(u"System", u"n", u"h", u"o"), nullptr);
    addProperty(*device, u"control", ValueImp(String(u"a\u0001b\uFFFE")));
    addProperty(*device, u"half", ValueImp(String(std::u16string(1, char16_t{0xD800}))));
    addProperty(*device, u"none", ValueImp(Array<String>{}));
    addProperty(*device, u"one", ValueImp(Array<String>{u"alone"}));
    StateManager copy;
    readBack(store, copy);
    const IDeviceImp& read = *copy.rootDevice();
    EXPECT_EQ(read.findProperty(u"control")->value().toString(true), u"a%u0001b%uFFFE");
    EXPECT_EQ(read.findProperty(u"half")->value().toString(true), u"%uD800");
    EXPECT_EQ(read.findProperty(u"none")->value().toStringArray(false), Array<String>{u""});
    EXPECT_FALSE(read.findProperty(u"one")->value().isArray());
}

TEST(SysInfoWriterTest, leavesOutWhatChangesUnlessAsked) {
    StateManager store;
    const auto device = store.addDevice(deviceOf(u"System", u"n", u"h", u"o"), nullptr);
    addProperty(*device, u"Kept", ValueImp(String(u"1")));
    addProperty(*device, u"Heat", ValueImp(String(u"2")), Category::Volatile());
    addProperty(*device, u"Both", ValueImp(String(u"3")), Category::SysInfo() | Category::Internal());
    addProperty(*device, u"All", ValueImp(String(u"4")), Category::Group());
    EXPECT_THAT(sysInfoXml(store, false), HasSubstr("Kept"));
    for (const char* const key : {"Heat", "Both", "All"}) {
        EXPECT_THAT(sysInfoXml(store, false), Not(HasSubstr(key)));
        EXPECT_THAT(sysInfoXml(store, true), HasSubstr(key));
    }
    EXPECT_THAT(sysInfoXml(StateManager(), true), HasSubstr("<SysInfo/>"));
}

TEST(SysInfoWriterTest, treesDeeperThanDocumentsKeepTheirOrder) {
    StateManager store;
    auto device = store.addDevice(deviceOf(u"System", u"0", u"0", u"o"), nullptr);
    for (int depth = 1; depth < 400; ++depth) {
        const String text = String::UTF8Decode(std::to_string(depth));
        const auto parent = device;
        device = store.addDevice(deviceOf(u"UsbHub", text, text, u"o"), nullptr, parent);
        addProperty(*device, u"list", ValueImp(Array<String>{text, u""}));
    }
    StateManager copy;
    readBack(store, copy);
    EXPECT_EQ(contentOf(copy), contentOf(store));
}

}  // namespace
}  // namespace vrx
