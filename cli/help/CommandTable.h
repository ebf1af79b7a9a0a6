#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The program's own table of commands and options, as help, suggestions, completion and manual pages read it.
namespace vrx::cli {

/// "vrx-inventory parts parse".
std::string fullName(const CLI::App& command);

/// The commands directly below it, in the order of the help.
std::vector<const CLI::App*> commandsBelow(const CLI::App& command);

/// The command and all below it, those of a group behind the group.
std::vector<const CLI::App*> allCommands(const CLI::App& root);

/// Null when it has no command of that name.
const CLI::App* commandBelow(const CLI::App& command, std::string_view name);

std::vector<const CLI::Option*> argumentsOf(const CLI::App& command);
std::vector<const CLI::Option*> optionsOf(const CLI::App& command);

/// The option of that name ("--state", "-o"); null when the command has none.
const CLI::Option* optionNamed(const CLI::App& command, std::string_view name);

/// "-o", "--output".
std::vector<std::string> namesOf(const CLI::Option& option);

bool takesValue(const CLI::Option& option);

/// What stands for its value: "FILE", or "text|json" when these are all values that it takes.
std::string valueName(const CLI::Option& option);

/// Makes the texts all that the option takes; another value is refused with the one that may have been meant.
CLI::Option& allowOnly(CLI::Option& option, const std::vector<std::string>& choices);

/// All that it takes; empty when it takes anything.
std::vector<std::string> choicesOf(const CLI::Option& option);

}  // namespace vrx::cli
