#include "libLint/rules/ElementRules.h"

#include <fmt/format.h>

#include "libCommon/text/NearestName.h"

namespace vrx {

void reportPassedOver(const XmlElement& element, LintKind kind, const char* where, LintFindings& findings) {
    switch (kind) {
        case LintKind::Unknown:
            findings.add(LintRule::UnknownElement, element,
                         fmt::format("unknown element {}: it and everything in it is passed over; correct or remove "
                                     "it{}",
                                     tagOf(element), suggestion(element.Name(), elementNames())));
            return;
        case LintKind::Error:
            findings.add(LintRule::ErrorElement, element,
                         "<error> is left over from an annotated script; check the original script, or remove it");
            return;
        case LintKind::Property:
            findings.add(LintRule::PropertyOutsideDevice, element,
                         "a <property> outside a <device> is passed over; move it into the device that it describes");
            return;
        default:
            findings.add(LintRule::MisplacedElement, element,
                         fmt::format("{} {} is passed over with everything in it; move it out", tagOf(element), where));
    }
}

void checkNot(const XmlElement& element, bool isUnderNot, LintFindings& findings) {
    if (isUnderNot) {
        findings.add(LintRule::NotUnderNot, element,
                     "a <not> inside a <not> is reported by every check; write what you mean without both");
    }
}

}  // namespace vrx
