#include "libSystemState/filter/SysinfoFilter.h"

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "libCommon/containers/HashTable.h"
#include "libCommon/io/FileLoader.h"
#include "libCommon/text/NumberText.h"
#include "libCommon/xml/XmlDocument.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"

/// The filter file is a list of rules, one a `device` element; its `property` children name keys and tolerances:
///
///     <system-information-filter>
///         <device type="Processor"><property key="Clock" tolerance="1.5"/><property key="Model"/></device>
///         <device type="Storage"/>
///     </system-information-filter>
///
/// Loading turns it into Rules, checking types and tolerances as it goes; the first mistake ends it and leaves no
/// rules. Elements and attributes of other names are ignored. For a device the first rule whose type its own satisfies
/// decides; which rule that is depends on the type alone, so it is remembered by type.
///
/// In the extended language an `all-but` becomes rules too: one for each `device` in it, which leaves out the device or
/// some of its properties, and behind them one that fits all devices.

namespace vrx {

namespace {

struct KeyPlace {
    String key;
    std::uint32_t row = 0;
    std::uint32_t column = 0;
};

struct Rule {
    CapabilityImp type;
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    Array<KeyPlace> keys;
    HashTable<String, std::optional<double>> tolerances;  ///< by selected key; no keys: every property is selected
    HashTable<String, bool> leftOut;                      ///< keys; any of them: every other property is selected
    bool leavesOutDevice = false;
    bool fitsAll = false;
    SysinfoFilter::Checks checks{};

