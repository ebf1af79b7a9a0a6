#include "libSystemState/StateManager.h"

#include <gtest/gtest.h>

#include <future>
#include <random>

#include "libCommon/error/StructuredException.h"
#include "libCommon/text/NumberText.h"
#include "tests/libSystemState/TestDevices.h"

namespace vrx {
namespace {

using test::makeDevice;
using test::namesOf;

Array<boost::shared_ptr<IDeviceImp>> listOf(const DeviceRange& range) {
    Array<boost::shared_ptr<IDeviceImp>> list;
    for (const auto& device : range) {
        list.append(device);
    }
    EXPECT_EQ(list.size(), range.size());
    return list;
}

TEST(StateManagerTest, startsEmpty) {
    const StateManager store;
    EXPECT_EQ(store.rootDevice(), nullptr);
    EXPECT_EQ(store.deviceCount(), 0u);
    EXPECT_EQ(store.deviceByGuid(u"|"), nullptr);
    EXPECT_TRUE(store.getDevices(CapabilityImp::ALL(), false).isEmpty());
    EXPECT_TRUE(store.devicesByName(u"").isEmpty());
    EXPECT_EQ(StateManager::instance().deviceCount(), 0u);
}

TEST(StateManagerTest, placesDevicesInOneTree) {
    StateManager store;
    const auto root = makeDevice(u"System", u"root");
    const auto disk = makeDevice(u"Storage", u"disk");
    const auto volume = makeDevice(u"Volume", u"volume");
    EXPECT_EQ(store.addDevice(root, nullptr), root);
    store.addDevice(disk, nullptr);
    store.addDevice(volume, nullptr, disk);
    store.addDevice(makeDevice(u"Fan", u"fan"), nullptr);
    EXPECT_EQ(store.addDevice(disk, nullptr, volume), disk);
    EXPECT_EQ(store.rootDevice(), root);
    EXPECT_EQ(store.deviceCount(), 4u);
    EXPECT_EQ(namesOf(root->children()), "disk fan");
    EXPECT_EQ(namesOf(disk->children()), "volume");
    EXPECT_TRUE(volume->children().isEmpty());
    EXPECT_THROW(store.addDevice(makeDevice(u"Fan"), nullptr, makeDevice(u"Fan")), StructuredException);
    EXPECT_THROW(store.addDevice({}, nullptr), StructuredException);

    store.clear();
    EXPECT_EQ(store.rootDevice(), nullptr);
    EXPECT_TRUE(store.getDevices(CapabilityImp::ALL(), false).isEmpty());
}

TEST(StateManagerTest, givesTheFirstDeviceOfAGuid) {
    StateManager store;
    const auto first = makeDevice(u"Fan", u"first", u"hw|", u"os");
    store.addDevice(first, nullptr);
    EXPECT_EQ(store.deviceByGuid(DeviceImp::guid(u"hw|", u"os")), first);
    EXPECT_EQ(store.deviceByGuid(DeviceImp::guid(u"hw", u"|os")), nullptr);
    store.addDevice(makeDevice(u"Fan", u"second", u"hw|", u"os"), nullptr);
    store.addDevice(makeDevice(u"Fan", u"third", u"hw", u"|os"), nullptr);
    EXPECT_EQ(store.deviceCount(), 3u);
    EXPECT_EQ(store.deviceByGuid(first->guid()), first);
    EXPECT_EQ(store.deviceByGuid(DeviceImp::guid(u"hw", u"|os"))->name(), u"third");
    EXPECT_EQ(store.deviceByGuid(DeviceImp::guid(u"hw", u"os")), nullptr);
}

/// Asks everything after each addition, so that every index is made in a store of one and grows with it.
TEST(StateManagerTest, answersAsAScanWould) {
    const char16_t* const types[] = {u"Storage", u"SSD", u"HDD", u"Network", u"WiFi", u"Fan", u"nonsense", u"Cooling"};
    const CapabilityImp all = CapabilityImp::ALL();
    std::vector<CapabilityImp> filters = {all, CapabilityImp(), CapabilityImp::INVALID()};
    for (const char16_t* type : types) {
        filters.emplace_back(StringView(type));
    }
    filters.push_back(filters[4] | filters[6]);
    filters.push_back(filters[3] | filters[4]);

    StateManager store;
    Array<boost::shared_ptr<IDeviceImp>> added;
    std::mt19937 random(7);
    for (std::uint32_t round = 0; round < 120; ++round) {
        const CapabilityImp type(StringView(types[random() % std::size(types)]));
        const String locator = toText(std::uint32_t(random() % 9));
        const String name = concat(random() % 2 ? u"Disk " : u"dISK ", locator);
        added.append(makeDevice(round % 10 == 9 ? filters.back() : type, name, locator, name));
        store.addDevice(added.back(), nullptr);

        const auto scan = [&](const auto& condition) {
            Array<boost::shared_ptr<IDeviceImp>> found;
            for (const auto& device : added) {
                if (condition(device)) {
                    found.append(device);
                }
            }
            return found;
        };
        for (const CapabilityImp& filter : filters) {
            const auto expected = scan([&](const auto& device) { return filter.isCapable(device->type()); });
            ASSERT_EQ(store.devicesCapableOf(filter), expected) << filter.toString().toUtf8();
            ASSERT_EQ(store.getDevices(filter, false), expected);
        }
        const auto isThere = [&](const auto& device) {
            return device->hwLocator() == locator;
        };
        ASSERT_EQ(store.devicesByHwLocator(locator), scan(isThere));
        ASSERT_EQ(store.devicesByOsLocator(name),
                  scan([&](const auto& device) { return device->osLocator() == name; }));
        ASSERT_EQ(store.devicesByName(concat(u"DISK ", locator)), scan(isThere));
        ASSERT_TRUE(store.devicesByHwLocator(u"none").isEmpty());
        ASSERT_EQ(listOf(store.devices()), added);
        ASSERT_EQ(listOf(store.withHwLocator(locator)), store.devicesByHwLocator(locator));
        ASSERT_EQ(listOf(store.withOsLocator(name)), store.devicesByOsLocator(name));
        ASSERT_EQ(listOf(store.named(concat(u"DISK ", locator))), store.devicesByName(concat(u"DISK ", locator)));
        ASSERT_TRUE(store.withHwLocator(u"none").isEmpty());
        const auto& again = added[random() % added.size()];
        ASSERT_EQ(store.addDevice(again, nullptr), again);
        ASSERT_EQ(store.deviceCount(), added.size());
    }
}

TEST(StateManagerTest, severalThreadsMayAskForRangesAtOnce) {
    StateManager store;
    constexpr std::uint32_t DEVICES = 1000;
    for (std::uint32_t number = 0; number < DEVICES; ++number) {
        const String text = toText(number / 2);
        store.addDevice(makeDevice(u"Fan", text, text, text), nullptr);
    }
    const auto countFound = [&store] {
        std::size_t found = 0;
        for (std::uint32_t number = 0; number < DEVICES / 2; ++number) {
            const String text = toText(number);
            found += store.withHwLocator(text).size() + store.withOsLocator(text).size() + store.named(text).size();
        }
        return found;
    };
    std::future<std::size_t> other = std::async(std::launch::async, countFound);
    EXPECT_EQ(countFound(), 3 * DEVICES);
    EXPECT_EQ(other.get(), 3 * DEVICES);
}

TEST(StateManagerTest, keepsAnswersValidWhileNothingIsAdded) {
    StateManager store;
    store.addDevice(makeDevice(u"Fan", u"fan", u"1", u"a"), nullptr);
    store.addDevice(makeDevice(u"SSD", u"ssd", u"2", u"b"), nullptr);
    const CapabilityImp fan(StringView(u"Fan"));
    const CapabilityImp storage(StringView(u"Storage"));
    const auto& byType = store.devicesCapableOf(fan);
    const auto& bySet = store.devicesCapableOf(fan | CapabilityImp(StringView(u"Printer")));
    const auto& byLocator = store.devicesByHwLocator(u"1");
    store.devicesCapableOf(storage);
    store.devicesCapableOf(fan | storage);
    store.devicesByHwLocator(u"2");
    store.devicesByOsLocator(u"a");
    store.devicesByName(u"SSD");
    EXPECT_EQ(namesOf(byType), "fan");
    EXPECT_EQ(namesOf(bySet), "fan");
    EXPECT_EQ(namesOf(byLocator), "fan");
}

}  // namespace
}  // namespace vrx
