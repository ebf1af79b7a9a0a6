#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/help/NearWord.h"
#include "cli/help/UsageProblem.h"
#include "cli/manual/ManualPages.h"
#include "cli/program/CommonOptions.h"

namespace vrx::cli {

namespace {

constexpr const char* MANUAL_FOOTER =
    "A page is written in the language of man(7). It says what the help says; that of a file\n"
    "format is its document. An installed program has its pages where man finds them.\n"
    "\n"
    "Exit status: 0 done; 2 there is no such command or format, or a page cannot be written.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory manual check | man -l -\n"
    "  vrx-inventory manual inventory-script | man -l -\n"
    "  vrx-inventory manual --all ~/.local/share/man";

struct ManualOptions : CommonOptions {
    std::vector<std::string> words;
    std::string folder;
};

CommandResult allPages(const CLI::App& root, const std::filesystem::path& folder) {
    CommandResult result;
    for (const ManualPage& page : manualPages(root)) {
        const std::string section = std::to_string(page.section);
        const std::filesystem::path path = folder / ("man" + section) / (page.name + "." + section);
        std::error_code failure;  // writing the file says why there is no folder
        std::filesystem::create_directories(path.parent_path(), failure);
        result.files.push_back({path, page.roff});
    }
    return result;
}

CommandResult manual(const ManualOptions& options, const CLI::App& root) {
    if (!options.folder.empty()) {
        return allPages(root, options.folder);
    }
    const Topic* const topic = options.words.size() == 1 ? topicNamed(options.words.front()) : nullptr;
    return {ExitStatus::Success,
            (topic != nullptr ? manualPage(*topic) : manualPage(findCommand(root, options.words))).roff};
}

}  // namespace

void addManualCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<ManualOptions>();
    CLI::App& command = *parent.add_subcommand("manual", "Print the manual page of a command or file format");
    command.add_option("COMMAND", options->words, "The command, or " + alternatives(topicNames()));
    command.add_option("--all", options->folder, "Write all pages to man1 and man5 of that folder")
        ->type_name("FOLDER");
    options->addOutput(command);
    command.footer(MANUAL_FOOTER);
    setAction(command, session, options, [options, &parent] { return manual(*options, parent); });
}

}  // namespace vrx::cli
