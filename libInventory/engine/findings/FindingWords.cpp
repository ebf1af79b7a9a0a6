#include "libInventory/engine/findings/FindingWords.h"

#include <utility>

#include "libInventory/engine/matching/DeviceAttributes.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/results/InventoryTip.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

constexpr StringView SEE_DOCUMENTATION = u" Please refer to Valid Device Types in Documentation";

/// A message without detail is its tip's text.
String tip(String message, StringView detail = StringView()) {
    return detail.empty()
               ? std::move(message)
               : InventoryTip(std::move(message), String::EMPTY, nullptr, detail, String::EMPTY).toString(0, false);
}

String noDeviceWith(const XmlElement& element, StringView word, const String& attribute) {
    return concat(u"No device of type: ", typeTextOf(element), u" with ", word, u": ", element.Attribute(attribute));
}

String extraDevice(const IDeviceImp& device) {
    return concat(u"Found Extra Device: ", device.type().toString(0, false), u" - ", device.name());
}

}  // namespace

void FindingWords::append(const FiledFindings::Entry& entry, Array<String>& texts) {
    const XmlElement& element = m_element;
    switch (entry.kind) {
        case FindingKind::InvalidDeviceType:
            texts.append(tip(concat(u"Invalid device type: ", typeTextOf(element), SEE_DOCUMENTATION)));
            break;
        case FindingKind::NoDeviceOfType: texts.append(tip(concat(u"No device of type: ", typeTextOf(element)))); break;
        case FindingKind::NoDeviceWithName:
            texts.append(tip(noDeviceWith(element, u"name", entry.textOrEmpty())));
            break;
        case FindingKind::NoDeviceWithOsLocator:
            texts.append(tip(noDeviceWith(element, u"oslocator", entry.textOrEmpty())));
            break;
        case FindingKind::NoDeviceWithHwLocator:
            texts.append(tip(noDeviceWith(element, u"hwlocator", entry.textOrEmpty())));
            break;
        case FindingKind::InvalidAttribute: texts.append(tip(u"Invalid attribute " + entry.textOrEmpty())); break;
        case FindingKind::NoAvailableDevice:
            texts.append(tip(concat(u"No available device of type: ", typeTextOf(element))));
            break;
        case FindingKind::PropertyOutsideDevice: texts.append(tip(u"<property> must be a child of <device>")); break;
        case FindingKind::PropertyMissing:
            texts.append(concat(u"property key: ", element.Attribute(vocabulary::KEY), u" not found in Sysinfo ",
                                entry.device->type().toString(0, false), u" device: ", entry.device->name()));
            break;
        case FindingKind::PropertyMismatch: appendMismatch(entry, texts); break;
        case FindingKind::PropertyMatched:
            texts.append(concat(entry.device->hwLocator(), u" - ", element.Attribute(vocabulary::KEY), u"\n"));
            texts.append(u"Found value: " + entry.textOrEmpty());
            break;
        case FindingKind::ExtraDevice: texts.append(tip(extraDevice(*entry.device))); break;
        case FindingKind::UnexpectedException:
            texts.append(tip(u"Inventory Unexpected Error: " + entry.textOrEmpty()));
            break;
        case FindingKind::InvalidExtraRule:
            texts.append(tip(concat(u"Invalid device type: ", element.Attribute(vocabulary::TYPE),
                                    u" and Invalid device capability: ", element.Attribute(vocabulary::CAPABILITY),
                                    SEE_DOCUMENTATION)));
            break;
        case FindingKind::NestedPart: texts.append(tip(u"Nested <part> nodes are not supported")); break;
        case FindingKind::UnsatisfiedDevice:
        case FindingKind::UnsatisfiedPart:
        case FindingKind::UnsatisfiedAnd:
        case FindingKind::UnsatisfiedOr:
        case FindingKind::UnsatisfiedNot:
        case FindingKind::UnsatisfiedOther:
        case FindingKind::UnknownElement:
        case FindingKind::NotUnderNot: break;  // never filed with an element's findings
    }
}

void FindingWords::appendMismatch(const FiledFindings::Entry& entry, Array<String>& texts) {
    const PropertyExpectation& asked = expectation(entry.expectedEntries);
    texts.append(concat(entry.device->hwLocator(), u" - ", asked.key()));
    texts.append(u" Expected (regular expression): " + asked.quoted());
    texts.append(u" did not match sysinfo value  : " + foundBy(entry, asked.key()));
}

String FindingWords::foundBy(const FiledFindings::Entry& entry, StringView key) const {
    if (entry.text) {
        return *entry.text;
    }
    const IPropertyImp* const property =
        entry.kind == FindingKind::PropertyMismatch ? entry.device->findProperty(key) : nullptr;
    if (property == nullptr) {
        return String();
    }
    return m_moment != nullptr ? m_moment->textOf(*property) : property->value().toString(true);
}

const PropertyExpectation& FindingWords::expectation(std::size_t children) {
    if (!m_expectation || m_children != children) {
        m_expectation.emplace(m_element, children);
        m_children = children;
    }
    return *m_expectation;
}

String FindingWords::ofUnsatisfied() const {
    const StringView name = m_element.Name();
    switch (vocabulary::kindOf(m_element)) {
        case ElementKind::Part:
            return tip(concat(u"unsatisfied ", name, u" node"), m_element.Attribute(vocabulary::NAME));
        case ElementKind::And:
        case ElementKind::Or: return tip(concat(u"unsatisfied ", name, u" node"));
        case ElementKind::Not: return tip(u"matched device under not node");
        case ElementKind::Device:
            return tip(concat(u"Unsatisfied device of type: ", m_element.Attribute(vocabulary::TYPE)));
        default: return String();
    }
}

}  // namespace vrx
