#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>

#include "libCommon/Export.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertySpecImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

/// The concrete property. A machine may have a million of them, so what few properties have (children, flags) is kept
/// aside.
///
///     const auto size = boost::make_shared<PropertySpecImp>(u"Size", PropertyCategoryImp::SysInfo(),
///                                                           DataTypeImp::UINT64, CapabilityImp::ALL());
///     device->addProperty(boost::make_shared<PropertyImp>(size, ValueImp(std::uint64_t{32} << 30)));
class VRX_EXPORT PropertyImp final : public IPropertyImp {
public:
    /// Takes key, category, type and capabilities from the property specification. Requires: spec is not empty.
    explicit PropertyImp(boost::shared_ptr<PropertySpecImp> spec);
    PropertyImp(boost::shared_ptr<PropertySpecImp> spec, ValueImp value);
    PropertyImp(const PropertyImp& other);
    PropertyImp& operator=(const PropertyImp&) = delete;
    ~PropertyImp() override;

    IPropertyImp* clone() const override;
    IPropertyImp& setValue(const ValueImp& value) override;
    IPropertyImp& setPartOfGroup(bool partOfGroup) override;
    IPropertyImp& setWillBeDiscoveredLater() override;
    IPropertyImp& updateSpecGuid(const String& guid) override;
    bool addChild(const IPropertyImp& child) override;
    const String& key() const override { return m_spec->key(); }
    const DataTypeImp& type() const override { return m_spec->type(); }
    const String& moduleGuid() const override;
    String englishName() const override { return m_spec->key(); }
    const String& localizedName() const override { return m_spec->key(); }
    const String& localizedDescription() const override;
    const PropertyCategoryImp& category() const override { return m_spec->category(); }
    const CapabilityImp& capabilities() const override { return m_spec->capabilities(); }
    const ValueImp& value() const override { return m_value; }
    bool partOfGroup() const override;
    bool willBeDiscoveredLater() const override;
    bool isLeaf() const override;
    const Array<String>& getChildrenKeys() const override;
    void clearChildrenKeys() override;
    std::uint32_t childrenCount() const override;
    Array<boost::shared_ptr<IPropertyImp>> children(const IDeviceImp& device) const override;
    bool removeChild(const String& key) override;
    String toString(unsigned indent, int verbosity) const override;
    String toStringTree(const IDeviceImp& device, unsigned indent, int verbosity) const override;
    boost::shared_ptr<PropertySpecImp> spec(const StateManager& store) const override;
    boost::shared_ptr<PropertySpecImp> spec() const override { return m_spec; }
    const String& specGuid() const override { return m_spec->guid(); }

    /// Takes the value over without a copy.
    void setValue(ValueImp&& value);

private:
    struct Rare;
    Rare& rare();

    boost::shared_ptr<PropertySpecImp> m_spec;
    ValueImp m_value;
    std::unique_ptr<Rare> m_rare;
};

}  // namespace vrx
