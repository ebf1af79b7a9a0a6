#include "libSystemState/devices/DeviceImp.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

#include "libCommon/text/NumberText.h"
#include "libSystemState/properties/RecordedTexts.h"
#include "tests/libSystemState/TestDevices.h"

namespace vrx {
namespace {

using test::keysOf;
using test::makeDevice;
using test::makeProperty;

TEST(DeviceImpTest, guidsOfDifferentLocatorsDiffer) {
    EXPECT_EQ(DeviceImp::guid(u"a|b\\", u"c"), u"a\\|b\\\\|c");

    std::vector<String> texts = {u""};
    for (std::size_t at = 0; texts[at].size() < 4; ++at) {
        for (const char16_t unit : {u'\\', u'|', u'a'}) {
            texts.push_back(String(texts[at]).append(unit));
        }
    }
    std::set<String> guids;
    for (const String& hwLocator : texts) {
        for (const String& osLocator : texts) {
            guids.insert(DeviceImp::guid(hwLocator, osLocator));
        }
    }
    EXPECT_EQ(texts.size(), 121u);
    EXPECT_EQ(guids.size(), texts.size() * texts.size());
}

TEST(DeviceImpTest, describesItself) {
    const auto device = DeviceImp::createGeneric(CapabilityImp(StringView(u"ssd")), CapabilityImp(StringView(u"pci")),
                                                 0, u"Disk 1", u"text", u"/dev/sda", u"bay|0");
    EXPECT_EQ(device->guid(), u"bay\\|0|/dev/sda");
    EXPECT_EQ(device->capabilities().toString(), u"SolidStateDrive, PciDevice");
    EXPECT_EQ(device->description(), u"text");
    EXPECT_EQ(device->toString(), u"SolidStateDrive \"Disk 1\" bay\\|0|/dev/sda");
    EXPECT_TRUE(makeDevice(u"nonsense")->capabilities().isEmpty());
}

TEST(DeviceImpTest, makesTheRecordedPropertiesWhoeverAsks) {
    using Recorded = RecordedProperties;
    const auto specs = boost::make_shared<Recorded::Specs>();
    for (const auto* const key : {u"a", u"b", u"c"}) {
        specs->push_back(makeProperty(key, u"")->spec());
    }
    const std::vector<Recorded::Entry> entries = {{2, 3}, {0, Recorded::Entry::OTHER_VALUE}, {1, 0}, {2, 2}};
    // Texts of one byte a unit are kept otherwise than those that need two.
    for (const StringView texts : {u"x\u00FFzuv", u"x\u0100zuv"}) {
        const auto newDevice = [&] {
            std::vector<ValueImp> others = {ValueImp(std::uint32_t{7})};
            return DeviceImp::createRecorded(CapabilityImp(StringView(u"Fan")), CapabilityImp(), u"", u"", u"", u"",
                                             std::make_unique<Recorded>(specs, entries, texts, others));
        };
        const auto device = newDevice();
        RecordedTexts recorded(device->recordedProperties());
        EXPECT_EQ(recorded.find(u"c"), texts.substr(0, 3));
        EXPECT_EQ(recorded.find(u"a"), std::nullopt);
        EXPECT_EQ(recorded.find(u"b"), u"");
        EXPECT_EQ(recorded.find(u"c"), texts.substr(0, 3));
        EXPECT_EQ(recorded.find(u"none"), std::nullopt);
        EXPECT_EQ(recorded.find(u"b"), u"");
        EXPECT_EQ(device->findProperty(u"c")->value().toString(false), texts.substr(0, 3));
        EXPECT_EQ(RecordedTexts(device->recordedProperties()).find(u"c"), std::nullopt);
        EXPECT_EQ(keysOf(device->properties(PropertyCategoryImp::ALL())), "c a b c");
        EXPECT_EQ(device->property(u"a")->value().valueUint32(), 7u);
        EXPECT_TRUE(device->property(u"b")->value().toString(false).isEmpty());
        EXPECT_EQ(device->properties(PropertyCategoryImp::ALL())[3]->value().toString(false), u"uv");

        const boost::shared_ptr<IDeviceImp> copy(newDevice()->clone());
        EXPECT_EQ(keysOf(copy->properties(PropertyCategoryImp::ALL())), "c a b c");
        const auto extended = newDevice();
        extended->addProperty(makeProperty(u"d", u"later"));
        EXPECT_EQ(extended->properties(PropertyCategoryImp::ALL()).size(), 5u);
        EXPECT_EQ(extended->properties(PropertyCategoryImp::ALL()).back()->key(), u"d");
    }
}

TEST(DeviceImpTest, findsTheFirstPropertyOfAKeyHoweverManyThereAre) {
    const auto device = makeDevice(u"Processor");
    Array<boost::shared_ptr<IPropertyImp>> firsts;
    for (int number = 0; number < 100; ++number) {
        const String key = concat(u"key", toText(number));
        EXPECT_EQ(device->findProperty(key), nullptr);
        firsts.append(makeProperty(key, u"first"));
        device->addProperty(firsts.back());
        device->addProperty(makeProperty(key, u"second"));
        for (int earlier : {0, number / 2, number}) {
            const auto& expected = firsts[static_cast<std::size_t>(earlier)];
            ASSERT_EQ(device->property(expected->key()), expected);
            ASSERT_EQ(device->findProperty(expected->key()), expected.get());
        }
    }
    EXPECT_EQ(device->property(u"KEY0"), nullptr);
    EXPECT_EQ(device->property(u""), nullptr);
}

TEST(DeviceImpTest, selectsPropertiesByCategoryInOrder) {
    const auto device = makeDevice(u"Processor");
    device->addProperty(makeProperty(u"c", u"", PropertyCategoryImp::Volatile()));
    device->addProperty(makeProperty(u"b", u"", PropertyCategoryImp::Group() | PropertyCategoryImp::SysInfo()));
    device->addProperty(makeProperty(u"a", u"", PropertyCategoryImp::Internal()));
    device->addProperty(makeProperty(u"none", u"", PropertyCategoryImp()));
    EXPECT_EQ(keysOf(device->properties(PropertyCategoryImp::ALL())), "c b a none");
    EXPECT_EQ(keysOf(device->properties(PropertyCategoryImp::SysInfo() | PropertyCategoryImp::Volatile())), "c b");
    EXPECT_EQ(keysOf(device->properties(PropertyCategoryImp())), "");
}

TEST(DeviceImpTest, clonesDeeplyWithoutChildren) {
    const auto device = DeviceImp::createGeneric(CapabilityImp(StringView(u"fan")), CapabilityImp(StringView(u"usb")),
                                                 0, u"name", u"description", u"os", u"hw");
    const auto property = makeProperty(u"speed", u"slow");
    property->addChild(*makeProperty(u"unit", u""));
    device->addProperty(property);
    device->addProperty(makeProperty(u"unit", u"RPM"));
    device->addChild(makeDevice(u"Sensor"));

    const boost::shared_ptr<IDeviceImp> copy(device->clone());
    property->setValue(ValueImp(String(u"fast")));
    property->clearChildrenKeys();
    EXPECT_EQ(copy->toString(), device->toString());
    EXPECT_EQ(copy->capabilities(), device->capabilities());
    EXPECT_EQ(copy->description(), device->description());
    EXPECT_TRUE(copy->children().isEmpty());
    EXPECT_EQ(keysOf(copy->properties(PropertyCategoryImp::ALL())), "speed unit");
    EXPECT_EQ(copy->property(u"speed")->toStringTree(*copy, 0, 0), u"speed = slow\n    unit = RPM");
    EXPECT_EQ(copy->property(u"speed")->spec(), property->spec());
}

}  // namespace
}  // namespace vrx
