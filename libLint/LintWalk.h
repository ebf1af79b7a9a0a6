#pragma once

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libLint/Lint.h"

namespace vrx {

class LintMachine;

/// What is asked for.
struct LintTask {
    Lint::Extent extent;
    LintMachine* machine;  ///< null when there is none
    LintFindings& findings;
    unsigned threads = 1;
};

/// Asks every rule about everything in a script. `damage`, unless it is null, is what was wrong with its bytes.
void lintScript(const XmlElement& root, const Utf8Damage* damage, const LintTask& task);

/// The same for a parts list.
void lintPartsList(const XmlElement& root, const LintTask& task);

}  // namespace vrx
