#pragma once

#include "host/commands/ExitStatus.h"
#include "host/terminal/Console.h"

namespace vrx::host {

/// The whole program but for what `main` guards: reads the command line, runs the command, says on the console what
/// went wrong. Broken contracts and unexpected exceptions pass through.
ExitStatus runProgram(int argc, const char* const* argv, Console& console);

}  // namespace vrx::host
