#include "libSystemState/properties/PropertyImp.h"

#include <gtest/gtest.h>

#include <set>

#include "libSystemState/StateManager.h"
#include "libSystemState/properties/ValueMoment.h"
#include "tests/libSystemState/TestDevices.h"

namespace vrx {
namespace {

using test::keysOf;
using test::makeDevice;
using test::makeProperty;

TEST(PropertyImpTest, resolvesItsChildrenThroughTheDevice) {
    const auto device = makeDevice(u"Memory");
    const auto top = makeProperty(u"top", u"1");
    const auto middle = makeProperty(u"middle", u"2");
    for (const auto& property : {top, middle, makeProperty(u"leaf", u"3"), makeProperty(u"other", u"4")}) {
        device->addProperty(property);
    }
    EXPECT_TRUE(top->isLeaf());
    EXPECT_TRUE(top->addChild(*middle));
    EXPECT_TRUE(top->addChild(*makeProperty(u"missing", u"")));
    EXPECT_TRUE(top->addChild(*device->property(u"other")));
    EXPECT_TRUE(middle->addChild(*device->property(u"leaf")));
    EXPECT_FALSE(top->addChild(*middle));
    EXPECT_FALSE(top->addChild(*top));

    EXPECT_FALSE(top->isLeaf());
    EXPECT_FALSE(top->partOfGroup());
    EXPECT_FALSE(top->willBeDiscoveredLater());
    EXPECT_EQ(top->childrenCount(), 3u);
    EXPECT_EQ(keysOf(top->children(*device)), "middle other");
    EXPECT_EQ(top->toStringTree(*device, 1, 0),
              u"    top = 1\n        middle = 2\n            leaf = 3\n        other = 4");

    EXPECT_TRUE(top->removeChild(u"middle"));
    EXPECT_FALSE(top->removeChild(u"middle"));
    EXPECT_EQ(keysOf(top->children(*device)), "other");
    EXPECT_TRUE(top->addChild(*middle));
    EXPECT_EQ(keysOf(top->children(*device)), "other middle");
    top->clearChildrenKeys();
    EXPECT_TRUE(top->isLeaf());
}

TEST(PropertyImpTest, leavesItsFormerValuesWithTheMomentsThatLive) {
    const auto property = makeProperty(u"key", u"1");
    const auto set = [&property](const char16_t* text) {
        property->setValue(ValueImp(text));
    };
    auto first = std::make_unique<ValueMoment>();
    EXPECT_EQ(first->textOf(*property), u"1");
    set(u"2");
    set(u"3");
    const ValueMoment second;
    set(u"4");
    EXPECT_EQ(first->textOf(*property), u"1");
    EXPECT_EQ(second.textOf(*property), u"3");
    {
        const ValueMoment third;
        set(u"5");
        EXPECT_EQ(third.textOf(*property), u"4");
    }
    first.reset();
    EXPECT_EQ(second.textOf(*property), u"3");
}

TEST(PropertyImpTest, printsATreeThatLeadsBackToItself) {
    const auto device = makeDevice(u"Memory");
    const auto first = makeProperty(u"first", u"1");
    const auto second = makeProperty(u"second", u"2");
    device->addProperty(first);
    device->addProperty(second);
    first->addChild(*second);
    second->addChild(*first);
    EXPECT_EQ(first->toStringTree(*device, 0, 0), u"first = 1\n    second = 2");
}

TEST(PropertyImpTest, copiesWithoutSharing) {
    const auto original = makeProperty(u"key", u"value");
    original->addChild(*makeProperty(u"child", u""));
    original->setPartOfGroup(true).setWillBeDiscoveredLater();
    const boost::shared_ptr<IPropertyImp> copy(original->clone());
    original->setPartOfGroup(false).setValue(ValueImp(std::uint32_t{5}));
    original->clearChildrenKeys();
    EXPECT_EQ(copy->toString(0, 0), u"key = value");
    EXPECT_EQ(original->toString(1, 0), u"    key = 5");
    EXPECT_TRUE(copy->partOfGroup());
    EXPECT_TRUE(copy->willBeDiscoveredLater());
    EXPECT_EQ(copy->childrenCount(), 1u);
    EXPECT_EQ(original->type().code(), DataTypeImp::STRING);  // the property specification's, whatever the value is
}

TEST(PropertySpecImpTest, hasAGuidThatTellsSpecificationsApart) {
    const PropertyCategoryImp sysInfo = PropertyCategoryImp::SysInfo();
    const CapabilityImp fan(StringView(u"Fan"));
    const auto guid = [](const char16_t* key, PropertyCategoryImp category, DataTypeImp type,
                         CapabilityImp capability) {
        return PropertySpecImp(key, category, type, std::move(capability)).guid();
    };
    const std::set<String> guids = {guid(u"k", sysInfo, DataTypeImp::STRING, fan),
                                    guid(u"K", sysInfo, DataTypeImp::STRING, fan),
                                    guid(u"k|Fan", sysInfo, DataTypeImp::STRING, CapabilityImp()),
                                    guid(u"k", PropertyCategoryImp::ALL(), DataTypeImp::STRING, fan),
                                    guid(u"k", sysInfo, DataTypeImp::DOUBLE, fan),
                                    guid(u"k", sysInfo, DataTypeImp::STRING, CapabilityImp::ALL())};
    EXPECT_EQ(guids.size(), 6u);
    EXPECT_TRUE(guids.contains(guid(u"k", sysInfo, DataTypeImp::STRING, CapabilityImp(StringView(u"blower")))));
    EXPECT_EQ(guid(u"k", sysInfo, DataTypeImp::STRING, CapabilityImp(StringView(u"what"))),
              guid(u"k", sysInfo, DataTypeImp::STRING, CapabilityImp::INVALID()));
}

TEST(PropertySpecImpTest, isFoundInTheStoreThatItWasRegisteredIn) {
    const auto property = makeProperty(u"here", u"");
    StateManager store;
    EXPECT_EQ(property->spec(store), nullptr);
    store.addPropertySpec(property->spec());
    store.addPropertySpec(makeProperty(u"here", u"")->spec());
    EXPECT_EQ(property->spec(store), property->spec());
    EXPECT_EQ(property->spec(StateManager::instance()), nullptr);

    const auto other = makeProperty(u"there", u"");
    property->updateSpecGuid(other->specGuid());
    EXPECT_EQ(property->key(), u"here");
    StateManager::instance().addPropertySpec(other->spec());
    property->updateSpecGuid(other->specGuid());
    EXPECT_EQ(property->key(), u"there");
    StateManager::instance().clear();
}

}  // namespace
}  // namespace vrx
