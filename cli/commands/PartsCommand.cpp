#include <CLI/CLI.hpp>

#include "cli/commands/Commands.h"

namespace vrx::cli {

namespace {

constexpr const char* PARTS_FOOTER =
    "A parts list describes parts that machines may hold, each by its devices.\n"
    "\n"
    "Exit status: 0 done; 1 blank parts, or the parts were not generated; 2 wrong usage or bad input;\n"
    "3 undetermined; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory parts parse parts.xml\n"
    "  vrx-inventory parts generate parts.xml --state machine.xml";

}  // namespace

void addPartsCommand(CLI::App& parent, Session& session) {
    CLI::App& group = *parent.add_subcommand("parts", "Work with parts lists");
    group.require_subcommand(1);
    group.footer(PARTS_FOOTER);
    addPartsParseCommand(group, session);
    addPartsGenerateCommand(group, session);
}

}  // namespace vrx::cli
