#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/completion/ShellScripts.h"
#include "cli/help/CommandTable.h"
#include "cli/help/NearWord.h"
#include "cli/program/CommonOptions.h"

namespace vrx::cli {

namespace {

constexpr const char* COMPLETION_FOOTER =
    "Commands, options, their values, device types and devices are completed, the last two\n"
    "from the machine that --state names. An installed program needs nothing of this.\n"
    "\n"
    "Exit status: 0 done; 2 wrong usage.\n"
    "\n"
    "Examples:\n"
    "  source <(vrx-inventory completion bash)\n"
    "  vrx-inventory completion zsh > \"${fpath[1]}/_vrx-inventory\"\n"
    "  vrx-inventory completion fish > ~/.config/fish/completions/vrx-inventory.fish";

struct CompletionOptions : CommonOptions {
    std::string shell;
};

}  // namespace

void addCompletionCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CompletionOptions>();
    CLI::App& command = *parent.add_subcommand("completion", "Print a script that completes command lines");
    allowOnly(*command.add_option("SHELL", options->shell, "The shell: " + alternatives(knownShells()))->required(),
              knownShells());
    options->addOutput(command);
    command.footer(COMPLETION_FOOTER);
    setAction(command, session, options, [options] {
        return CommandResult{ExitStatus::Success, completionScript(options->shell)};
    });
}

}  // namespace vrx::cli
