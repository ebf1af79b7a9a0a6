#pragma once

#include <string>

#include "cli/program/Session.h"
#include "libReport/CheckRun.h"

namespace vrx::cli {

/// Loads the script of that path ("-" for standard input) into the check. Throws a CommandFailure (bad input) that says
/// which file, where and why when it is of no use: it cannot be read, is no script, cannot be decided, or, unless they
/// are to be passed over, has mistakes.
void loadScript(const std::string& path, CheckRun& check, bool passesMistakesOver, const Session& session);

}  // namespace vrx::cli
