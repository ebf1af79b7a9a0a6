/// Writing a script that describes the machine: one `device` element for each device of the tree, flattened, a device
/// before its children, with its properties as exact patterns or ranges.
///
/// Names, locators and exact values are encoded while they pass through the XML layer, and the finished text is decoded
/// as a whole; loading a script encodes its text again. So any 16-bit text survives, in a text held in memory. No file
/// can hold some of them: where the text has to be well-formed, what was encoded becomes escapes of patterns instead.

#include <algorithm>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/text/UuCode.h"
#include "libCommon/time/DateTime.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libInventory/ScriptGeneration.h"
#include "libInventory/generation/PropertyValueLinking.h"
#include "libInventory/generation/ValuePattern.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/DataTypeImp.h"

namespace vrx {

namespace {

constexpr const char16_t* DEFAULT_FILTER_FILE = u"SystemInformationFilter.xml";

// Contract: the text says that names are compared exactly and locators as patterns; matching does it the other way
// round.
String headerText() {
    return concat(
        u"\nThis inventory script was generated on ", DateTime::getCurrentDateTime().dateTimeStampString(),
        u"\n by Vireo 5 Inventory Testing Module.\n\n"
        u"This inventory script represents all of the system information on this system\n"
        u"at the time of generation if SystemInformationFilter.xml is not present.\n"
        u"If SystemInformationFilter.xml is present, this script only includes the system information specified in the "
        u"filter.\n"
        u"Some values may change with time.\n\n"
        u"device Elements:\n"
        u"type attributes are required, and will be matched as exact case-insensitive strings.\n"
        u"name attributes are optional, and will be matched as exact case-sensitive strings.\n"
        u"hwlocator attributes are optional, and will be matched as Regular Expressions.\n"
        u"oslocator attributes are optional, and will be matched as Regular Expressions.\n\n"
        u"type, hwlocator, and oslocator are matched on a device, then we match by properties\n\nproperty Elements:\n"
        u"key attributes are required, and will be matched as exact case-sensitive strings.\n"
        u"value can be an attribute or nested elements, these will be matched as Regular Expressions.\n\n"
        u"For production use, please delete all unimportant devices and properties.\n"
        u"Doing so will optimize the Inventory Test, and reduce the probability of incorrect Mis-Matches.\n");
}

/// Each unit reduced to its low byte, as the comment holds it.
String narrowed(const String& text) {
    String narrow;
    narrow.reserve(text.size());
    for (const char16_t unit : text.view()) {
        narrow.append(static_cast<char16_t>(unit & 0xFF));
    }
    return narrow;
}

StringView booleanText(bool value) { return value ? u"true" : u"false"; }

PropertyCategoryImp excludedCategories(bool includeAllCategories) {
    return includeAllCategories
               ? PropertyCategoryImp()
               : PropertyCategoryImp::Volatile() | PropertyCategoryImp::Internal() | PropertyCategoryImp::Group();
}

void addPropertyElement(const IPropertyImp& property, const boost::shared_ptr<IDeviceImp>& device,
                        XmlElement* deviceElement, const PropertyCategoryImp& excluded, SysinfoFilter* filter) {
    if (property.category().intersect(excluded)) {
        return;
    }
    XmlElement* const element = deviceElement->Document().NewElement(vocabulary::PROPERTY);
    element->SetAttribute(vocabulary::KEY, property.key());
    element->SetAttribute(vocabulary::TYPE, property.type().toString());
    linkPropertyValue(element, device, property, filter);
    deviceElement->LinkEndChild(element);
}

class DeviceElements {
public:
    DeviceElements(XmlElement* root, const StateManager& machine, const ScriptOptions& options, SysinfoFilter* filter)
        : m_root(root),
          m_machine(machine),
          m_options(options),
          m_filter(filter),
          m_excluded(excludedCategories(options.hasAllCategories)) {}

    /// A device tree may be deeper than the stack, so what is still to come is kept aside.
    void addTree(const boost::shared_ptr<IDeviceImp>& root) {
        VRX_ASSERT_TEXT(root, "d");
        Array<boost::shared_ptr<IDeviceImp>> pending{root};
        while (!pending.isEmpty()) {
            const boost::shared_ptr<IDeviceImp> device = std::move(pending.back());
            pending.truncate(pending.size() - 1);
            addDevice(device);
            const Array<boost::shared_ptr<IDeviceImp>> children = device->children();
            for (std::size_t i = children.size(); i-- > 0;) {
                pending.append(children[i]);
            }
        }
    }

private:
    void addDevice(const boost::shared_ptr<IDeviceImp>& device) {
        Array<boost::shared_ptr<IPropertyImp>> properties;
        if (m_filter != nullptr && !m_filter->includeDevice(*device, properties)) {
            return;
        }
        const SysinfoFilter::Checks checks =
            m_filter != nullptr ? m_filter->checks(device->type()) : SysinfoFilter::Checks();
        XmlElement* const element = m_root->Document().NewElement(vocabulary::DEVICE);
        element->SetAttribute(vocabulary::TYPE, device->type().toString(0, false));
        if (checks.names) {
            element->SetAttribute(vocabulary::NAME, exactValuePattern(device->name()));
        }
        addLocators(*element, *device, checks);
        if (m_filter == nullptr) {
            properties = device->properties(PropertyCategoryImp::ALL());
        }
        for (const auto& property : properties) {
            addPropertyElement(*property, device, element, m_excluded, m_filter);
        }
        m_root->LinkEndChild(element);
    }

