/// Values of a generated script: exact, or widened into ranges.
///
/// A tolerance applies to numbers, to arrays of 32-bit integers and to measurements; everything else is written
/// exactly, with a line in the log where a tolerance was asked for in vain. The bounds are value - v and v + value with
/// v = tolerance / 100 * value, neither rounded nor ordered: of a negative value the first bound is the larger, and the
/// matching side reads the bounds in either order.

#include "libInventory/generation/PropertyValueLinking.h"

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/generation/ValuePattern.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

void addValueElement(XmlElement* propertyElement, const String& pattern) {
    XmlElement* const value = propertyElement->Document().NewElement(vocabulary::VALUE);
    value->SetAttribute(vocabulary::VALUE, pattern);
    propertyElement->LinkEndChild(value);
}

void writeStringValues(XmlElement* propertyElement, const IPropertyImp& property) {
    for (const String& text : property.value().toStringArray(false)) {
        addValueElement(propertyElement, exactValuePattern(text));
    }
}

void writeRangeValue(XmlElement* propertyElement, double value, double tolerancePercent) {
    const double variation = tolerancePercent / 100.0 * value;
    addValueElement(propertyElement, rangePattern(value - variation, variation + value, String::EMPTY));
}

/// One property whose tolerance is known: writes it as far as its type allows.
class TolerantValue {
public:
    TolerantValue(XmlElement* element, const IDeviceImp& device, const IPropertyImp& property, double tolerance)
        : m_element(element),
          m_device(device),
          m_property(property),
          m_value(property.value()),
          m_tolerance(tolerance) {}

    void write() const {
        switch (m_value.type().code()) {
            case DataTypeImp::UINT32: return writeRange(m_value.valueUint32());
            case DataTypeImp::INT32: return writeRange(m_value.valueInt32());
            case DataTypeImp::UINT64: return writeRange(static_cast<double>(m_value.valueUint64()));
            case DataTypeImp::DOUBLE: return writeRange(m_value.valueDouble());
            case DataTypeImp::PERCENT: return writeRange(m_value.valuePercent());
            case DataTypeImp::UINT32ARRAY:
                for (std::size_t i = 0; i < m_value.arraySize(); ++i) {
                    writeRange(m_value.getUint32InArray(i));
                }
                return;
            case DataTypeImp::INT32ARRAY:
                for (std::size_t i = 0; i < m_value.arraySize(); ++i) {
                    writeRange(m_value.getInt32InArray(i));
                }
                return;
            case DataTypeImp::DISCRETEMEASUREMENT: return writeMeasurement(m_value.valueDiscreteMeasurement());
            case DataTypeImp::NONDISCRETEMEASUREMENT: return writeMeasurement(m_value.valueNonDiscreteMeasurement());
            case DataTypeImp::STRING:
            case DataTypeImp::LOCALIZEDSTRING: break;
            case DataTypeImp::STRINGARRAY:
            case DataTypeImp::LOCALIZEDSTRINGARRAY:
                VRX_LOG(inventoryLog(), LogPriority::Warning,
                        u"linkPropertyValue(): Device: " << m_device.toString() << u" Prop: " << m_property.key()
                                                         << u" ignoring tolerancePercent because type is "
                                                         << m_value.type().toString());
                break;
            default:
                VRX_LOG(inventoryLog(), LogPriority::Warning,
                        u"linkPropertyValue(): Device: " << m_device.toString() << u" Prop: " << m_property.key()
                                                         << u" unhandled datatype: " << m_value.type().toString()
                                                         << u" using toStringArray method");
        }
        writeStringValues(m_element, m_property);
    }

private:
    void writeRange(double value) const { writeRangeValue(m_element, value, m_tolerance); }

    void writeMeasurement(const Measurement& measurement) const {
        const double value = measurement.value(UnitMagnitude(0));
        const double variation = m_tolerance / 100.0 * value;
        const double low = value - variation;
        const double high = variation + value;
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"linkPropertyValue d = " << m_device.toString() << u" p = " << m_property.key() << u" val = " << value
                                          << u" var = " << variation << u" low = " << low << u" high = " << high);
        addValueElement(m_element, rangePattern(low, high, measurement.autoScaledUnitsToString(false)));
    }

    XmlElement* m_element;
    const IDeviceImp& m_device;
    const IPropertyImp& m_property;
    const ValueImp& m_value;
    double m_tolerance;
};

}  // namespace

void linkPropertyValue(XmlElement* propertyElement, const boost::shared_ptr<IDeviceImp>& device,
                       const IPropertyImp& property, SysinfoFilter* filter) {
    double tolerance = 0;
    if (filter == nullptr || !filter->inventoryTolerance(device->type(), property.key(), tolerance)) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"linkPropertyValue d = " << device->toString() << u" p = " << property.key()
                                          << u" no tolerance in filter");
        writeStringValues(propertyElement, property);
        return;
    }
    if (tolerance < 0 || tolerance > 100) {
        VRX_LOG(inventoryLog(), LogPriority::Warning,
                u"linkPropertyValue(): Device: " << device->toString() << u" Prop: " << property.key()
                                                 << u" tolerancePercent : " << tolerance
                                                 << u" is > 100 or < 0, ignoring tolerancePercent");
        writeStringValues(propertyElement, property);
        return;
    }
    VRX_LOG(
        inventoryLog(), LogPriority::Debug,
        u"linkPropertyValue d = " << device->toString() << u" p = " << property.key() << u" tolerance = " << tolerance);
    TolerantValue(propertyElement, *device, property, tolerance).write();
}

}  // namespace vrx
