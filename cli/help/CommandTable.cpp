#include "cli/help/CommandTable.h"

#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/help/NearWord.h"

namespace vrx::cli {

namespace {

constexpr char BETWEEN_CHOICES = '|';

std::vector<const CLI::Option*> chosenOptions(const CLI::App& command, bool arePositional) {
    return command.get_options([arePositional](const CLI::Option* option) {
        return option->get_positional() == arePositional && !option->get_group().empty();
    });
}

void append(const CLI::App& command, std::vector<const CLI::App*>& commands) {
    commands.push_back(&command);
    for (const CLI::App* const below : commandsBelow(command)) {
        append(*below, commands);
    }
}

}  // namespace

std::string fullName(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return parent == nullptr ? command.get_name() : fullName(*parent) + " " + command.get_name();
}

std::vector<const CLI::App*> commandsBelow(const CLI::App& command) {
    return command.get_subcommands([](const CLI::App* below) { return !below->get_group().empty(); });
}

std::vector<const CLI::App*> allCommands(const CLI::App& root) {
    std::vector<const CLI::App*> commands;
    append(root, commands);
    return commands;
}

const CLI::App* commandBelow(const CLI::App& command, std::string_view name) {
    const std::vector<const CLI::App*> below = commandsBelow(command);
    const auto found = std::ranges::find_if(below, [name](const CLI::App* each) { return each->get_name() == name; });
    return found == below.end() ? nullptr : *found;
}

std::vector<const CLI::Option*> argumentsOf(const CLI::App& command) { return chosenOptions(command, true); }

std::vector<const CLI::Option*> optionsOf(const CLI::App& command) { return chosenOptions(command, false); }

const CLI::Option* optionNamed(const CLI::App& command, std::string_view name) {
    for (const CLI::Option* const option : optionsOf(command)) {
        const std::vector<std::string> names = namesOf(*option);
        if (std::ranges::find(names, name) != names.end()) {
            return option;
        }
    }
    return nullptr;
}

std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    return names;
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

std::string valueName(const CLI::Option& option) {
    return option.get_positional() ? option.get_name(true) : option.get_type_name();
}

CLI::Option& allowOnly(CLI::Option& option, const std::vector<std::string>& choices) {
    const auto problem = [choices](const std::string& value) {
        return choiceProblem(value, choices);
    };
    return *option.check(CLI::Validator(problem, ""))
                ->type_name(fmt::format("{}", fmt::join(choices, std::string(1, BETWEEN_CHOICES))));
}

std::vector<std::string> choicesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    return type.find(BETWEEN_CHOICES) == type.npos ? std::vector<std::string>()
                                                   : CLI::detail::split(type, BETWEEN_CHOICES);
}

}  // namespace vrx::cli
