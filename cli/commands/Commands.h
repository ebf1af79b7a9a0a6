#pragma once

#include "cli/program/Session.h"

namespace CLI {
class App;
}

/// The subcommands. Each adds itself to the command line and, when it is named there, sets the session's action.
namespace vrx::cli {

void addCheckCommand(CLI::App& parent, Session& session);
void addCheckDeviceCommand(CLI::App& parent, Session& session);
void addCollectCommand(CLI::App& parent, Session& session);
void addCompletionCommand(CLI::App& parent, Session& session);
void addConvertCommand(CLI::App& parent, Session& session);
void addFleetCommand(CLI::App& parent, Session& session);
void addGenerateCommand(CLI::App& parent, Session& session);
void addHelpCommand(CLI::App& parent, Session& session);
void addLintCommand(CLI::App& parent, Session& session);
void addManualCommand(CLI::App& parent, Session& session);
void addMatchCommand(CLI::App& parent, Session& session);
void addPartsCommand(CLI::App& parent, Session& session);
void addPartsGenerateCommand(CLI::App& parent, Session& session);
void addPartsParseCommand(CLI::App& parent, Session& session);
void addShowCommand(CLI::App& parent, Session& session);
void addWaiveCommand(CLI::App& parent, Session& session);

}  // namespace vrx::cli
