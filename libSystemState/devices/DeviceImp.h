#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>

#include "libCommon/Export.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/RecordedProperties.h"

namespace vrx {

/// The concrete device: a plain record with no discovery behind it. Questions about properties may change what it keeps
/// inside, so only one thread at a time may ask them.
///
///     const CapabilityImp type(u"Fan");
///     const auto fan = DeviceImp::createGeneric(type, CapabilityImp(), 0, u"Fan 1", u"", u"hwmon0", u"fan:1");
///     fan->guid();                                       // "fan:1|hwmon0"
class VRX_EXPORT DeviceImp final : public IDeviceImp {
public:
    /// `module` is reserved (callers pass 0).
    static boost::shared_ptr<IDeviceImp> createGeneric(const CapabilityImp& type, const CapabilityImp& capabilities,
                                                       unsigned module, String name, String description,
                                                       String osLocator, String hwLocator);

    /// The same with the properties of a recording, which are made when somebody asks for the first time.
    static boost::shared_ptr<IDeviceImp> createRecorded(const CapabilityImp& type, const CapabilityImp& capabilities,
                                                        String name, String description, String osLocator,
                                                        String hwLocator,
                                                        std::unique_ptr<const RecordedProperties> properties);

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
    const RecordedProperties* recordedProperties() const noexcept override { return m_recorded.get(); }

private:
    struct Token {};  ///< keeps the constructor, which boost::make_shared must be able to call, to the class

public:
    DeviceImp(Token, const CapabilityImp& type, const CapabilityImp& capabilities, String name, String description,
              String osLocator, String hwLocator);

private:
    using DeviceArray = Array<boost::shared_ptr<IDeviceImp>>;
    using PropertyArray = Array<boost::shared_ptr<IPropertyImp>>;

    /// All properties; made of the recorded ones when they have not been.
    const PropertyArray& madeProperties() const;
    const boost::shared_ptr<IPropertyImp>* lookUp(StringView key) const;

    struct KeyIndex;  ///< by key; made on the first look-up on a device with many properties

    // What a search for devices reads comes first.
    CapabilityImp m_type;
    String m_hwLocator;
    String m_osLocator;
    String m_name;
    mutable std::unique_ptr<const RecordedProperties> m_recorded;  ///< gone once m_properties holds them
    mutable PropertyArray m_properties;
    mutable std::unique_ptr<KeyIndex> m_keyIndex;
    DeviceArray m_children;
    String m_description;
    CapabilityImp m_capabilities;
};

}  // namespace vrx
