#include "libSystemState/devices/DeviceImp.h"

#include <boost/make_shared.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstdint>
#include <utility>

#include "libCommon/Assertion.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertyImp.h"

/// The property of a key is found by comparing keys one after another while there are few. From INDEX_FROM properties
/// on a hash index serves, made on the first look-up and extended on the next look-up after properties were added.
/// The index holds positions, not texts: it hashes and compares through the properties themselves, so it costs a few
/// bytes a property and never refers to a text that is gone. Of equal keys it keeps the first.

namespace vrx {

namespace {

using PropertyArray = Array<boost::shared_ptr<IPropertyImp>>;
using Position = std::uint32_t;

constexpr std::size_t INDEX_FROM = 16;
constexpr std::size_t USUAL_PROPERTIES = 8;  // room that is made at once for the first

/// Hashes and compares positions by the keys that stand there; a text is looked up as it is.
struct KeysByPosition {
    using is_transparent = void;
    const PropertyArray* properties;

    StringView keyOf(Position position) const { return (*properties)[position]->key(); }
    StringView keyOf(StringView key) const { return key; }

    template <typename T>
    std::size_t operator()(const T& key) const {
        return hashOf(keyOf(key));
    }
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
        return keyOf(a) == keyOf(b);
    }
};

/// A deep copy; the usual kind of property with its counter in one allocation.
boost::shared_ptr<IPropertyImp> copyOf(const IPropertyImp& property) {
    if (const auto* plain = dynamic_cast<const PropertyImp*>(&property)) {
        return boost::make_shared<PropertyImp>(*plain);
    }
    return boost::shared_ptr<IPropertyImp>(property.clone());
}

void appendEscaped(String& out, StringView locator) {
    for (const char16_t unit : locator) {
        if (unit == u'\\' || unit == u'|') {
            out.append(u'\\');
        }
        out.append(unit);
    }
}

}  // namespace

struct DeviceImp::KeyIndex {
    explicit KeyIndex(const PropertyArray& properties)
        : positions(properties.size(), KeysByPosition{&properties}, KeysByPosition{&properties}) {}

    /// Enters the properties that were added since the last call.
    void extend(const PropertyArray& properties) {
        for (; covered < properties.size(); ++covered) {
            positions.insert(covered);
        }
    }

    boost::unordered_flat_set<Position, KeysByPosition, KeysByPosition> positions;
    Position covered = 0;
};

DeviceImp::DeviceImp(Token, const CapabilityImp& type, const CapabilityImp& capabilities, String name,
                     String description, String osLocator, String hwLocator)
    : m_type(type),
      m_hwLocator(std::move(hwLocator)),
      m_osLocator(std::move(osLocator)),
      m_name(std::move(name)),
      m_description(std::move(description)),
      m_capabilities(capabilities) {}

// A chain of devices may be longer than the stack is deep, so children that nobody else keeps go one by one.
DeviceImp::~DeviceImp() {
    DeviceArray going = std::move(m_children);
    while (!going.isEmpty()) {
        const boost::shared_ptr<IDeviceImp> child = std::move(going.back());
        going.truncate(going.size() - 1);
        if (auto* const plain = child.use_count() == 1 ? dynamic_cast<DeviceImp*>(child.get()) : nullptr) {
            for (boost::shared_ptr<IDeviceImp>& grandchild : plain->m_children) {
                going.append(std::move(grandchild));
            }
            plain->m_children.clear();
        }
    }
}

boost::shared_ptr<IDeviceImp> DeviceImp::createGeneric(const CapabilityImp& type, const CapabilityImp& capabilities,
                                                       unsigned, String name, String description, String osLocator,
                                                       String hwLocator) {
    return createRecorded(type, capabilities, std::move(name), std::move(description), std::move(osLocator),
                          std::move(hwLocator), nullptr);
}

boost::shared_ptr<IDeviceImp> DeviceImp::createRecorded(const CapabilityImp& type, const CapabilityImp& capabilities,
                                                        String name, String description, String osLocator,
                                                        String hwLocator,
                                                        std::unique_ptr<const RecordedProperties> properties) {
    auto device = boost::make_shared<DeviceImp>(Token(), type, capabilities, std::move(name), std::move(description),
                                                std::move(osLocator), std::move(hwLocator));
    device->m_recorded = std::move(properties);
    return device;
}

String DeviceImp::guid(const String& hwLocator, const String& osLocator) {
    String guid;
    guid.reserve(hwLocator.size() + 1 + osLocator.size());
    appendEscaped(guid, hwLocator);
    guid.append(u'|');
    appendEscaped(guid, osLocator);
    return guid;
}

IDeviceImp* DeviceImp::clone() const {
    std::unique_ptr<DeviceImp> copy(
        new DeviceImp(Token(), m_type, m_capabilities, m_name, m_description, m_osLocator, m_hwLocator));
    const PropertyArray& properties = madeProperties();
    copy->m_properties.reserve(properties.size());
    for (const boost::shared_ptr<IPropertyImp>& property : properties) {
        copy->m_properties.append(copyOf(*property));
    }
    return copy.release();
}

void DeviceImp::addProperty(const boost::shared_ptr<IPropertyImp>& property) {
    VRX_ASSERT(property != nullptr);
    if (madeProperties().isEmpty()) {
        m_properties.reserve(USUAL_PROPERTIES);
    }
    m_properties.append(property);
}

const DeviceImp::PropertyArray& DeviceImp::madeProperties() const {
    if (m_recorded) {
        m_properties = m_recorded->make();
        m_recorded.reset();
    }
    return m_properties;
}

const boost::shared_ptr<IPropertyImp>* DeviceImp::lookUp(StringView key) const {
    const PropertyArray& properties = madeProperties();
    if (properties.size() < INDEX_FROM) {
        for (const boost::shared_ptr<IPropertyImp>& property : properties) {
            if (property->key() == key) {
                return &property;
            }
        }
        return nullptr;
    }
    if (!m_keyIndex) {
        m_keyIndex = std::make_unique<KeyIndex>(properties);
    }
    m_keyIndex->extend(properties);
    const auto at = m_keyIndex->positions.find(key);
    return at == m_keyIndex->positions.end() ? nullptr : &properties[*at];
}

boost::shared_ptr<IPropertyImp> DeviceImp::property(const String& key) const {
    const boost::shared_ptr<IPropertyImp>* found = lookUp(key);
    return found ? *found : boost::shared_ptr<IPropertyImp>();
}

const IPropertyImp* DeviceImp::findProperty(StringView key) const {
    const boost::shared_ptr<IPropertyImp>* found = lookUp(key);
    return found ? found->get() : nullptr;
}

DeviceImp::PropertyArray DeviceImp::properties(const PropertyCategoryImp& categories) const {
    if (categories == PropertyCategoryImp::ALL()) {
        return madeProperties();
    }
    PropertyArray selected;
    for (const boost::shared_ptr<IPropertyImp>& property : madeProperties()) {
        if (property->category().intersect(categories)) {
            selected.append(property);
        }
    }
    return selected;
}

String DeviceImp::toString(unsigned, bool) const { return concat(m_type.toString(), u" \"", m_name, u"\" ", guid()); }

}  // namespace vrx
