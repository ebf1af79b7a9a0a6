#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/program/ExitStatus.h"

namespace vrx::cli {

/// A file that a command writes besides its result.
struct OutputFile {
    std::string path;
    std::string bytes;
};

/// What a command has to say when its work is done. The program writes it: the result, then the note, then the files.
struct CommandResult {
    ExitStatus status = ExitStatus::Success;
    std::optional<std::string> text{};    ///< the result; none when there is nothing to write
    std::string note{};                   ///< one line on standard error that explains the status; empty for none
    std::vector<std::string> problems{};  ///< lines on standard error, behind the note
    std::vector<OutputFile> files{};
};

}  // namespace vrx::cli
