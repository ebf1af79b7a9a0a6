#pragma once

#include <string>
#include <vector>

#include "libLint/LintFindings.h"

namespace vrx {

class JsonWriter;

/// A mistake for which a script or parts list was refused.
struct ScriptMistake {
    std::string file;  ///< the path as given
    LintFinding finding;
};
using ScriptMistakes = std::vector<ScriptMistake>;

/// "file:row:column: what to do [rule]".
std::string mistakeLine(const ScriptMistake& mistake);

/// An array with an object for each: file and what lint writes.
void writeMistakes(JsonWriter& json, const ScriptMistakes& mistakes);

/// The members of a finding's object.
void writeLintFinding(JsonWriter& json, const LintFinding& finding);

}  // namespace vrx
