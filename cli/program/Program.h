#pragma once

#include "cli/program/ExitStatus.h"
#include "cli/program/Session.h"

namespace vrx::cli {

/// The whole program but for what `main` guards: reads the command line, runs the command, says on the console what
/// went wrong. Broken contracts and unexpected exceptions pass through.
ExitStatus runProgram(int argc, const char* const* argv, Session& session);

}  // namespace vrx::cli
