#pragma once

#include <atomic>
#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/TextHash.h"
#include "libSystemState/DeviceRange.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// The indexes of a store of two devices or more. Each is made on the first question that needs it and takes in, on the
/// next question, the devices that were added since. What is handed out is valid until a device is added.
class StateIndexes {
public:
    using DeviceArray = StateManager::DeviceArray;
    using DevicePointer = StateManager::DevicePointer;

    /// `devices` is the store's list, which only grows while the indexes live.
    explicit StateIndexes(const DeviceArray& devices) : m_devices(devices) {}
    StateIndexes(const StateIndexes&) = delete;
    StateIndexes& operator=(const StateIndexes&) = delete;

    /// What stands for "none" in every answer.
    static const DeviceArray& noDevices();

    const DeviceArray& byType(const CapabilityImp& filter);

    /// The groups, which several threads may ask for at once, and the same as arrays.
    DeviceRange withHwLocator(StringView hwLocator);
    DeviceRange withOsLocator(StringView osLocator);
    DeviceRange named(StringView name);
    const DeviceArray& byHwLocator(StringView hwLocator);
    const DeviceArray& byOsLocator(StringView osLocator);
    const DeviceArray& byName(StringView name);

    /// The first device of that guid; an empty pointer when there is none.
    StateManager::DevicePointer byGuid(const String& guid);

    /// Whether that object is in the store.
    bool contains(const IDeviceImp* device);

private:
    using Position = std::uint32_t;  ///< in m_devices

    struct Group {
        Position first;
        Position last;
        std::uint32_t size;
    };

    /// Groups of devices with one key. A key that is a view refers to a text of the group's first device.
    template <typename Key>
    struct Groups {
        boost::unordered_flat_map<Key, Group, TextHash> byKey;
        std::vector<Position> next;            ///< by position: that of the next one in the group
        std::atomic<std::size_t> covered = 0;  ///< how many of the devices are entered

        /// Groups that were asked for as arrays, by their first devices.
        boost::unordered_flat_map<const DevicePointer*, std::unique_ptr<DeviceArray>> lists;
    };

    /// Devices of one type or of those below it.
    struct Capable {
        std::vector<Position> positions;
        DeviceArray devices;  ///< at the first of the positions: those that were asked for
    };

    void coverTypes();
    void enterType(Position position);
    const DeviceArray& bySet(const CapabilityImp& filter);
    template <typename Key, typename KeyOf>
    DeviceRange group(Groups<Key>& groups, const Key& key, const KeyOf& keyOf);
    template <typename Key, typename KeyOf>
    void cover(Groups<Key>& groups, const KeyOf& keyOf);
    template <typename Key>
    void enter(Groups<Key>& groups, Key key, Position position);
    template <typename Key>
    const DeviceArray& listed(const DeviceRange& group, Groups<Key>& groups);

    const DeviceArray& m_devices;

    std::vector<Capable> m_byTypeNode;  ///< by CapabilityImp::node()
    std::size_t m_typesCovered = 0;

    /// Answers for sets of types, by the set's text; all are of the store as it was with m_setsCovered devices.
    boost::unordered_flat_map<String, std::unique_ptr<DeviceArray>, HashFunc<String>> m_bySet;
    std::size_t m_setsCovered = 0;

    std::mutex m_groupsMutex;  ///< held while devices are entered into groups
    Groups<StringView> m_byHwLocator;
    Groups<StringView> m_byOsLocator;
    Groups<String> m_byFoldedName;

    boost::unordered_flat_map<String, std::size_t, HashFunc<String>> m_byGuid;  ///< positions in m_devices
    std::size_t m_guidsCovered = 0;

    boost::unordered_flat_set<const IDeviceImp*> m_members;
    std::size_t m_membersCovered = 0;
};

}  // namespace vrx
