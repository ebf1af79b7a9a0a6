#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/help/HelpText.h"
#include "cli/help/NearWord.h"
#include "cli/help/UsageProblem.h"
#include "cli/manual/Topics.h"
#include "cli/program/CommonOptions.h"

namespace vrx::cli {

namespace {

constexpr const char* HELP_FOOTER =
    "Exit status: 0 done; 2 there is no such command or file format.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory help\n"
    "  vrx-inventory help check\n"
    "  vrx-inventory help parts generate\n"
    "  vrx-inventory help patterns";

struct HelpOptions : CommonOptions {
    std::vector<std::string> words;
};

std::string help(const CLI::App& root, const std::vector<std::string>& words, unsigned width) {
    const Topic* const topic = words.size() == 1 ? topicNamed(words.front()) : nullptr;
    return topic != nullptr ? topicText(*topic, width) : helpText(commandPage(findCommand(root, words)), width);
}

}  // namespace

void addHelpCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<HelpOptions>();
    CLI::App& command = *parent.add_subcommand("help", "Say all about a command or file format");
    command.add_option("COMMAND", options->words, "The command, or " + alternatives(topicNames()));
    command.footer(HELP_FOOTER);
    setAction(command, session, options, [options, &parent, &session] {
        return CommandResult{ExitStatus::Success, help(parent, options->words, helpWidth(session))};
    });
}

}  // namespace vrx::cli
