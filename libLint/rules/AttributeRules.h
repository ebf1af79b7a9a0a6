#pragma once

#include "libLint/LintFindings.h"
#include "libLint/LintVocabulary.h"

namespace vrx {

/// What every element is looked at for: attributes that nothing reads, and text that nothing reads.
void checkAttributesAndText(const XmlElement& element, LintKind kind, LintFindings& findings);

/// The switches of the root: everything but a few words means off.
void checkFlags(const XmlElement& root, LintFindings& findings);

}  // namespace vrx
