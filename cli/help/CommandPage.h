#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vrx::cli {

/// Something and what it means.
struct HelpEntry {
    std::string term;
    std::string text;
};

/// All that is said about a command, which its help and its manual page show alike.
struct CommandPage {
    std::string name;     ///< "vrx-inventory parts parse"
    std::string summary;  ///< one line
    std::string usage;
    std::vector<HelpEntry> arguments;
    std::vector<HelpEntry> options;
    std::vector<HelpEntry> commands;
    std::vector<std::string> notes;     ///< paragraphs
    std::vector<HelpEntry> statuses;    ///< "1": "it does not"
    std::vector<std::string> examples;  ///< lines; a longer example has several
};

/// What the command line's own table holds of a command, and its footer. A footer has paragraphs of any lines with
/// empty lines between them. One that begins with "Exit status:" lists statuses, "0 passed; 1 did not pass."; the line
/// "Examples:" stands before examples, which are indented.
CommandPage commandPage(const CLI::App& command);

}  // namespace vrx::cli
