#include "libSystemState/StateIndexes.h"

#include <algorithm>
#include <array>
#include <utility>

#include "libSystemState/capabilities/CapabilityTree.h"
#include "libSystemState/devices/DeviceImp.h"

/// How questions about many devices are answered without a scan.
///
/// - By type: a device is entered under the node of its type and under every node above that, so the answer for a node
///   is one list, complete and in order of adding. A device of an invalid type is entered nowhere.
/// - By a set of types: such filters are rare; the answer is computed by one scan and kept until a device is added.
/// - By locator, name and guid: hash tables.
///
/// What is entered are positions, because most groups have one device, and few types are asked for: an array of devices
/// is made of them when somebody wants one.
///
/// Invariant of each index: it holds exactly the first `covered` devices, in their order. A question first covers the
/// rest, so a store that is filled and then asked is indexed once, and one that grows between questions never again
/// from the start.

namespace vrx {

namespace {

void fetchAhead([[maybe_unused]] const void* memory) noexcept {
#ifdef __GNUC__
    __builtin_prefetch(memory);
#endif
}

}  // namespace

const StateIndexes::DeviceArray& StateIndexes::noDevices() {
    static const DeviceArray none;
    return none;
}

const StateIndexes::DeviceArray& StateIndexes::byType(const CapabilityImp& filter) {
    if (filter.isAll()) {
        return m_devices;
    }
    if (filter.nodes().size() > 1) {
        return bySet(filter);
    }
    coverTypes();
    if (filter.node() >= m_byTypeNode.size()) {
        return noDevices();
    }
    Capable& capable = m_byTypeNode[filter.node()];
    if (capable.devices.size() < capable.positions.size()) {
        capable.devices.reserve(capable.positions.size());
        while (capable.devices.size() < capable.positions.size()) {
            capable.devices.append(m_devices[capable.positions[capable.devices.size()]]);
        }
    }
    return capable.devices;
}

void StateIndexes::coverTypes() {
    if (m_typesCovered == m_devices.size()) {
        return;
    }
    m_byTypeNode.resize(CapabilityTree::instance().size());
    for (; m_typesCovered < m_devices.size(); ++m_typesCovered) {
        enterType(static_cast<Position>(m_typesCovered));
    }
}

void StateIndexes::enterType(Position position) {
    const CapabilityTree& tree = CapabilityTree::instance();
    for (const CapabilityTree::Node type : m_devices[position]->type().nodes()) {
        for (CapabilityTree::Node node = type; node != 0; node = tree.parentOf(node)) {
            std::vector<Position>& capable = m_byTypeNode[node].positions;
            // A type that is a set can reach one node on two ways.
            if (capable.empty() || capable.back() != position) {
                capable.push_back(position);
            }
        }
    }
}

const StateIndexes::DeviceArray& StateIndexes::bySet(const CapabilityImp& filter) {
    if (m_setsCovered != m_devices.size()) {
        m_bySet.clear();
        m_setsCovered = m_devices.size();
    }
    std::unique_ptr<DeviceArray>& answer = m_bySet[filter.toString()];
    if (!answer) {
        answer = std::make_unique<DeviceArray>();
        for (const StateManager::DevicePointer& device : m_devices) {
            if (filter.isCapable(device->type())) {
                answer->append(device);
            }
        }
    }
    return *answer;
}

template <typename Key, typename KeyOf>
DeviceRange StateIndexes::group(Groups<Key>& groups, const Key& key, const KeyOf& keyOf) {
    if (groups.covered.load(std::memory_order_acquire) != m_devices.size()) {
        cover(groups, keyOf);
    }
    const auto at = groups.byKey.find(key);
    return at == groups.byKey.end() ? DeviceRange()
                                    : DeviceRange(m_devices, groups.next.data(), at->second.first, at->second.size);
}

/// Another thread may have done it meanwhile.
template <typename Key, typename KeyOf>
void StateIndexes::cover(Groups<Key>& groups, const KeyOf& keyOf) {
    const std::lock_guard lock(m_groupsMutex);
    std::size_t covered = groups.covered.load(std::memory_order_relaxed);
    if (covered == m_devices.size()) {
        return;
    }
    if (covered == 0) {
        groups.byKey.reserve(m_devices.size());
        groups.next.reserve(m_devices.size());
    }
    groups.lists.clear();
    groups.next.resize(m_devices.size());
    // Devices lie where another thread has made them, so several are fetched at once.
    std::array<Key, 16> keys;
    while (covered < m_devices.size()) {
        const std::size_t count = std::min(keys.size(), m_devices.size() - covered);
        for (std::size_t i = 0; i < count; ++i) {
            keys[i] = keyOf(*m_devices[covered + i]);
            fetchAhead(keys[i].data());
        }
        for (std::size_t i = 0; i < count; ++i) {
            enter(groups, std::move(keys[i]), static_cast<Position>(covered + i));
        }
        covered += count;
    }
    groups.covered.store(covered, std::memory_order_release);
}

template <typename Key>
void StateIndexes::enter(Groups<Key>& groups, Key key, Position position) {
    const auto [at, isNew] = groups.byKey.try_emplace(std::move(key), Group{position, position, 1});
    if (!isNew) {
        Group& group = at->second;
        groups.next[group.last] = position;
        group.last = position;
        ++group.size;
    }
}

template <typename Key>
const StateIndexes::DeviceArray& StateIndexes::listed(const DeviceRange& group, Groups<Key>& groups) {
    if (group.isEmpty()) {
        return noDevices();
    }
    std::unique_ptr<DeviceArray>& list = groups.lists[&*group.begin()];
    if (!list) {
        list = std::make_unique<DeviceArray>(group.size());
        for (const DevicePointer& device : group) {
            list->append(device);
        }
    }
    return *list;
}

DeviceRange StateIndexes::withHwLocator(StringView hwLocator) {
    return group(m_byHwLocator, hwLocator, [](const IDeviceImp& device) { return device.hwLocator().view(); });
}

DeviceRange StateIndexes::withOsLocator(StringView osLocator) {
    return group(m_byOsLocator, osLocator, [](const IDeviceImp& device) { return device.osLocator().view(); });
}

DeviceRange StateIndexes::named(StringView name) {
    return group(m_byFoldedName, foldCase(name), [](const IDeviceImp& device) { return foldCase(device.name()); });
}

const StateIndexes::DeviceArray& StateIndexes::byHwLocator(StringView hwLocator) {
    return listed(withHwLocator(hwLocator), m_byHwLocator);
}

const StateIndexes::DeviceArray& StateIndexes::byOsLocator(StringView osLocator) {
    return listed(withOsLocator(osLocator), m_byOsLocator);
}

const StateIndexes::DeviceArray& StateIndexes::byName(StringView name) { return listed(named(name), m_byFoldedName); }

StateManager::DevicePointer StateIndexes::byGuid(const String& guid) {
    for (; m_guidsCovered < m_devices.size(); ++m_guidsCovered) {
        m_byGuid.try_emplace(m_devices[m_guidsCovered]->guid(), m_guidsCovered);
    }
    const auto at = m_byGuid.find(guid);
    return at == m_byGuid.end() ? StateManager::DevicePointer() : m_devices[at->second];
}

bool StateIndexes::contains(const IDeviceImp* device) {
    for (; m_membersCovered < m_devices.size(); ++m_membersCovered) {
        m_members.insert(m_devices[m_membersCovered].get());
    }
    return m_members.contains(device);
}

}  // namespace vrx
