#include "libSystemState/StateIndexes.h"

#include "libSystemState/capabilities/CapabilityTree.h"
#include "libSystemState/devices/DeviceImp.h"

/// How questions about many devices are answered without a scan.
///
/// - By type: a device is entered under the node of its type and under every node above that, so the answer for a node
///   is one array, complete and in order of adding. A device of an invalid type is entered nowhere.
/// - By a set of types: such filters are rare; the answer is computed by one scan and kept until a device is added.
/// - By locator, name and guid: hash tables.
///
/// Invariant of each index: it holds exactly the first `covered` devices, in their order. A question first covers the
/// rest, so a store that is filled and then asked is indexed once, and one that grows between questions never again
/// from the start.

namespace vrx {

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
    return filter.node() < m_byTypeNode.size() ? m_byTypeNode[filter.node()] : noDevices();
}

void StateIndexes::coverTypes() {
    if (m_typesCovered == m_devices.size()) {
        return;
    }
    m_byTypeNode.resize(CapabilityTree::instance().size());
    for (; m_typesCovered < m_devices.size(); ++m_typesCovered) {
        enterType(m_devices[m_typesCovered]);
    }
}

void StateIndexes::enterType(const StateManager::DevicePointer& device) {
    const CapabilityTree& tree = CapabilityTree::instance();
    for (const CapabilityTree::Node type : device->type().nodes()) {
        for (CapabilityTree::Node node = type; node != 0; node = tree.parentOf(node)) {
            DeviceArray& capable = m_byTypeNode[node];
            // A type that is a set can reach one node on two ways.
            if (capable.isEmpty() || capable.back() != device) {
                capable.append(device);
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
const StateIndexes::DeviceArray& StateIndexes::group(Groups<Key>& groups, const Key& key, const KeyOf& keyOf) {
    if (groups.covered == 0) {
        groups.byKey.reserve(m_devices.size());
    }
    for (; groups.covered < m_devices.size(); ++groups.covered) {
        const StateManager::DevicePointer& device = m_devices[groups.covered];
        groups.byKey[keyOf(*device)].append(device);
    }
    const auto at = groups.byKey.find(key);
    return at == groups.byKey.end() ? noDevices() : at->second;
}

const StateIndexes::DeviceArray& StateIndexes::byHwLocator(StringView hwLocator) {
    return group(m_byHwLocator, hwLocator, [](const IDeviceImp& device) { return device.hwLocator().view(); });
}

const StateIndexes::DeviceArray& StateIndexes::byOsLocator(StringView osLocator) {
    return group(m_byOsLocator, osLocator, [](const IDeviceImp& device) { return device.osLocator().view(); });
}

const StateIndexes::DeviceArray& StateIndexes::byName(StringView name) {
    return group(m_byFoldedName, foldCase(name), [](const IDeviceImp& device) { return foldCase(device.name()); });
}

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
