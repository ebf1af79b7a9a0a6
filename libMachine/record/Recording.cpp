#include "libMachine/record/Recording.h"

#include <boost/make_shared.hpp>
#include <map>
#include <tuple>
#include <utility>

#include "libSystemState/StateManager.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/properties/PropertySpecImp.h"

namespace vrx {

namespace {

/// Turns records into devices of a store.
class RecordWriter {
public:
    explicit RecordWriter(StateManager& store) : m_store(store) {}

    StateManager::DevicePointer write(DeviceRecord& record, const StateManager::DevicePointer& parent) {
        addPlaceholders(record);
        const auto device = DeviceImp::createGeneric(CapabilityImp(record.type), capabilitiesOf(record), 0,
                                                     String::UTF8Decode(record.name), String(),
                                                     String::UTF8Decode(record.osLocator), uniqueLocator(record));
        for (PropertyRecord& property : record.properties) {
            device->addProperty(boost::make_shared<PropertyImp>(specOf(property), std::move(property.value)));
        }
        return m_store.addDevice(device, nullptr, parent);
    }

private:
    using SpecKey = std::tuple<StringView, std::size_t, std::size_t>;

    static void addPlaceholders(DeviceRecord& record) {
        Array<String> keys;
        for (const StringView key : record.placeholders) {
            if (!record.has(key)) {
                keys.append(String(key));
            }
        }
        if (!keys.isEmpty()) {
            record.properties.push_back(
                {property::PLACEHOLDERS, PropertyCategoryImp::Internal(), ValueImp(std::move(keys))});
        }
    }

    static CapabilityImp capabilitiesOf(const DeviceRecord& record) {
        CapabilityImp all;
        for (const StringView name : record.capabilities) {
            all = all | CapabilityImp(name);
        }
        return all;
    }

    String uniqueLocator(const DeviceRecord& record) {
        std::string locator = record.hwLocator;
        while (unsigned before = m_locators[locator]++) {
            locator = record.hwLocator + "#" + std::to_string(before + 1);
        }
        return String::UTF8Decode(locator);
    }

    const boost::shared_ptr<PropertySpecImp>& specOf(const PropertyRecord& property) {
        const DataTypeImp type = property.value.type();
        const std::size_t volatileBit = property.category.intersect(PropertyCategoryImp::Volatile()) ? 1 : 0;
        const std::size_t internalBit = property.category.intersect(PropertyCategoryImp::Internal()) ? 2 : 0;
        auto& spec = m_specs[SpecKey(property.key, volatileBit | internalBit, type.code())];
        if (!spec) {
            spec = boost::make_shared<PropertySpecImp>(property.key, property.category, type, CapabilityImp::ALL());
            m_store.addPropertySpec(spec);
        }
        return spec;
    }

    StateManager& m_store;
    std::unordered_map<std::string, unsigned, TextHash> m_locators;  // how many devices asked for each
    std::map<SpecKey, boost::shared_ptr<PropertySpecImp>> m_specs;
};

}  // namespace

std::size_t Recording::add(DeviceRecord device) {
    const std::size_t place = m_devices.size();
    VRX_ASSERT(!device.parent || (*device.parent < place && device.sysPath.empty()));
    if (!device.sysPath.empty()) {
        m_byPath.emplace(device.sysPath, place);
    }
    device.sources |= m_source;
    m_devices.push_back(std::move(device));
    return place;
}

void Recording::leaveOut(std::size_t place) {
    VRX_ASSERT(place != 0 && place < m_devices.size());
    m_leftOut.insert(place);
}

std::size_t Recording::nearest(std::string_view sysPath) const {
    while (true) {
        const auto at = m_byPath.find(std::string(sysPath));
        if (at != m_byPath.end()) {
            return at->second;
        }
        const std::size_t slash = sysPath.rfind('/');
        if (slash == std::string_view::npos) {
            return NONE;
        }
        sysPath = sysPath.substr(0, slash);
    }
}

std::size_t Recording::parentOf(std::size_t place) const {
    const DeviceRecord& device = m_devices[place];
    if (device.parent) {
        return *device.parent;
    }
    const std::string_view path = device.sysPath;
    const std::size_t above = path.empty() ? NONE : nearest(path.substr(0, path.rfind('/')));
    return above == NONE ? 0 : above;
}

std::size_t Recording::keptParentOf(std::size_t place) const {
    do {
        place = parentOf(place);
    } while (m_leftOut.contains(place));
    return place;
}

std::vector<std::vector<std::size_t>> Recording::childrenOfAll() const {
    std::vector<std::vector<std::size_t>> children(m_devices.size());
    for (std::size_t place = 1; place < m_devices.size(); ++place) {
        if (!m_leftOut.contains(place)) {
            children[keptParentOf(place)].push_back(place);
        }
    }
    return children;
}

void Recording::storeIn(StateManager& store) {
    VRX_ASSERT(!m_devices.empty());
    const auto children = childrenOfAll();
    RecordWriter writer(store);
    std::vector<std::pair<std::size_t, StateManager::DevicePointer>> pending{{0, nullptr}};
    while (!pending.empty()) {
        const auto [place, parent] = std::move(pending.back());
        pending.pop_back();
        const StateManager::DevicePointer device = writer.write(m_devices[place], parent);
        for (auto child = children[place].rbegin(); child != children[place].rend(); ++child) {
            pending.emplace_back(*child, device);
        }
    }
    for (const UnreadSource& unread : m_unread) {
        store.addUnread(unread);
    }
}

}  // namespace vrx
