#pragma once

#include <string>

#include "cli/program/ExitStatus.h"
#include "libCommon/xml/XmlDocument.h"
#include "libReport/lint/ScriptMistakes.h"

namespace vrx::cli {

/// Ends a command because of mistakes in a script: what a check would pass over in silence or could never meet.
class MistakesFound : public CommandFailure {
public:
    explicit MistakesFound(ScriptMistakes mistakes);

    const ScriptMistakes& mistakes() const noexcept { return m_mistakes; }

private:
    ScriptMistakes m_mistakes;
};

/// Throws a MistakesFound when the script or parts list of that path has some. In a text that was parsed inside an
/// envelope, `before` is how many characters of the envelope stand before it in the first row.
void refuseMistakes(const std::string& path, const XmlDocument& document, std::size_t before = 0, unsigned threads = 1);

}  // namespace vrx::cli
