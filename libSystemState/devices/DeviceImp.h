#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>

#include "libCommon/Export.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

/// The concrete device: a plain record with no discovery behind it.
class VRX_EXPORT DeviceImp final : public IDeviceImp {
public:
    /// `module` is reserved (callers pass 0).
    static boost::shared_ptr<IDeviceImp> createGeneric(const CapabilityImp& type, const CapabilityImp& capabilities,
                                                       unsigned module, const String& name, const String& description,
                                                       const String& osLocator, const String& hwLocator);

    /// The identifier of a device, a pure function of its locators: each with `\` written `\\` and `|` written `\|`,
    /// joined by `|`, hardware locator first. Two different pairs never give the same identifier.
    static String guid(const String& hwLocator, const String& osLocator);

    ~DeviceImp() override;
    IDeviceImp* clone() const override;
    void addProperty(const boost::shared_ptr<IPropertyImp>& property) override;
    const String& name() const override { return m_name; }
    const String& osLocator() const override { return m_osLocator; }
    const String& hwLocator() const override { return m_hwLocator; }
    String guid() const override { return guid(m_hwLocator, m_osLocator); }
    CapabilityImp capabilities() const override { return m_type | m_capabilities; }
    const CapabilityImp& type() const override { return m_type; }
    boost::shared_ptr<IPropertyImp> property(const String& key) const override;
    Array<boost::shared_ptr<IPropertyImp>> properties(const PropertyCategoryImp& categories) const override;
    Array<boost::shared_ptr<IDeviceImp>> children() const override { return m_children; }
    void addChild(const boost::shared_ptr<IDeviceImp>& child) override { m_children.append(child); }
    const String& description() const override { return m_description; }
    String toString(unsigned indent, bool verbose) const override;
    const IPropertyImp* findProperty(StringView key) const override;

private:
    DeviceImp(const CapabilityImp& type, const CapabilityImp& capabilities, const String& name,
              const String& description, const String& osLocator, const String& hwLocator);
    const boost::shared_ptr<IPropertyImp>* lookUp(StringView key) const;

    struct KeyIndex;  ///< by key; made on the first look-up on a device with many properties

    CapabilityImp m_type;
    CapabilityImp m_capabilities;
    String m_name;
    String m_description;
    String m_osLocator;
    String m_hwLocator;
    Array<boost::shared_ptr<IPropertyImp>> m_properties;
    Array<boost::shared_ptr<IDeviceImp>> m_children;
    mutable std::unique_ptr<KeyIndex> m_keyIndex;
};

}  // namespace vrx
