/// The reader takes most items from an attribute or a child element. Which one is written when:
///
/// Type, name and locators are attributes, which keep every blank. An empty one is an empty child element: a reader may
/// take an empty attribute for a missing one, and make something up in its place.
///
/// A value is an attribute; so an empty one is none at all. An array is one `value` child with an attribute for each
/// entry, never a `Value` child with text: of those, empty ones are lost and all come before the others.
///
/// A measurement is its number with `units`, as long as the reader knows the unit; an unknown one would make it drop
/// the properties behind it.
///
/// Properties stand beside one another in the device's order, children of others too: the reader lists them so.

#include "libInventory/recording/SysInfoWriter.h"

#include <cmath>
#include <utility>
#include <vector>

#include "libCommon/text/NumberText.h"
#include "libCommon/values/Measurement.h"
#include "libCommon/values/Unit.h"
#include "libCommon/xml/XmlDocument.h"
#include "libCommon/xml/XmlWriter.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/recording/UnreadElements.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

const Measurement* measurementIn(const ValueImp& value) {
    switch (value.type().code()) {
        case DataTypeImp::DISCRETEMEASUREMENT: return &value.valueDiscreteMeasurement();
        case DataTypeImp::NONDISCRETEMEASUREMENT: return &value.valueNonDiscreteMeasurement();
        default: return nullptr;
    }
}

/// Builds the document of one store.
class SysInfoBuilder {
public:
    explicit SysInfoBuilder(bool allCategories) : m_allCategories(allCategories) {}

    std::string build(const StateManager& store) {
        XmlElement* const root = m_document.NewElement(sysInfo::SYS_INFO);
        m_document.LinkEndChild(root);
        if (store.rootDevice()) {
            addTree(store.rootDevice(), root);
        }
        writeUnread(store, m_document, *root);
        std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
        writeFormatted(m_document.Top(), 0, text);
        return text;
    }

private:
    struct Pending {
        boost::shared_ptr<IDeviceImp> device;
        XmlElement* parent;
        unsigned level;
    };

    /// Devices deeper than documents may be nested stand beside their parent, behind it, where reading finds them in
    /// the same order.
    void addTree(const boost::shared_ptr<IDeviceImp>& root, XmlElement* list) {
        static constexpr unsigned BELOW_A_DEVICE = 2;  // a property and its values
        static constexpr unsigned DEEPEST = XmlDocument::MAXIMUM_DEPTH - BELOW_A_DEVICE;
        std::vector<Pending> pending{{root, list, 2}};
        while (!pending.empty()) {
            const Pending next = std::move(pending.back());
            pending.pop_back();
            XmlElement* const element = addDevice(*next.device, next.parent);
            const bool mayNest = next.level < DEEPEST;
            const Array<boost::shared_ptr<IDeviceImp>> children = next.device->children();
            for (std::size_t i = children.size(); i > 0; --i) {
                pending.push_back({children[i - 1], mayNest ? element : next.parent, next.level + (mayNest ? 1U : 0U)});
            }
        }
    }

    XmlElement* addDevice(const IDeviceImp& device, XmlElement* parent) {
        XmlElement* const element = addElement(parent, sysInfo::DEVICE);
        const String type = device.type().toString();
        addItem(element, sysInfo::TYPE, sysInfo::TYPE_ITEM, type);
        addItem(element, sysInfo::NAME, sysInfo::NAME_ITEM, device.name());
        addItem(element, sysInfo::HW_LOCATOR, sysInfo::HW_LOCATOR_ITEM, device.hwLocator());
        addItem(element, sysInfo::OS_LOCATOR, sysInfo::OS_LOCATOR_ITEM, device.osLocator());
        for (const String& capability : device.capabilities().names()) {
            if (capability != type) {
                addElement(element, sysInfo::CAPABILITY)->LinkEndChild(m_document.NewText(capability));
            }
        }
        for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
            if (m_allCategories || !property->category().intersect(LEFT_OUT)) {
                addProperty(*property, element);
            }
        }
        return element;
    }

    void addProperty(const IPropertyImp& property, XmlElement* device) {
        XmlElement* const element = addElement(device, sysInfo::PROPERTY);
        addItem(element, sysInfo::KEY, sysInfo::KEY_ITEM, property.key());
        const ValueImp& value = property.value();
        const Measurement* const measurement = measurementIn(value);
        if (measurement != nullptr && addMeasurement(*measurement, element)) {
            return;
        }
        if (value.isArray()) {
            for (const String& entry : value.toStringArray(false)) {
                addElement(element, sysInfo::VALUE)->SetAttribute(sysInfo::VALUE, entry);
            }
        } else if (const String text = value.toString(false); !text.isEmpty()) {
            element->SetAttribute(sysInfo::VALUE, text);
        }
    }

    /// False, setting nothing, when the reader would not get the same measurement.
    static bool addMeasurement(const Measurement& measurement, XmlElement* element) {
        const String units = measurement.autoScaledUnitsToString(false);
        const double number = measurement.value(UnitMagnitude());
        if (!std::isfinite(number) || !Unit::lookupByString(units)) {
            return false;
        }
        element->SetAttribute(sysInfo::VALUE, toText(number));
        element->SetAttribute(sysInfo::UNITS, units);
        return true;
    }

    void addItem(XmlElement* element, StringView attribute, StringView child, StringView text) {
        if (text.empty()) {
            addElement(element, child);
        } else {
            element->SetAttribute(attribute, text);
        }
    }

    XmlElement* addElement(XmlElement* parent, StringView name) {
        XmlElement* const element = m_document.NewElement(name);
        parent->LinkEndChild(element);
        return element;
    }

    static constexpr PropertyCategoryImp LEFT_OUT =
        PropertyCategoryImp::Volatile() | PropertyCategoryImp::Internal() | PropertyCategoryImp::Group();

    XmlDocument m_document;
    bool m_allCategories;
};

}  // namespace

std::string sysInfoXml(const StateManager& store, bool allCategories) {
    return SysInfoBuilder(allCategories).build(store);
}

}  // namespace vrx