    bool fits(const CapabilityImp& device) const { return fitsAll || type.isCapable(device); }
};

/// Why and where (1-based; 0 for nowhere) a load failed.
struct Mistake {
    SysinfoFilter::PARSE_RET code = SysinfoFilter::PARSE_SUCCESS;
    String reason;
    std::uint32_t row = 0;
    std::uint32_t column = 0;
};

Mistake mistakeAt(const XmlElement& element, SysinfoFilter::PARSE_RET code, StringView text, StringView value) {
    return {code, concat(text, u" \"", value, u"\""), element.Row() + 1, element.Column() + 1};
}

std::optional<Mistake> readProperty(const XmlElement& element, Rule& rule) {
    std::optional<double> tolerance;
    if (const XmlAttribute* attribute = element.FindAttribute(u"tolerance")) {
        tolerance = parseReal(trimmed(attribute->Value()));
        if (!tolerance) {
            return mistakeAt(element, SysinfoFilter::PARSE_BAD_TOLERANCE, u"tolerance is not a number:",
                             attribute->Value());
        }
    }
    rule.tolerances.insert(String(element.Attribute(u"key")), tolerance);
    rule.keys.append({String(element.Attribute(u"key")), element.Row() + 1, element.Column() + 1});
    return std::nullopt;
}

std::optional<Mistake> readType(const XmlElement& element, Rule& rule) {
    rule.type = CapabilityImp(element.Attribute(u"type"));
    rule.row = element.Row() + 1;
    rule.column = element.Column() + 1;
    if (rule.type.isInvalid()) {
        return mistakeAt(element, SysinfoFilter::PARSE_UNKNOWN_TYPE, u"unknown device type:",
                         element.Attribute(u"type"));
    }
    return std::nullopt;
}

template <typename Read>
std::optional<Mistake> readEach(const XmlElement& parent, StringView name, const Read& read) {
    for (const XmlElement* child = parent.FirstChildElement(name); child != nullptr;
         child = child->NextSiblingElement(name)) {
        if (std::optional<Mistake> mistake = read(*child)) {
            return mistake;
        }
    }
    return std::nullopt;
}

void readLeftOut(const XmlElement& parent, Rule& rule) {
    for (const XmlElement* child = parent.FirstChildElement(u"property"); child != nullptr;
         child = child->NextSiblingElement(u"property")) {
        rule.leftOut.insert(String(child->Attribute(u"key")), true);
        rule.keys.append({String(child->Attribute(u"key")), child->Row() + 1, child->Column() + 1});
    }
}

std::optional<Mistake> readSwitch(const XmlElement& element, StringView name, bool& isOn) {
    const XmlAttribute* const attribute = element.FindAttribute(name);
    if (attribute == nullptr) {
        return std::nullopt;
    }
    const String text(attribute->Value());
    isOn = text.strToBoolean();
    const bool isOff =
        text.equalNoCase(u"false") || text == u"0" || text.equalNoCase(u"no") || text.equalNoCase(u"off");
    return isOn || isOff ? std::nullopt
                         : std::optional(mistakeAt(element, SysinfoFilter::PARSE_BAD_SWITCH,
                                                   concat(name, u" is neither true nor false:"), text));
}

std::optional<Mistake> readExtensions(const XmlElement& element, Rule& rule) {
    for (const auto& [name, isOn] : {std::pair(StringView(u"check-names"), &rule.checks.names),
                                     std::pair(StringView(u"check-hwLocators"), &rule.checks.hwLocators),
                                     std::pair(StringView(u"check-osLocators"), &rule.checks.osLocators)}) {
        if (std::optional<Mistake> mistake = readSwitch(element, name, *isOn)) {
            return mistake;
        }
    }
    return readEach(element, u"all-but", [&rule](const XmlElement& child) -> std::optional<Mistake> {
        readLeftOut(child, rule);
        return std::nullopt;
    });
}

std::optional<Mistake> readRule(const XmlElement& element, SysinfoFilter::Language language, Rule& rule) {
    std::optional<Mistake> mistake = readType(element, rule);
    if (!mistake && language == SysinfoFilter::Language::Extended) {
        mistake = readExtensions(element, rule);
    }
    return mistake
               ? mistake
               : readEach(element, u"property", [&rule](const XmlElement& child) { return readProperty(child, rule); });
}

/// Everything but what stands in the element.
std::optional<Mistake> readAllBut(const XmlElement& element, Array<Rule>& rules) {
    std::optional<Mistake> mistake = readEach(element, u"device", [&rules](const XmlElement& child) {
        Rule& rule = rules.emplace();
        readLeftOut(child, rule);
        rule.leavesOutDevice = rule.keys.isEmpty();
        return readType(child, rule);
    });
    rules.emplace().fitsAll = true;
    return mistake;
}

std::optional<Mistake> readDocument(std::string_view bytes, XmlDocument& document) {
    if (!document.ParseUtf8(bytes)) {
        return Mistake{SysinfoFilter::PARSE_XML_ERROR, document.ErrorDesc(), document.ErrorRow() + 1,
                       document.ErrorColumn() + 1};
    }
    const XmlElement& root = *document.RootElement();
    if (root.Name() != u"system-information-filter") {
        return mistakeAt(root, SysinfoFilter::PARSE_WRONG_ROOT, u"root element is not system-information-filter:",
                         root.Name());
    }
    return std::nullopt;
}

std::optional<Mistake> readRules(std::string_view bytes, SysinfoFilter::Language language, Array<Rule>& rules) {
    XmlDocument document;
    if (std::optional<Mistake> mistake = readDocument(bytes, document)) {
        return mistake;
    }
    const bool isExtended = language == SysinfoFilter::Language::Extended;
    for (const XmlElement* child = document.RootElement()->FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
        std::optional<Mistake> mistake;
        if (child->Name() == u"device") {
            mistake = readRule(*child, language, rules.emplace());
        } else if (isExtended && child->Name() == u"all-but") {
            mistake = readAllBut(*child, rules);
        }
        if (mistake) {
            return mistake;
        }
    }
    return std::nullopt;
}

}  // namespace

struct SysinfoFilter::Rules {
    Array<Rule> rules;
    Mistake mistake;
    String errorText;                                               ///< the mistake in words
    boost::unordered_flat_map<std::uint16_t, const Rule*> decided;  ///< by node of the device's type; null: no rule

    const Rule* firstFor(const CapabilityImp& type) const {
        for (const Rule& rule : rules) {
            if (rule.fits(type)) {
                return &rule;
            }
        }
        return nullptr;
    }

