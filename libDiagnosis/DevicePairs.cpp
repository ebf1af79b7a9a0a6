/// Which device of one recording is which of another.
///
/// A list of keys is tried one after the other, the surest first: each is a text made of a device, and devices of
/// either side whose texts are equal are taken for the same, in order. What one key has paired takes no part in the
/// next. All keys hold the type, so a pair always has one type.
///
///     1. the hardware locator, where one device of each side has it: changed in place
///     2. both locators, name and all properties      equal devices, in whatever order they stand
///     3. the hardware locator, and an identity: UUID, WWN, serial number, address
///     4. both locators; the hardware locator
///     5. an identity                                 moved, and perhaps changed
///     6. name and all properties                     moved
///     7. the OS locator
///
/// A name that the kernel hands out comes last, because it may belong to another device today; it is no part of the
/// keys before. The first key decides for nearly every device, so the long second one is made of few. Each key costs
/// one pass and one hash table.

#include "libDiagnosis/DevicePairs.h"

#include <functional>
#include <unordered_map>

#include "libCommon/containers/HashFunctions.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr StringView SEPARATOR = u"\x1F";
constexpr StringView IDENTITIES[] = {property::UUID, property::WWN, property::SERIAL_NUMBER, property::ADDRESS};

using KeyOf = std::function<String(const IDeviceImp&)>;
using Devices = std::vector<const IDeviceImp*>;

void appendContent(String& key, const IDeviceImp& device) {
    key.append(SEPARATOR).append(device.name());
    for (const auto& property : device.properties(PropertyCategoryImp::SysInfo())) {
        key.append(SEPARATOR).append(property->key()).append(SEPARATOR).append(property->value().toString(true));
    }
}

String typeKey(const IDeviceImp& device) { return device.type().toString() + SEPARATOR; }

String guidKey(const IDeviceImp& device) { return typeKey(device) + device.guid(); }

/// Empty, which pairs nothing, where one of the locators tells no place.
String placeKey(const IDeviceImp& device) {
    return isPlace(device.hwLocator()) && !isKernelName(device.osLocator()) ? guidKey(device) : String();
}

String wholeKey(const IDeviceImp& device) {
    String key = guidKey(device);
    appendContent(key, device);
    return key;
}

String hardwareKey(const IDeviceImp& device) {
    return isPlace(device.hwLocator()) ? typeKey(device) + device.hwLocator() : String();
}

String contentKey(const IDeviceImp& device) {
    String key = typeKey(device);
    appendContent(key, device);
    return key;
}

using KeyFunction = String (*)(const IDeviceImp&);

/// What `startOf` gives, and the identity.
KeyOf identityKey(StringView key, KeyFunction startOf) {
    return [key, startOf](const IDeviceImp& device) {
        const IPropertyImp* const property = device.findProperty(key);
        const String value = property ? property->value().toString(true) : String();
        const String start = value.isEmpty() ? String() : startOf(device);
        return start.isEmpty() ? String() : start + SEPARATOR + value;
    };
}

class Pairing {
public:
    Pairing(Devices before, Devices after) : m_before(std::move(before)), m_after(std::move(after)) {}

    void pairUniqueBy(const KeyOf& keyOf) { pair(keyOf, true); }
    void pairBy(const KeyOf& keyOf) { pair(keyOf, false); }

    /// What was paired, by the device of the second machine.
    const std::unordered_map<const IDeviceImp*, const IDeviceImp*>& paired() const { return m_paired; }

    /// Devices of the first machine without a pair, in order.
    const Devices& left() const { return m_before; }

private:
    struct Group {
        std::vector<std::size_t> before;
        std::vector<std::size_t> after;
    };

    void pair(const KeyOf& keyOf, bool onlyUnique) {
        std::unordered_map<String, Group, HashFunc<String>> groups;
        for (std::size_t i = 0; i < m_before.size(); ++i) {
            if (String key = keyOf(*m_before[i]); !key.isEmpty()) {
                groups[std::move(key)].before.push_back(i);
            }
        }
        for (std::size_t i = 0; i < m_after.size(); ++i) {
            if (const auto at = groups.find(keyOf(*m_after[i])); at != groups.end()) {
                at->second.after.push_back(i);
            }
        }
        for (const auto& [key, group] : groups) {
            if (!onlyUnique || (group.before.size() == 1 && group.after.size() == 1)) {
                take(group);
            }
        }
        std::erase(m_before, nullptr);
        std::erase(m_after, nullptr);
    }

    void take(const Group& group) {
        for (std::size_t i = 0; i < std::min(group.before.size(), group.after.size()); ++i) {
            const IDeviceImp*& before = m_before[group.before[i]];
            const IDeviceImp*& after = m_after[group.after[i]];
            m_paired.emplace(after, before);
            before = nullptr;
            after = nullptr;
        }
    }

    Devices m_before;
    Devices m_after;
    std::unordered_map<const IDeviceImp*, const IDeviceImp*> m_paired;
};

Devices devicesOf(const StateManager& store) {
    Devices devices;
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        devices.push_back(device.get());
    }
    return devices;
}

}  // namespace

std::vector<DevicePair> pairDevices(const StateManager& before, const StateManager& after) {
    const Devices all = devicesOf(after);
    Pairing pairing(devicesOf(before), all);
    pairing.pairUniqueBy(hardwareKey);
    pairing.pairBy(wholeKey);
    for (const StringView key : IDENTITIES) {
        pairing.pairBy(identityKey(key, hardwareKey));
    }
    pairing.pairBy(placeKey);
    pairing.pairBy(hardwareKey);
    for (const StringView key : IDENTITIES) {
        pairing.pairBy(identityKey(key, typeKey));
    }
    pairing.pairBy(contentKey);
    pairing.pairBy(guidKey);

    std::vector<DevicePair> pairs;
    for (const IDeviceImp* const device : all) {
        const auto at = pairing.paired().find(device);
        pairs.push_back({at == pairing.paired().end() ? nullptr : at->second, device});
    }
    for (const IDeviceImp* const device : pairing.left()) {
        pairs.push_back({device, nullptr});
    }
    return pairs;
}

}  // namespace vrx
