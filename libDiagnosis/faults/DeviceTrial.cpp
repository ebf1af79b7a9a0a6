/// The engine tries the content, as in a check of that one device. What it finds there speaks of elements of another
/// document; the elements of both are counted in document order, so that each finding gets its place in the script that
/// asks.

#include "libDiagnosis/faults/DeviceTrial.h"

#include <algorithm>
#include <utility>

#include "libCommon/text/UuCode.h"
#include "libDiagnosis/Candidates.h"
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

std::vector<Difference> differencesBy(const Array<Finding>& failures, const IDeviceImp& device) {
    std::vector<Difference> differences;
    const Finding* before = nullptr;
    for (const Finding& failure : failures) {
        if (std::optional<Difference> difference = differenceOf(failure)) {
            difference->isAlternative = before != nullptr && isAlternativeTo(failure, *before);
            differences.push_back(std::move(*difference));
        } else if (failure.kind == FindingKind::UnsatisfiedNot) {
            for (ScriptWalk walk(*failure.element); walk; ++walk) {
                if (walk->kind == ElementKind::Property) {
                    differences.push_back(forbidden(*walk->element, device));
                }
            }
        }
        before = &failure;
    }
    return differences;
}

}  // namespace

std::vector<Difference> differencesOf(const Candidate& candidate) {
    return differencesBy(candidate.failures, *candidate.device);
}

DeviceTrial::DeviceTrial(const WantedDevice& asked, String content)
    : m_type(asked.type), m_typeText(asked.spec.type), m_name(asked.spec.name), m_content(std::move(content)) {}

bool DeviceTrial::isMetBy(const IDeviceImp& device) const {
    return m_type.isCapable(device.type()) && hasName(device, m_name) && m_content.isMetBy(device);
}

std::vector<Difference> DeviceTrial::differencesOf(const XmlElement& element, const IDeviceImp& device) const {
    std::vector<Difference> differences;
    const ElementPlace place = placeIn(element);
    if (!m_type.isCapable(device.type())) {
        differences.push_back({.what = Difference::What::Type,
                               .place = place,
                               .expected = {m_typeText},
                               .found = device.type().toString()});
    }
    if (!hasName(device, m_name)) {
        differences.push_back(
            {.what = Difference::What::Name, .place = place, .expected = {m_name}, .found = device.name()});
    }
    addContentDifferences(element, device, differences);
    return differences;
}

void DeviceTrial::addContentDifferences(const XmlElement& element, const IDeviceImp& device,
                                        std::vector<Difference>& differences) const {
    const Array<Finding> failures = m_content.failuresOf(device);
    if (failures.isEmpty()) {
        return;
    }
    const std::vector<const XmlElement*> there = contentElements(*m_content.element());
    const std::vector<const XmlElement*> here = contentElements(element);
    for (Difference& difference : differencesBy(failures, device)) {
        const auto at = std::ranges::find(there, difference.place, [](const XmlElement* one) { return placeIn(*one); });
        const auto index = static_cast<std::size_t>(at - there.begin());
        difference.place = index < here.size() ? placeIn(*here[index]) : placeIn(element);
        differences.push_back(std::move(difference));
    }
}

}  // namespace vrx
