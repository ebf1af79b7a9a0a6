#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Error;
}  // namespace CLI

namespace vrx::cli {

/// The command that the words of the command line led to.
const CLI::App& namedCommand(const CLI::App& root);

/// "X is no command", with those that there are, or the one that may have been meant.
std::string unknownCommand(const CLI::App& group, const std::string& word);

/// The command that the words lead to. Throws a CommandFailure when there is none.
const CLI::App& findCommand(const CLI::App& root, const std::vector<std::string>& words);

/// One line for a command line that could not be understood: what is wrong, and what may have been meant.
std::string usageProblem(const CLI::App& root, const CLI::Error& problem);

}  // namespace vrx::cli
