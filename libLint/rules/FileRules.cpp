#include "libLint/rules/FileRules.h"

#include "libLint/LintSubject.h"

namespace vrx::rules {

void invalidUtf8(const LintSubject& subject, const LintReporter& report) {
    if (const Utf8Damage* const damage = subject.damage; damage != nullptr && damage->count > 0) {
        report.atPlace(damage->row, damage->column, damage->count);
    }
}

}  // namespace vrx::rules
