/// Which device of a machine is which of its sisters.
///
/// Unlike a machine that is compared with itself of yesterday, sisters share no serial number, so identities do not
/// count. Groups begin as single devices and grow: a list of keys is tried one after the other, the surest first, and
/// groups of different machines whose keys are equal become one.
///
///     1. the hardware locator, where it is unique in each machine     the same place
///     2. all of it: locators, name, properties                        equal devices, in whatever order they stand
///     3. the hardware locator                                         the same place, several devices there
///     4. name and properties, without identities and places           the same device elsewhere
///     5. model and part number; the name; the size                    a similar one elsewhere
///     6. the type, where that makes a group of all machines           each has another one
///
/// The key of a group is that of its devices where they agree. Groups of one key and one machine are told apart by
/// their order. Each key costs one pass and one hash table.

#include "libGolden/DeviceGroups.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertyKinds.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr StringView SEPARATOR = u"\x1F";

using KeyOf = String (*)(const IDeviceImp&);
using Groups = std::vector<DeviceGroup>;

String typeKey(const IDeviceImp& device) { return device.type().toString() + SEPARATOR; }

/// Empty, which joins nothing, where the locator tells no place.
String placeKey(const IDeviceImp& device) {
    return isPlace(device.hwLocator()) ? typeKey(device) + device.hwLocator() : String();
}

String contentKey(const IDeviceImp& device) {
    String key = typeKey(device) + device.name();
    for (const auto& property : device.properties(PropertyCategoryImp::SysInfo())) {
        const PropertyKind kind = kindOfProperty(property->key());
        if (kind != PropertyKind::Identity && kind != PropertyKind::Place && kind != PropertyKind::Measurement) {
            key.append(SEPARATOR).append(property->key()).append(SEPARATOR).append(property->value().toString(true));
        }
    }
    return key;
}

String wholeKey(const IDeviceImp& device) {
    const StringView osLocator = isKernelName(device.osLocator()) ? StringView() : device.osLocator().view();
    return concat(contentKey(device), SEPARATOR, device.hwLocator(), SEPARATOR, osLocator);
}

String propertyText(const IDeviceImp& device, StringView key) {
    const IPropertyImp* const property = device.findProperty(key);
    return property ? property->value().toString(true) : String();
}

String modelKey(const IDeviceImp& device) {
    const String text = propertyText(device, property::MODEL) + propertyText(device, property::PART_NUMBER);
    return text.isEmpty() ? String() : typeKey(device) + text;
}

String nameKey(const IDeviceImp& device) {
    return device.name().isEmpty() ? String() : typeKey(device) + device.name();
}

String sizeKey(const IDeviceImp& device) {
    const String text = propertyText(device, property::SIZE);
    return text.isEmpty() ? String() : typeKey(device) + text;
}

/// Empty where the devices of the group do not agree.
String keyOfGroup(const DeviceGroup& group, KeyOf keyOf) {
    std::optional<String> common;
    for (const GroupMember& member : group) {
        String key = keyOf(*member.device);
        if (common && *common != key) {
            return {};
        }
        common = std::move(key);
    }
    return common.value_or(String());
}

enum class Condition { None, Unique, Whole };

class Grouping {
public:
    Grouping(std::size_t machines, Groups groups) : m_machines(machines), m_groups(std::move(groups)) {}

    void joinBy(KeyOf keyOf, Condition condition = Condition::None) {
        std::unordered_map<String, std::size_t, HashFunc<String>> numbers;
        std::vector<std::vector<std::size_t>> buckets;
        for (std::size_t i = 0; i < m_groups.size(); ++i) {
            if (m_groups[i].size() == m_machines) {
                continue;
            }
            if (const String key = keyOfGroup(m_groups[i], keyOf); !key.isEmpty()) {
                const auto [at, isNew] = numbers.try_emplace(key, buckets.size());
                if (isNew) {
                    buckets.emplace_back();
                }
                buckets[at->second].push_back(i);
            }
        }
        for (const std::vector<std::size_t>& bucket : buckets) {
            join(bucket, condition);
        }
        std::erase_if(m_groups, [](const DeviceGroup& group) { return group.empty(); });
    }

    Groups take() { return std::move(m_groups); }

private:
    /// The first group of each machine with the first of the others, the second with the second. A group of several
    /// machines stands where the last of them has got to.
    void join(const std::vector<std::size_t>& bucket, Condition condition) {
        std::unordered_map<std::size_t, std::size_t> next;  // by machine
        std::vector<std::vector<std::size_t>> rows;
        for (const std::size_t i : bucket) {
            std::size_t row = 0;
            for (const GroupMember& member : m_groups[i]) {
                row = std::max(row, next[member.machine]);
            }
            for (const GroupMember& member : m_groups[i]) {
                next[member.machine] = row + 1;
            }
            rows.resize(std::max(rows.size(), row + 1));
            rows[row].push_back(i);
        }
        if (condition == Condition::Unique && rows.size() > 1) {
            return;
        }
        for (const std::vector<std::size_t>& row : rows) {
            if (condition != Condition::Whole || makesWhole(row)) {
                unite(row);
            }
        }
    }

    bool makesWhole(const std::vector<std::size_t>& row) const {
        std::size_t count = 0;
        for (const std::size_t i : row) {
            count += m_groups[i].size();
        }
        return count == m_machines;
    }

    void unite(const std::vector<std::size_t>& row) {
        DeviceGroup& group = m_groups[row.front()];
        for (std::size_t k = 1; k < row.size(); ++k) {
            const DeviceGroup other = std::exchange(m_groups[row[k]], {});
            group.insert(group.end(), other.begin(), other.end());
        }
        std::ranges::sort(group, {}, &GroupMember::machine);
    }

    std::size_t m_machines;
    Groups m_groups;
};

}  // namespace

std::vector<DeviceGroup> groupDevices(const std::vector<std::vector<const IDeviceImp*>>& devices) {
    Groups single;
    for (std::size_t machine = 0; machine < devices.size(); ++machine) {
        for (const IDeviceImp* const device : devices[machine]) {
            single.push_back({{machine, device}});
        }
    }
    Grouping grouping(devices.size(), std::move(single));
    grouping.joinBy(placeKey, Condition::Unique);
    grouping.joinBy(wholeKey);
    grouping.joinBy(placeKey);
    grouping.joinBy(contentKey);
    grouping.joinBy(modelKey);
    grouping.joinBy(nameKey);
    grouping.joinBy(sizeKey);
    grouping.joinBy(typeKey, Condition::Whole);
    return grouping.take();
}

}  // namespace vrx
