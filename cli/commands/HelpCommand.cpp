#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/help/CommandTable.h"
#include "cli/help/HelpText.h"
#include "cli/help/UsageProblem.h"
#include "cli/program/CommonOptions.h"

namespace vrx::cli {

namespace {

constexpr const char* HELP_FOOTER =
    "Exit status: 0 done; 2 there is no such command.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory help\n"
    "  vrx-inventory help check\n"
    "  vrx-inventory help parts generate";

struct HelpOptions : CommonOptions {
    std::vector<std::string> words;
};

const CLI::App& findCommand(const CLI::App& root, const std::vector<std::string>& words) {
    const CLI::App* at = &root;
    for (const std::string& word : words) {
        const CLI::App* const below = commandBelow(*at, word);
        if (below == nullptr) {
            throw CommandFailure(ExitStatus::BadInput, unknownCommand(*at, word));
        }
        at = below;
    }
    return *at;
}

}  // namespace

void addHelpCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<HelpOptions>();
    CLI::App& command = *parent.add_subcommand("help", "Say all about a command");
    command.add_option("COMMAND", options->words, "The command; without it the program");
    command.footer(HELP_FOOTER);
    setAction(command, session, options, [options, &parent, &session] {
        const CLI::App& named = findCommand(parent, options->words);
        return CommandResult{ExitStatus::Success, helpText(commandPage(named), helpWidth(session))};
    });
}

}  // namespace vrx::cli
