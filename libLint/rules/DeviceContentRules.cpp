#include "libLint/rules/DeviceContentRules.h"

#include "libLint/rules/AttributeRules.h"
#include "libLint/rules/ElementRules.h"
#include "libLint/rules/PropertyRules.h"
#include "libLint/rules/RepeatedDevices.h"

namespace vrx {

namespace {

void checkEmpty(const XmlElement& group, LintKind kind, LintFindings& findings) {
    if (group.FirstChildElement() != nullptr) {
        return;
    }
    switch (kind) {
        case LintKind::Or:
            findings.add(LintRule::EmptyOr, group,
                         "an <or> without alternatives is never satisfied; give it some, or remove it");
            return;
        case LintKind::Not:
            findings.add(LintRule::EmptyNotInDevice, group,
                         "an empty <not> inside a <device> is never satisfied; put in what is forbidden, or remove it");
            return;
        default: findings.add(LintRule::EmptyGroup, group, "an empty <and> asks for nothing; remove it");
    }
}

void checkElement(const XmlElement& element, bool isUnderNot, LintFindings& findings) {
    const LintKind kind = lintKindOf(element);
    switch (kind) {
        case LintKind::Property: checkProperty(element, findings); return;
        case LintKind::Not: checkNot(element, isUnderNot, findings); break;
        case LintKind::Or: checkAlternatives(element, findings); break;
        case LintKind::And: break;
        default: reportPassedOver(element, kind, "inside a <device>", findings); return;
    }
    checkAttributesAndText(element, kind, findings);
    checkEmpty(element, kind, findings);
    checkDeviceContent(element, isUnderNot || kind == LintKind::Not, findings);
}

}  // namespace

void checkDeviceContent(const XmlElement& holder, bool isUnderNot, LintFindings& findings) {
    for (const XmlElement* child = holder.FirstChildElement(); child; child = child->NextSiblingElement()) {
        checkElement(*child, isUnderNot, findings);
    }
}

}  // namespace vrx
