/// A property is compared with its `value` attribute or, when it has children of any name, with their `value`
/// attributes, one for each entry, and then not with its own. Its units are not compared at all.

#include "libLint/rules/PropertyRules.h"

#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"
#include "libLint/rules/AttributeRules.h"
#include "libLint/rules/PatternRules.h"

namespace vrx {

namespace {

void checkEntryElement(const XmlElement& entry, LintFindings& findings) {
    const LintKind kind = lintKindOf(entry);
    if (kind != LintKind::Value && kind != LintKind::Unknown) {
        findings.add(LintRule::ElementAsValue, entry,
                     fmt::format("inside a <property>, {} counts as one more entry of the value; write <value>, or "
                                 "close the <property> before it",
                                 tagOf(entry)));
        return;
    }
    checkAttributesAndText(entry, LintKind::Value, findings);
    if (const XmlElement* const inner = entry.FirstChildElement()) {
        findings.add(LintRule::MisplacedElement, *inner,
                     fmt::format("nothing reads {} inside {}; move it out", tagOf(*inner), tagOf(entry)));
    }
    if (const XmlAttribute* const value = entry.FindAttribute(u"value")) {
        checkPattern(entry, value->Value(), findings);
    } else {
        findings.add(LintRule::ValueMissing, entry,
                     fmt::format("{} has no \"value\" attribute and accepts every entry; write the pattern into one",
                                 tagOf(entry)));
    }
}

bool mentions(const XmlElement& element, StringView text) {
    return element.Attribute(u"value").find(text) != StringView::npos;
}

bool patternsMention(const XmlElement& property, StringView text) {
    for (const XmlElement* entry = property.FirstChildElement(); entry; entry = entry->NextSiblingElement()) {
        if (!mentions(*entry, text)) {
            return false;
        }
    }
    return property.FirstChildElement() != nullptr || mentions(property, text);
}

void checkUnits(const XmlElement& property, LintFindings& findings) {
    const StringView units = property.Attribute(u"units");
    if (units.empty()) {
        return;
    }
    const bool hasPattern = property.FirstChildElement() != nullptr || property.FindAttribute(u"value") != nullptr;
    if (hasPattern && !patternsMention(property, units)) {
        findings.add(LintRule::UnitsMissingInPattern, property,
                     fmt::format("units=\"{}\" is not compared, and the value does not say it; write the units into "
                                 "the value, as in ^32 GB$",
                                 printable(units)));
    } else {
        findings.add(LintRule::UnitsNotCompared, property,
                     fmt::format("units=\"{}\" is not compared; it may be left out", printable(units)));
    }
}

}  // namespace

void checkProperty(const XmlElement& property, LintFindings& findings) {
    checkAttributesAndText(property, LintKind::Property, findings);
    if (property.Attribute(u"key").empty()) {
        findings.add(LintRule::MissingKey, property, "a property needs a key; add the name of the property");
    }
    const XmlAttribute* const value = property.FindAttribute(u"value");
    const XmlElement* const firstEntry = property.FirstChildElement();
    if (value != nullptr && firstEntry != nullptr) {
        findings.add(LintRule::ValueBesideChildren, property,
                     "the \"value\" attribute is not compared beside children; remove it, or the children");
    } else if (value != nullptr) {
        checkPattern(property, value->Value(), findings);
    }
    checkUnits(property, findings);
    for (const XmlElement* entry = firstEntry; entry != nullptr; entry = entry->NextSiblingElement()) {
        checkEntryElement(*entry, findings);
    }
}

}  // namespace vrx
