#include <CLI/CLI.hpp>

#include "cli/commands/Commands.h"

namespace vrx::cli {

void addPartsCommand(CLI::App& parent, Session& session) {
    CLI::App& group = *parent.add_subcommand("parts", "Work with parts lists");
    group.require_subcommand(1);
    addPartsParseCommand(group, session);
    addPartsGenerateCommand(group, session);
}

}  // namespace vrx::cli
