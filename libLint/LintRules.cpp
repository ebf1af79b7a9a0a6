#include "libLint/LintRules.h"

#include <iterator>

namespace vrx {

namespace {

constexpr LintRuleInfo RULES[] = {
    {"unknown-element", Severity::Error},
    {"misplaced-element", Severity::Error},
    {"error-element", Severity::Warning},
    {"property-outside-device", Severity::Error},
    {"unknown-attribute", Severity::Warning},
    {"device-attribute", Severity::Error},
    {"flag-value", Severity::Warning},
    {"ignored-text", Severity::Warning},
    {"missing-type", Severity::Error},
    {"unknown-type", Severity::Error},
    {"unknown-capability", Severity::Error},
    {"locator-pattern", Severity::Warning},
    {"duplicate-device", Severity::Warning},
    {"repeated-device", Severity::Note},
    {"missing-key", Severity::Error},
    {"value-beside-children", Severity::Warning},
    {"value-missing", Severity::Warning},
    {"element-as-value", Severity::Warning},
    {"units-missing-in-pattern", Severity::Warning},
    {"units-not-compared", Severity::Note},
    {"pattern-syntax", Severity::Warning},
    {"pattern-explodes", Severity::Warning},
    {"empty-pattern", Severity::Warning},
    {"range-syntax", Severity::Error},
    {"range-single-value", Severity::Warning},
    {"not-under-not", Severity::Warning},
    {"empty-or", Severity::Error},
    {"empty-group", Severity::Warning},
    {"empty-not-in-device", Severity::Error},
    {"equal-alternatives", Severity::Warning},
    {"combinations", Severity::Note},
    {"many-combinations", Severity::Warning},
    {"or-inside-part", Severity::Error},
    {"nested-part", Severity::Error},
    {"fail-on-extra-without-type", Severity::Error},
    {"fail-on-extra-in-group", Severity::Warning},
    {"ignored-testset", Severity::Note},
    {"nothing-to-check", Severity::Warning},
    {"element-before-parts", Severity::Warning},
    {"misnamed-part", Severity::Warning},
    {"blank-part", Severity::Error},
    {"part-needs-no-device", Severity::Warning},
    {"missing-name", Severity::Error},
    {"duplicate-name", Severity::Error},
    {"invalid-utf8", Severity::Warning},
};
static_assert(std::size(RULES) == static_cast<std::size_t>(LintRule::Count));

}  // namespace

std::string_view nameOf(Severity severity) noexcept {
    switch (severity) {
        case Severity::Error: return "error";
        case Severity::Warning: return "warning";
        case Severity::Note: break;
    }
    return "note";
}

std::span<const LintRuleInfo> lintRules() noexcept { return RULES; }

}  // namespace vrx
