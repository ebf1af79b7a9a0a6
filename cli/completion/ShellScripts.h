#pragma once

#include <string>
#include <vector>

namespace vrx::cli {

/// "bash", "zsh", "fish".
std::vector<std::string> knownShells();

/// The script that makes the shell complete the program's command line. It asks the program itself at each key, so it
/// knows the commands and options of whatever version is installed.
///
/// Requires: the shell is a known one.
const char* completionScript(const std::string& shell);

}  // namespace vrx::cli
