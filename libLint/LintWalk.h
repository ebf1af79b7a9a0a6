#pragma once

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libLint/Lint.h"

namespace vrx {

/// Asks every rule about everything in a script. `damage`, unless it is null, is what was wrong with its bytes.
void lintScript(const XmlElement& root, const Utf8Damage* damage, Lint::Extent extent, LintFindings& findings);

/// The same for a parts list.
void lintPartsList(const XmlElement& root, Lint::Extent extent, LintFindings& findings);

}  // namespace vrx
