#pragma once

#include <string>
#include <vector>

#include "libCommon/text/String.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// What a user should know about a generated script before it is relied on, a sentence each: what of the machine keeps
/// the script from passing on that same machine, and what a file cannot hold. `filter` is the one that the script was
/// made with; null for none. `isWellFormed` says whether it was made so, as `ScriptOptions` has it.
std::vector<std::string> generationNotices(const StateManager& store, const SysinfoFilter* filter, const String& script,
                                           bool isWellFormed);

/// What of a filter selects nothing of the machine, a line each, with the place in the file of that path. Properties
/// count when the script names their category.
std::vector<std::string> idleFilterNotices(const StateManager& store, const SysinfoFilter& filter,
                                           const std::string& path, bool hasAllCategories);

}  // namespace vrx
