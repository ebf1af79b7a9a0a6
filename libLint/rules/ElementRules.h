#pragma once

#include "libLint/LintFindings.h"
#include "libLint/LintVocabulary.h"

namespace vrx {

/// An element that is passed over where it stands: misspelt, misplaced or left over from a report. `where` says where
/// it stands, as in "inside a <device>".
void reportPassedOver(const XmlElement& element, LintKind kind, const char* where, LintFindings& findings);

/// A `not` that stands in another one.
void checkNot(const XmlElement& element, bool isUnderNot, LintFindings& findings);

}  // namespace vrx
