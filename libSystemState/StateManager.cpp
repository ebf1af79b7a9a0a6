#include "libSystemState/StateManager.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/containers/HashTable.h"
#include "libSystemState/StateIndexes.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertySpecImp.h"

/// The store keeps its devices in one list in order of adding; everything else is derived from it by StateIndexes.
///
/// A store of one device has no indexes at all: every question is one comparison, and an answer that names the device
/// is the store's own list. Checks of a single device make and drop such stores by the thousand.

namespace vrx {

struct StateManager::Content {
    /// Devices that are compared one by one before the index of members serves.
    static constexpr std::size_t FEW_DEVICES = 8;

    DeviceArray devices;
    Array<UnreadSource> unread;
    std::unique_ptr<StateIndexes> indexesWhenMade;
    std::atomic<StateIndexes*> madeIndexes = nullptr;
    std::mutex indexesMutex;
    std::mutex specsMutex;
    HashTable<String, boost::shared_ptr<PropertySpecImp>> specs;

    bool isAtMostOneDevice() const { return devices.size() <= 1; }

    StateIndexes& indexes() {
        if (StateIndexes* const made = madeIndexes.load(std::memory_order_acquire)) {
            return *made;
        }
        const std::lock_guard lock(indexesMutex);
        if (!indexesWhenMade) {
            indexesWhenMade = std::make_unique<StateIndexes>(devices);
            madeIndexes.store(indexesWhenMade.get(), std::memory_order_release);
        }
        return *indexesWhenMade;
    }

    /// The answer in a store of one device at most.
    template <typename Condition>
    const DeviceArray& answerAlone(const Condition& isWanted) const {
        return devices.isEmpty() || isWanted(*devices[0]) ? devices : StateIndexes::noDevices();
    }

    bool contains(const DevicePointer& device) {
        if (devices.size() <= FEW_DEVICES) {
            return std::find(devices.begin(), devices.end(), device) != devices.end();
        }
        return indexes().contains(device.get());
    }
};

StateManager& StateManager::instance() {
    static StateManager store;
    return store;
}

StateManager::StateManager() : m_content(std::make_unique<Content>()) {}

StateManager::~StateManager() = default;

StateManager::DevicePointer StateManager::rootDevice() const {
    return m_content->devices.isEmpty() ? DevicePointer() : m_content->devices[0];
}

std::uint32_t StateManager::deviceCount() const noexcept {
    return static_cast<std::uint32_t>(m_content->devices.size());
}

StateManager::DevicePointer StateManager::deviceByGuid(const String& guid) const {
    if (m_content->isAtMostOneDevice()) {
        const DevicePointer root = rootDevice();
        return root && root->guid() == guid ? root : DevicePointer();
    }
    return m_content->indexes().byGuid(guid);
}

StateManager::DeviceArray StateManager::getDevices(const CapabilityImp& filter, bool) const {
    return devicesCapableOf(filter);
}

const StateManager::DeviceArray& StateManager::devicesCapableOf(const CapabilityImp& filter) const {
    if (m_content->isAtMostOneDevice()) {
        return m_content->answerAlone([&](const IDeviceImp& device) { return filter.isCapable(device.type()); });
    }
    return m_content->indexes().byType(filter);
}

const StateManager::DeviceArray& StateManager::devicesByHwLocator(StringView hwLocator) const {
    if (m_content->isAtMostOneDevice()) {
        return m_content->answerAlone([&](const IDeviceImp& device) { return device.hwLocator() == hwLocator; });
    }
    return m_content->indexes().byHwLocator(hwLocator);
}

const StateManager::DeviceArray& StateManager::devicesByOsLocator(StringView osLocator) const {
    if (m_content->isAtMostOneDevice()) {
        return m_content->answerAlone([&](const IDeviceImp& device) { return device.osLocator() == osLocator; });
    }
    return m_content->indexes().byOsLocator(osLocator);
}

const StateManager::DeviceArray& StateManager::devicesByName(StringView name) const {
    if (m_content->isAtMostOneDevice()) {
        return m_content->answerAlone([&](const IDeviceImp& device) { return device.name().equalNoCase(name); });
    }
    return m_content->indexes().byName(name);
}

DeviceRange StateManager::devices() const noexcept { return m_content->devices; }

DeviceRange StateManager::withHwLocator(StringView hwLocator) const {
    return m_content->isAtMostOneDevice() ? devicesByHwLocator(hwLocator)
                                          : m_content->indexes().withHwLocator(hwLocator);
}

DeviceRange StateManager::withOsLocator(StringView osLocator) const {
    return m_content->isAtMostOneDevice() ? devicesByOsLocator(osLocator)
                                          : m_content->indexes().withOsLocator(osLocator);
}

DeviceRange StateManager::named(StringView name) const {
    return m_content->isAtMostOneDevice() ? devicesByName(name) : m_content->indexes().named(name);
}

StateManager::DevicePointer StateManager::addDevice(const DevicePointer& device, MergeChanges*,
                                                    const DevicePointer& parent) {
    VRX_ASSERT(device != nullptr);
    VRX_ASSERT(parent == nullptr || m_content->contains(parent));
    if (m_content->contains(device)) {
        return device;
    }
    if (parent) {
        parent->addChild(device);
    } else if (!m_content->devices.isEmpty()) {
        m_content->devices[0]->addChild(device);
    }
    return m_content->devices.append(device);
}

void StateManager::addPropertySpec(const boost::shared_ptr<PropertySpecImp>& spec) {
    VRX_ASSERT(spec != nullptr);
    const std::lock_guard lock(m_content->specsMutex);
    m_content->specs.insert(spec->guid(), spec);
}

boost::shared_ptr<PropertySpecImp> StateManager::propertySpec(const String& guid) const {
    const std::lock_guard lock(m_content->specsMutex);
    const boost::shared_ptr<PropertySpecImp>* found = m_content->specs.find(guid);
    return found ? *found : boost::shared_ptr<PropertySpecImp>();
}

const Array<UnreadSource>& StateManager::unread() const noexcept { return m_content->unread; }

void StateManager::addUnread(UnreadSource unread) {
    for (UnreadSource& known : m_content->unread) {
        if (known.source == unread.source && known.reason == unread.reason && known.properties == unread.properties) {
            const bool isAll = known.types.isAll() || unread.types.isAll();
            known.types = isAll ? CapabilityImp::ALL() : known.types | unread.types;
            return;
        }
    }
    m_content->unread.append(std::move(unread));
}

// The content stays, because other threads may be about to lock it.
void StateManager::clear() {
    m_content->madeIndexes.store(nullptr);
    m_content->indexesWhenMade.reset();
    m_content->devices = DeviceArray();
    m_content->unread.clear();
    const std::lock_guard lock(m_content->specsMutex);
    m_content->specs = {};
}

}  // namespace vrx
