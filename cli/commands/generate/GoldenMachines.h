#pragma once

#include <string>
#include <vector>

#include "cli/commands/generate/GenerateOptions.h"
#include "cli/program/CommandResult.h"

namespace vrx::cli {

/// One script that every machine meets: the machines of the options, or the one that others describe by itself. Throws
/// a CommandFailure that names the machine when one does not.
CommandResult generateGolden(const GenerateOptions& options, Session& session);

}  // namespace vrx::cli
