#pragma once

#include <string>

#include "cli/program/CommandResult.h"
#include "cli/program/Session.h"
#include "libSystemState/StateManager.h"

namespace vrx::cli {

/// Puts the recording of a machine into a folder, named by the machine's serial number and the time; nothing when the
/// last one of that machine there holds the same. What changes by itself does not count.
CommandResult recordInto(const std::string& folder, const StateManager& machine, const std::string& recording,
                         const Session& session);

}  // namespace vrx::cli
