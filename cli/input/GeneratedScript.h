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

}  // namespace vrx::cli