    void addLocators(XmlElement& element, const IDeviceImp& device, const SysinfoFilter::Checks& checks) const {
        const auto isWritten = [this](const String& locator) {
            return !m_options.isWellFormed || canBeWritten(locator);
        };
        if (checks.hwLocators && isWritten(device.hwLocator())) {
            element.SetAttribute(vocabulary::HW_LOCATOR, toXmlSafe(device.hwLocator()));
        }
        if (checks.osLocators && isWritten(device.osLocator()) &&
            !(checks.hwLocators && isKnownWithoutKernelName(device))) {
            element.SetAttribute(vocabulary::OS_LOCATOR, toXmlSafe(device.osLocator()));
        }
    }

    /// Whether the OS locator is a name that the kernel gave, and no other device that the element might get is there.
    bool isKnownWithoutKernelName(const IDeviceImp& device) const {
        if (!m_options.leavesOutKernelNames || !m_options.checksHwLocators || !m_options.checksOsLocators ||
            !isKernelName(device.osLocator()) || !isPlace(device.hwLocator()) ||
            (m_options.isWellFormed && !canBeWritten(device.hwLocator()))) {
            return false;
        }
        const auto& there = m_machine.devicesByHwLocator(device.hwLocator());
        return std::ranges::none_of(there, [&device](const auto& other) {
            return other.get() != &device && device.type().isCapable(other->type());
        });
    }

    XmlElement* m_root;
    const StateManager& m_machine;
    const ScriptOptions& m_options;
    SysinfoFilter* m_filter;
    PropertyCategoryImp m_excluded;
};

/// Writes what the encoded text holds so that it stays well-formed: a per cent sign as itself, what XML has no room for
/// as patterns write it. Names and values are patterns; nothing else has such characters.
String withPatternEscapes(StringView encoded) {
    constexpr std::size_t ESCAPE = 6;
    String text;
    text.reserve(encoded.size());
    std::size_t copied = 0;
    for (std::size_t at = encoded.find(u'%'); at != StringView::npos; at = encoded.find(u'%', at + 1)) {
        const StringView escape = encoded.substr(at, ESCAPE);
        const String unit = fromXmlSafe(escape);
        if (unit.size() != 1 || (unit != u"%" && canBeWritten(unit))) {
            continue;
        }
        text.append(encoded.substr(copied, at - copied));
        text.append(unit == u"%" ? unit : concat(u"\\x{", escape.substr(2), u"}"));
        copied = at + ESCAPE;
    }
    text.append(encoded.substr(copied));
    return text;
}

}  // namespace

bool canBeWritten(StringView locator) noexcept {
    for (std::size_t i = 0; i < locator.size(); ++i) {
        if (!isXmlRepresentable(locator, i)) {
            return false;
        }
    }
    return true;
}

String generatedScript(const StateManager& machine, const ScriptOptions& options) {
    XmlDocument document;
    XmlElement* const root = document.NewElement(vocabulary::INVENTORY_CHECK);
    root->SetAttribute(vocabulary::CHECK_NAMES, booleanText(options.checksNames));
    root->SetAttribute(vocabulary::CHECK_HW_LOCATORS, booleanText(options.checksHwLocators));
    root->SetAttribute(vocabulary::CHECK_OS_LOCATORS, booleanText(options.checksOsLocators));
    root->LinkEndChild(document.NewComment(options.filter == nullptr ? narrowed(headerText()) : String::EMPTY));

    if (const boost::shared_ptr<IDeviceImp> rootDevice = machine.rootDevice()) {
        SysinfoFilter defaultFilter(options.filterLanguage);
        SysinfoFilter* chosen = options.filter;
        if (chosen == nullptr) {
            const SysinfoFilter::PARSE_RET result = defaultFilter.loadFile(DEFAULT_FILTER_FILE);
            if (result == SysinfoFilter::PARSE_SUCCESS) {
                chosen = &defaultFilter;
            } else {
                VRX_LOG(inventoryLog(), LogPriority::Warning,
                        u"generateInventoryScript(): SysinfoFilter failed loading defaultFilter file: "
                            << DEFAULT_FILTER_FILE << u" result = " << static_cast<int>(result));
            }
        }
        DeviceElements(root, machine, options, chosen).addTree(rootDevice);
    }
    document.LinkEndChild(root);
    String script;
    document.GetFormattedStr(script, 0);
    if (!needsUuDecode(script)) {
        return script;
    }
    return options.isWellFormed ? withPatternEscapes(script) : fromXmlSafe(script);
}

void Inventory::generateInventoryScript(String& script, bool includeAllCategories, bool checkLocators, bool checkNames,
                                        SysinfoFilter* filter) {
    ScriptOptions options;
    options.hasAllCategories = includeAllCategories;
    options.checksNames = checkNames;
    options.checksHwLocators = checkLocators;
    options.checksOsLocators = checkLocators;
    options.filter = filter;
    script = generatedScript(stateManager(), options);
}

}  // namespace vrx
