#include "libSystemState/properties/PropertyImp.h"

#include <boost/unordered/unordered_flat_set.hpp>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/containers/HashFunctions.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/ValueMoment.h"

/// A property is a pointer to its shared specification, its value, and a pointer to what few properties have: children
/// and flags. The last is made when the first of these is set, so that a plain property costs nothing for it.
///
/// Child properties are kept as keys and resolved through the device at each question. Keys that lead back to where
/// one came from are possible (the keys of a recording are anybody's); walks over a tree therefore visit each property
/// once.

namespace vrx {

struct PropertyImp::Rare {
    Array<String> childrenKeys;
    boost::unordered_flat_set<String, HashFunc<String>> knownKeys;  ///< those of childrenKeys
    bool isPartOfGroup = false;
    bool willBeDiscoveredLater = false;
};

PropertyImp::PropertyImp(boost::shared_ptr<PropertySpecImp> spec) : PropertyImp(std::move(spec), ValueImp()) {}

PropertyImp::PropertyImp(boost::shared_ptr<PropertySpecImp> spec, ValueImp value)
    : m_spec(std::move(spec)), m_value(std::move(value)) {
    VRX_ASSERT(m_spec != nullptr);
}

PropertyImp::PropertyImp(const PropertyImp& other)
    : m_spec(other.m_spec),
      m_value(other.m_value),
      m_rare(other.m_rare ? std::make_unique<Rare>(*other.m_rare) : nullptr) {}

PropertyImp::~PropertyImp() = default;

PropertyImp::Rare& PropertyImp::rare() {
    if (!m_rare) {
        m_rare = std::make_unique<Rare>();
    }
    return *m_rare;
}

IPropertyImp* PropertyImp::clone() const { return new PropertyImp(*this); }

IPropertyImp& PropertyImp::setValue(const ValueImp& value) {
    setValue(ValueImp(value));
    return *this;
}

void PropertyImp::setValue(ValueImp&& value) { ValueMoment::keep(*this, std::exchange(m_value, std::move(value))); }

IPropertyImp& PropertyImp::setPartOfGroup(bool partOfGroup) {
    rare().isPartOfGroup = partOfGroup;
    return *this;
}

IPropertyImp& PropertyImp::setWillBeDiscoveredLater() {
    rare().willBeDiscoveredLater = true;
    return *this;
}

IPropertyImp& PropertyImp::updateSpecGuid(const String& guid) {
    if (boost::shared_ptr<PropertySpecImp> found = StateManager::instance().propertySpec(guid)) {
        m_spec = std::move(found);
    }
    return *this;
}

bool PropertyImp::addChild(const IPropertyImp& child) {
    const String& childKey = child.key();
    if (childKey == key() || !rare().knownKeys.insert(childKey).second) {
        return false;
    }
    m_rare->childrenKeys.append(childKey);
    return true;
}

bool PropertyImp::removeChild(const String& key) {
    if (!m_rare || m_rare->knownKeys.erase(key) == 0) {
        return false;
    }
    Array<String>& keys = m_rare->childrenKeys;
    for (std::size_t at = 0; at < keys.size(); ++at) {
        if (keys[at] == key) {
            keys.remove(at);
            return true;
        }
    }
    return false;
}

void PropertyImp::clearChildrenKeys() {
    if (m_rare) {
        m_rare->childrenKeys.clear();
        m_rare->knownKeys.clear();
    }
}

const String& PropertyImp::moduleGuid() const { return String::EMPTY; }

const String& PropertyImp::localizedDescription() const { return String::EMPTY; }

bool PropertyImp::partOfGroup() const { return m_rare && m_rare->isPartOfGroup; }

bool PropertyImp::willBeDiscoveredLater() const { return m_rare && m_rare->willBeDiscoveredLater; }

bool PropertyImp::isLeaf() const { return getChildrenKeys().isEmpty(); }

const Array<String>& PropertyImp::getChildrenKeys() const {
    static const Array<String> noKeys;
    return m_rare ? m_rare->childrenKeys : noKeys;
}

std::uint32_t PropertyImp::childrenCount() const { return static_cast<std::uint32_t>(getChildrenKeys().size()); }

Array<boost::shared_ptr<IPropertyImp>> PropertyImp::children(const IDeviceImp& device) const {
    const Array<String>& keys = getChildrenKeys();
    Array<boost::shared_ptr<IPropertyImp>> found(keys.size());
    for (const String& childKey : keys) {
        if (boost::shared_ptr<IPropertyImp> child = device.property(childKey)) {
            found.append(std::move(child));
        }
    }
    return found;
}

boost::shared_ptr<PropertySpecImp> PropertyImp::spec(const StateManager& store) const {
    return store.propertySpec(specGuid());
}

String PropertyImp::toString(unsigned indent, int) const {
    const String indentation(std::size_t{indent} * 4, u' ');
    if (const String* text = m_value.text()) {
        return concat(indentation, key(), u" = ", *text);
    }
    return concat(indentation, key(), u" = ", m_value.toString(true));
}

String PropertyImp::toStringTree(const IDeviceImp& device, unsigned indent, int verbosity) const {
    struct Pending {
        const IPropertyImp* property;  ///< the device owns it
        unsigned indent;
    };
    String text;
    boost::unordered_flat_set<const IPropertyImp*> visited;
    Array<Pending> pending = {{this, indent}};
    while (!pending.isEmpty()) {
        const Pending next = pending.back();
        pending.truncate(pending.size() - 1);
        if (!visited.insert(next.property).second) {
            continue;
        }
        text.append(text.isEmpty() ? StringView() : StringView(u"\n"));
        text.append(next.property->toString(next.indent, verbosity));
        const Array<boost::shared_ptr<IPropertyImp>> below = next.property->children(device);
        for (std::size_t at = below.size(); at-- > 0;) {
            pending.append({below[at].get(), next.indent + 1});
        }
    }
    return text;
}

}  // namespace vrx
