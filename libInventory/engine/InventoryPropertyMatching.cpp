/// Whether one candidate device satisfies the content of a `device` element: `property` tests combined by `and`, `or`
/// and `not`.
///
/// A failed test leaves tips on its `property` element. Failures that were to be expected (a failed alternative of a
/// satisfied `or`, the content of a satisfied `not`) must not be reported, so the visibility of the whole subtree is
/// flipped there. It is flipped and not cleared: a failed alternative inside a satisfied `not` is flipped twice and
/// shows again.

#include <vector>

#include "libCommon/text/UuCode.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/PropertyExpectation.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

using vocabulary::ElementKind;

bool Inventory::matchDeviceRecursive(XmlElement* element, XmlElement* deviceElement,
                                     const boost::shared_ptr<IDeviceImp>& device, bool underNot, bool report) {
    if (element == nullptr) {
        return false;
    }
    bool status = true;
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Property: status = matchPropertyElement(element, deviceElement, device, report); break;
        case ElementKind::And: status = matchAnd(element, deviceElement, device, underNot, report); break;
        case ElementKind::Or: status = matchOr(element, deviceElement, device, underNot, report); break;
        case ElementKind::Not: status = matchNot(element, deviceElement, device, underNot, report); break;
        default:
            if (report) {
                reportUnknownElement(*element);
            }
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchDeviceRecursive() - " << locationOf(element) << element->Name() << u" status = " << status);
    return status;
}

bool Inventory::matchOr(XmlElement* element, XmlElement* deviceElement, const boost::shared_ptr<IDeviceImp>& device,
                        bool underNot, bool report) {
    for (XmlElement* const child : childElements(element)) {
        if (!matchDeviceRecursive(child, deviceElement, device, underNot, report)) {
            continue;
        }
        for (XmlElement* const failed : childElements(element)) {
            if (failed == child) {
                break;
            }
            flipErrorsVisible(failed);
        }
        return true;
    }
    return false;
}

bool Inventory::matchAnd(XmlElement* element, XmlElement* deviceElement, const boost::shared_ptr<IDeviceImp>& device,
                         bool underNot, bool report) {
    bool all = true;
    for (XmlElement* const child : childElements(element)) {
        all = matchDeviceRecursive(child, deviceElement, device, underNot, report) && all;
    }
    return all;
}

bool Inventory::matchNot(XmlElement* element, XmlElement* deviceElement, const boost::shared_ptr<IDeviceImp>& device,
                         bool underNot, bool report) {
    if (underNot && report) {
        reportNotUnderNot(*element);
    }
    const bool holds = !matchAnd(element, deviceElement, device, true, report);
    if (holds) {
        flipErrorsVisible(element);
    }
    return holds;
}

void Inventory::flipErrorsVisible(XmlElement* element) {
    ElementContext& context = m_state->contextOf(element);
    context.m_errorsVisible = !context.m_errorsVisible;
    for (XmlElement* const child : childElements(element)) {
        flipErrorsVisible(child);
    }
}

bool Inventory::matchPropertyElement(XmlElement* element, XmlElement* deviceElement,
                                     const boost::shared_ptr<IDeviceImp>& device, bool report) {
    if (!device) {
        if (report) {
            appendTip(element,
                      InventoryTip(u"<property> must be a child of <device>", m_state->m_scriptFileName, element,
                                   String::EMPTY, String::EMPTY),
                      slot::MATCHING);
        }
        return false;
    }
    const PropertyExpectation expectation(*element);
    const IPropertyImp* const property = device->findProperty(expectation.key());
    if (property == nullptr) {
        appendPropertyFailure(element, static_cast<std::uint8_t>(FiledTips::Kind::MissingKey), device);
        return false;
    }
    if (expectation.asksForPresenceOnly()) {
        return true;
    }
    const bool matched = expectation.entries().isEmpty()
                             ? matchProperty(*property, expectation.value(), expectation.units())
                             : matchProperty(*property, expectation.entries(), expectation.units());
    if (!matched) {
        appendPropertyFailure(element, static_cast<std::uint8_t>(FiledTips::Kind::Mismatch), device);
    } else if (m_state->m_tipMatchedProperties) {
        tipMatchedProperty(element, deviceElement, *device, *property);
    }
    return matched;
}

// The tips are gathered at once, which takes the element's context away: later gathering passes the element by.
void Inventory::tipMatchedProperty(XmlElement* element, XmlElement* deviceElement, const IDeviceImp& device,
                                   const IPropertyImp& property) {
    const String& file = m_state->m_scriptFileName;
    appendPropertyTip(deviceElement, element,
                      concat(device.hwLocator(), u" - ", element->Attribute(vocabulary::KEY), u"\n"), file,
                      slot::MATCHING);
    appendPropertyTip(deviceElement, element, u"Found value: " + property.value().toString(true), file, slot::MATCHING);
    gatherErrorsAndCleanUserData(element, slot::MATCHING);
}

bool Inventory::matchProperty(const IPropertyImp& property, StringView expected, StringView) {
    String made;
    const String* actual = property.value().text();
    if (actual == nullptr) {
        made = property.value().toString(true);
        actual = &made;
    }
    const bool matched = matchString(expected, *actual);
    if (!matched) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchProperty() key = " << property.key() << u" not matched value = " << *actual << u" inventory = "
                                          << expected);
    }
    return matched;
}

namespace {

/// The device's values of which each may satisfy one expected entry. Entries that were taken are marked; those at the
/// front are passed over for good, so that equal lists in equal order are matched in linear time.
class RemainingValues {
public:
    explicit RemainingValues(const ValueImp& value) {
        if (const String* const text = value.text()) {
            m_values.append(text->view());
        } else {
            m_texts = value.toStringArray(false);
            m_values.reserve(m_texts.size());
            for (const String& entry : m_texts) {
                m_values.append(entry.view());
            }
        }
        m_taken.assign(m_values.size(), false);
    }

    std::size_t size() const noexcept { return m_values.size(); }

    /// Takes the first remaining value that the pattern accepts; false when there is none.
    bool takeFirstMatch(StringView pattern) {
        for (std::size_t i = m_first; i < m_values.size(); ++i) {
            if (!m_taken[i] && Inventory::matchString(pattern, m_values[i])) {
                m_taken[i] = true;
                while (m_first < m_taken.size() && m_taken[m_first]) {
                    ++m_first;
                }
                return true;
            }
        }
        return false;
    }

private:
    Array<String> m_texts;
    Array<StringView> m_values;
    std::vector<bool> m_taken;
    std::size_t m_first = 0;
};

}  // namespace

bool Inventory::matchProperty(const IPropertyImp& property, const Array<StringView>& expected, StringView) {
    const String* const onlyText = property.value().text();
    if (onlyText != nullptr && expected.size() == 1 && !inventoryLog().isEnabled(LogPriority::Debug)) {
        return matchString(expected[0], *onlyText);
    }
    RemainingValues remaining(property.value());
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchProperty(arr) key = " << property.key() << u" syssize = " << remaining.size() << u" invsize = "
                                         << expected.size());
    if (remaining.size() != expected.size()) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"matchProperty(arr) size mismatch key = " << property.key());
        return false;
    }
    // Contract: greedy in the order of the expected entries, without backtracking.
    for (const StringView entry : expected) {
        if (!remaining.takeFirstMatch(entry)) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"matchProperty(arr) no matching value for key = " << property.key());
            return false;
        }
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"matchProperty(arr) matched key = " << property.key());
    return true;
}

}  // namespace vrx
