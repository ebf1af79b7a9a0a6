#pragma once

#include <string>
#include <vector>

#include "cli/program/Session.h"

namespace CLI {
class App;
}

namespace vrx::cli {

/// Options that several commands have. A command adds those that it has and keeps the values as long as it lives.
struct CommonOptions {
    std::string statePath;  ///< a recording, "-" for standard input, empty for the machine that the program runs on
    std::string format = "text";
    std::string outputPath;  ///< empty for standard output
    std::string logLevel = "warning";
    std::string logFile;

    void addState(CLI::App& command);
    void addFormat(CLI::App& command, const std::vector<std::string>& formats);
    void addOutput(CLI::App& command);

    /// Every command has these.
    void addLogging(CLI::App& command);

    /// Opens the log file and tells the session the level.
    void applyLogging(Session& session) const;

    /// Writes a command's result to `outputPath`, in one step, or to standard output.
    void writeResult(const Session& session, std::string_view bytes) const;

    /// How text results are laid out: plain in a file, whatever standard output is.
    TextFormat textFormat(const Session& session) const;
};

/// Replaces a file in one step. An interrupt that comes meanwhile ends the program only afterwards, so that no
/// temporary file is left behind.
void writeFile(const std::string& path, std::string_view bytes);

}  // namespace vrx::cli
