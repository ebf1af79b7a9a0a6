/// The content is tried by the engine, in a check of that one device. What it finds there speaks of elements of another
/// script; the elements of both are counted in document order, so that each finding gets its place in the script that
/// asks.

#include "libDiagnosis/faults/DeviceTrial.h"

#include <algorithm>

#include "libCommon/text/UuCode.h"
#include "libDiagnosis/Candidates.h"
#include "libDiagnosis/faults/AskedDevice.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libRegex/Regex.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

bool isContent(ElementKind kind) noexcept {
    return kind == ElementKind::Property || kind == ElementKind::And || kind == ElementKind::Or ||
           kind == ElementKind::Not;
}

std::vector<const XmlElement*> contentElements(const XmlElement& device) {
    std::vector<const XmlElement*> elements;
    for (ScriptWalk walk(device); walk; ++walk) {
        if (isContent(walk->kind)) {
            elements.push_back(walk->element);
        }
    }
    return elements;
}

bool hasName(const IDeviceImp& device, const String& pattern) {
    return pattern.isEmpty() || Inventory::matchString(pattern, device.name());
}

/// A property that is there and must not be.
Difference forbidden(const XmlElement& property, const IDeviceImp& device) {
    Difference difference{.place = placeIn(property),
                          .key = fromXmlSafe(attributeOf(property, vocabulary::KEY)),
                          .expected = askedValues(property),
                          .isForbidden = true};
    if (const IPropertyImp* const found = device.findProperty(difference.key)) {
        difference.found = found->value().toString(true);
    }
    return difference;
}

bool isAlternativeTo(const Finding& failure, const Finding& before) {
    const XmlContainer* const parent = failure.element->Parent();
    const XmlElement* const group = parent == nullptr ? nullptr : parent->ToElement();
    return failure.key == before.key && before.element->Parent() == parent && group != nullptr &&
           vocabulary::kindOf(*group) == ElementKind::Or;
}

}  // namespace

std::vector<Difference> differencesOf(const Candidate& candidate) {
    std::vector<Difference> differences;
    const Finding* before = nullptr;
    for (const Finding& failure : candidate.failures) {
        if (std::optional<Difference> difference = differenceOf(failure)) {
            difference->isAlternative = before != nullptr && isAlternativeTo(failure, *before);
            differences.push_back(std::move(*difference));
        } else if (failure.kind == FindingKind::UnsatisfiedNot) {
            for (ScriptWalk walk(*failure.element); walk; ++walk) {
                if (walk->kind == ElementKind::Property) {
                    differences.push_back(forbidden(*walk->element, *candidate.device));
                }
            }
        }
        before = &failure;
    }
    return differences;
}

DeviceTrial::DeviceTrial(const XmlElement& element)
    : m_element(element),
      m_type(attributeOf(element, vocabulary::TYPE)),
      m_name(askedFor(element, vocabulary::NAME)),
      m_content(contentOfDevice(element)) {}

bool DeviceTrial::isMetBy(const IDeviceImp& device) const {
    return m_type.isCapable(device.type()) && hasName(device, m_name) && m_content.isMetBy(device);
}

std::vector<Difference> DeviceTrial::differencesOf(const IDeviceImp& device) const {
    std::vector<Difference> differences;
    const ElementPlace place = placeIn(m_element);
    if (!m_type.isCapable(device.type())) {
        const String type = attributeOf(m_element, vocabulary::TYPE);
        differences.push_back(
            {.what = Difference::What::Type, .place = place, .expected = {type}, .found = device.type().toString()});
    }
    if (!hasName(device, m_name)) {
        differences.push_back(
            {.what = Difference::What::Name, .place = place, .expected = {m_name}, .found = device.name()});
    }
    if (Inventory::canCheckDevice(device)) {
        addContentDifferences(device, differences);
    }
    return differences;
}

void DeviceTrial::addContentDifferences(const IDeviceImp& device, std::vector<Difference>& differences) const {
    Inventory engine;
    if (Inventory::checkDevice(device, m_content.text(), nullptr, false, engine) ||
        engine.script().RootElement() == nullptr) {
        return;
    }
    const XmlElement& tried = *engine.script().RootElement()->FirstChildElement();
    const DeviceOutcome outcome = engine.outcomeOf(tried);
    if (outcome.candidates.isEmpty()) {
        return;
    }
    const std::vector<const XmlElement*> there = contentElements(tried);
    const std::vector<const XmlElement*> here = contentElements(m_element);
    for (Difference& difference : vrx::differencesOf(outcome.candidates[0])) {
        const auto at = std::ranges::find(there, difference.place, [](const XmlElement* one) { return placeIn(*one); });
        const auto index = static_cast<std::size_t>(at - there.begin());
        difference.place = index < here.size() ? placeIn(*here[index]) : placeIn(m_element);
        differences.push_back(std::move(difference));
    }
}

}  // namespace vrx
