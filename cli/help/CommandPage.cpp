#include "cli/help/CommandPage.h"

#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <cctype>
#include <sstream>

#include "cli/help/CommandTable.h"

namespace vrx::cli {

namespace {

constexpr std::string_view STATUSES = "Exit status:";
constexpr std::string_view EXAMPLES = "Examples:";
constexpr std::size_t EXAMPLE_INDENT = 2;

HelpEntry entryOf(const CLI::Option& option) {
    std::string term = fmt::format("{}", fmt::join(namesOf(option), ", "));
    if (takesValue(option)) {
        term += (term.empty() ? "" : " ") + valueName(option);
    }
    return {term, option.get_description()};
}

std::string usageOf(const CLI::App& command) {
    std::string usage = fullName(command) + " [OPTIONS]";
    for (const CLI::Option* const option : optionsOf(command)) {
        if (option->get_required()) {
            usage += " " + entryOf(*option).term;
        }
    }
    for (const CLI::Option* const argument : argumentsOf(command)) {
        const std::string name = valueName(*argument) + (argument->get_items_expected_max() > 1 ? "..." : "");
        usage += argument->get_required() ? " " + name : " [" + name + "]";
    }
    return usage + (commandsBelow(command).empty() ? "" : " COMMAND");
}

/// "Exit status: 0 passed; 1 did not pass."
std::vector<HelpEntry> statusesOf(std::string_view paragraph) {
    std::vector<HelpEntry> statuses;
    paragraph.remove_prefix(STATUSES.size());
    if (paragraph.ends_with('.')) {
        paragraph.remove_suffix(1);
    }
    while (!paragraph.empty()) {
        std::size_t end = paragraph.find("; ");
        while (end < paragraph.size() - 2 && std::isdigit(static_cast<unsigned char>(paragraph[end + 2])) == 0) {
            end = paragraph.find("; ", end + 1);
        }
        const std::string entry = CLI::detail::trim_copy(std::string(paragraph.substr(0, end)));
        const std::size_t blank = std::min(entry.find(' '), entry.size() - 1);
        statuses.push_back({entry.substr(0, blank), entry.substr(blank + 1)});
        paragraph.remove_prefix(std::min(paragraph.size(), end == paragraph.npos ? end : end + 1));
    }
    return statuses;
}

void addParagraph(std::string& paragraph, CommandPage& page) {
    if (paragraph.starts_with(STATUSES)) {
        page.statuses = statusesOf(paragraph);
    } else if (!paragraph.empty() && paragraph != EXAMPLES) {
        page.notes.push_back(paragraph);
    }
    paragraph.clear();
}

void readFooter(const std::string& footer, CommandPage& page) {
    std::istringstream lines(footer);
    std::string paragraph;
    for (std::string line; std::getline(lines, line);) {
        const bool isExample = line.starts_with(' ');
        if (line.empty() || isExample || line.starts_with(STATUSES)) {
            addParagraph(paragraph, page);
        }
        if (isExample) {
            page.examples.push_back(line.substr(EXAMPLE_INDENT));
        } else if (!line.empty()) {
            paragraph += (paragraph.empty() ? "" : " ") + line;
        }
    }
    addParagraph(paragraph, page);
}

}  // namespace

CommandPage commandPage(const CLI::App& command) {
    CommandPage page;
    page.name = fullName(command);
    page.summary = command.get_description();
    page.usage = usageOf(command);
    for (const CLI::Option* const argument : argumentsOf(command)) {
        page.arguments.push_back(entryOf(*argument));
    }
    for (const CLI::Option* const option : optionsOf(command)) {
        page.options.push_back(entryOf(*option));
    }
    for (const CLI::App* const below : commandsBelow(command)) {
        page.commands.push_back({below->get_name(), below->get_description()});
    }
    readFooter(command.get_footer(), page);
    return page;
}

}  // namespace vrx::cli