    /// The rule that decides for devices of that type; null when there is none.
    const Rule* decisiveFor(const CapabilityImp& type) {
        if (type.node() == 0) {
            return firstFor(type);
        }
        const auto [at, isNew] = decided.try_emplace(type.node(), nullptr);
        if (isNew) {
            at->second = firstFor(type);
        }
        return at->second;
    }
};

SysinfoFilter::SysinfoFilter(Language language) : m_language(language), m_rules(std::make_unique<Rules>()) {}

SysinfoFilter::~SysinfoFilter() = default;

const String& SysinfoFilter::errorText() const noexcept { return m_rules->errorText; }
const String& SysinfoFilter::errorReason() const noexcept { return m_rules->mistake.reason; }
std::uint32_t SysinfoFilter::errorRow() const noexcept { return m_rules->mistake.row; }
std::uint32_t SysinfoFilter::errorColumn() const noexcept { return m_rules->mistake.column; }

SysinfoFilter::PARSE_RET SysinfoFilter::loadFile(const String& path) {
    std::string bytes;
    String error;
    if (vrx::loadFile(path, bytes, error)) {
        return load(bytes);
    }
    m_rules = std::make_unique<Rules>();
    m_rules->mistake = Mistake{PARSE_UNREADABLE, error, 0, 0};
    m_rules->errorText = error;
    return PARSE_UNREADABLE;
}

SysinfoFilter::PARSE_RET SysinfoFilter::load(std::string_view bytes) {
    m_rules = std::make_unique<Rules>();
    if (std::optional<Mistake> mistake = readRules(bytes, m_language, m_rules->rules)) {
        m_rules->rules.clear();
        m_rules->errorText = concat(mistake->reason, u" (", toText(mistake->row), u":", toText(mistake->column), u")");
        m_rules->mistake = std::move(*mistake);
    }
    return m_rules->mistake.code;
}

bool SysinfoFilter::includeDevice(const IDeviceImp& device, Array<boost::shared_ptr<IPropertyImp>>& properties) const {
    const Rule* rule = m_rules->decisiveFor(device.type());
    if (rule == nullptr || rule->leavesOutDevice) {
        return false;
    }
    Array<boost::shared_ptr<IPropertyImp>> all = device.properties(PropertyCategoryImp::ALL());
    const bool isAllBut = !rule->leftOut.isEmpty();
    if (rule->tolerances.isEmpty() && !isAllBut) {
        properties = std::move(all);
        return true;
    }
    properties.clear();
    for (const boost::shared_ptr<IPropertyImp>& property : all) {
        if (isAllBut ? !rule->leftOut.contains(property->key()) : rule->tolerances.contains(property->key())) {
            properties.append(property);
        }
    }
    return true;
}

Array<SysinfoFilter::Idle> SysinfoFilter::idle(const Array<boost::shared_ptr<IDeviceImp>>& devices,
                                               const PropertyCategoryImp& categories) const {
    boost::unordered_flat_map<const Rule*, HashTable<String, bool>> found;
    for (const boost::shared_ptr<IDeviceImp>& device : devices) {
        if (const Rule* const rule = m_rules->decisiveFor(device->type())) {
            HashTable<String, bool>& keys = found[rule];
            for (const boost::shared_ptr<IPropertyImp>& property : device->properties(categories)) {
                keys.insert(property->key(), true);
            }
        }
    }
    Array<Idle> idle;
    for (const Rule& rule : m_rules->rules) {
        if (rule.fitsAll) {
            continue;
        }
        const auto used = found.find(&rule);
        if (used == found.end()) {
            idle.append({rule.type, String(), rule.row, rule.column});
            continue;
        }
        for (const KeyPlace& place : rule.keys) {
            if (!used->second.contains(place.key)) {
                idle.append({rule.type, place.key, place.row, place.column});
            }
        }
    }
    return idle;
}

SysinfoFilter::Checks SysinfoFilter::checks(const CapabilityImp& type) const {
    const Rule* const rule = m_rules->decisiveFor(type);
    return rule != nullptr ? rule->checks : Checks();
}

bool SysinfoFilter::inventoryTolerance(const CapabilityImp& type, const String& key, double& tolerancePercent) const {
    const Rule* rule = m_rules->decisiveFor(type);
    const std::optional<double>* tolerance = rule ? rule->tolerances.find(key) : nullptr;
    if (tolerance == nullptr || !tolerance->has_value()) {
        return false;
    }
    tolerancePercent = **tolerance;
    return true;
}

}  // namespace vrx
