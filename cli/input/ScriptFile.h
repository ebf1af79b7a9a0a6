#pragma once

#include <memory>
#include <string>

#include "cli/program/Session.h"
#include "libReport/CheckRun.h"

namespace vrx::cli {

struct ScriptInput {
    std::string path;  ///< "-" for standard input
    bool passesMistakesOver = false;
    unsigned threads = 1;
};

/// Loads the script into the check. Throws a CommandFailure (bad input) that says which file, where and why when it is
/// of no use: it cannot be read, is no script, cannot be decided, or, unless they are to be passed over, has mistakes.
void loadScript(const ScriptInput& input, CheckRun& check, const Session& session);

/// The same for one that many checks copy.
std::shared_ptr<const Inventory> loadedScript(const ScriptInput& input, const Session& session);

}  // namespace vrx::cli
