#pragma once

#include <string>

#include "cli/program/CommonOptions.h"

namespace vrx::cli {

/// Whether the path is a folder of recordings, and none that is itself a recording.
bool isRecordingFolder(const std::string& path);

/// What changed between two folders that hold a recording of each machine of a fleet.
CommandResult showFolderChanges(const CommonOptions& options, const std::string& before, bool hasAllCategories,
                                Session& session);

}  // namespace vrx::cli
