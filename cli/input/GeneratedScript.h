#pragma once

#include <string>

#include "libCommon/text/String.h"
#include "libSystemState/StateManager.h"

namespace vrx {
class SysinfoFilter;
}

namespace vrx::cli {

/// What is wrong with a script that was generated from the machine, read as a check would read the file; empty when it
/// holds every device and property that it should, and passes on the machine. `filter` is the one that it was made
/// with, null for none.
std::string problemOfGenerated(const String& script, StateManager& machine, const SysinfoFilter* filter,
                               bool hasAllCategories);

/// Why the program's own check would not pass the script on the machine; empty when it would, or when the script asks
/// for nothing.
std::string problemOnMachine(const String& script, StateManager& machine);

/// The first mistake or warning of lint; empty without any.
std::string doubtAboutScript(const String& script);

}  // namespace vrx::cli
