#pragma once

#include <string>
#include <vector>

#include "cli/completion/Completion.h"

namespace vrx::cli {

/// The names and aliases of device types that the machine has devices of, with their numbers; all types where there is
/// no machine to read.
std::vector<Candidate> typeWords(const std::string& statePath, Session& session);

/// Locators, names and guids of the machine's devices that begin so.
std::vector<Candidate> deviceWords(const std::string& statePath, const std::string& beginning, Session& session);

}  // namespace vrx::cli
