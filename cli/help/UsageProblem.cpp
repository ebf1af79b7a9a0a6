/// What a command line that was not understood may have meant. Words that nothing took come first, whatever else is
/// missing: somebody who misspelt a command or an option lacks its value only for that.

#include "cli/help/UsageProblem.h"

#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "cli/files/FileKind.h"
#include "cli/files/InputFile.h"
#include "cli/help/CommandTable.h"
#include "cli/help/NearWord.h"
#include "cli/program/ExitStatus.h"

namespace vrx::cli {

namespace {

bool isOption(const std::string& word) { return word.size() > 1 && word.starts_with('-'); }

std::vector<std::string> longNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : optionsOf(command)) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

std::string unknownOption(const CLI::App& command, const std::string& word) {
    const std::string name = word.substr(0, word.find('='));
    if (command.get_parent() == nullptr && optionNamed(namedCommand(command), name) != nullptr) {
        return name + " must stand behind the command";
    }
    return name + " is no option" + (name.size() > 2 ? nearWordHint(name, longNames(command)) : std::string());
}

/// The option that the word may be the value of; empty when there is none. A file tells by its content.
std::string optionFor(const CLI::App& command, const std::string& word) {
    std::string bytes;
    String reason;
    const std::filesystem::path path(word);
    std::error_code failure;
    const bool isFile = std::filesystem::is_regular_file(path, failure) && loadInput(word, bytes, reason);
    const bool isMachine = isFile ? kindOf(bytes) == FileKind::Recording
                                  : std::filesystem::is_directory(path, failure) ||
                                        (path.has_extension() && !std::filesystem::exists(path, failure));
    if (isMachine && optionNamed(command, "--state") != nullptr) {
        return "--state";
    }
    return !isFile && argumentsOf(command).empty() && optionNamed(command, "--device") != nullptr ? "--device" : "";
}

std::string oneTooMany(const CLI::App& command, const std::string& word) {
    const std::string option = optionFor(command, word);
    return fmt::format("\"{}\" is one argument too many{}", word,
                       option.empty() ? option : fmt::format("; did you mean \"{} {}\"?", option, word));
}

/// Empty when every word was taken.
std::string unexpectedWord(const CLI::App& command) {
    const std::vector<std::string> words = command.remaining();
    if (words.empty()) {
        return {};
    }
    const auto option = std::ranges::find_if(words, isOption);
    return option != words.end()             ? unknownOption(command, *option)
           : !commandsBelow(command).empty() ? unknownCommand(command, words.front())
                                             : oneTooMany(command, words.front());
}

}  // namespace

const CLI::App& namedCommand(const CLI::App& root) {
    const CLI::App* at = &root;
    while (!at->get_subcommands().empty()) {
        at = at->get_subcommands().back();
    }
    return *at;
}

std::string unknownCommand(const CLI::App& group, const std::string& word) {
    std::vector<std::string> names;
    for (const CLI::App* const command : commandsBelow(group)) {
        if (commandBelow(*command, word) != nullptr) {
            return fmt::format("\"{}\" is no command; did you mean \"{} {}\"?", word, command->get_name(), word);
        }
        names.push_back(command->get_name());
    }
    const std::string hint = nearWordHint(word, names);
    return fmt::format("\"{}\" is no command{}", word,
                       hint.empty() ? fmt::format("; these are: {}", fmt::join(names, ", ")) : hint);
}

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

std::string usageProblem(const CLI::App& root, const CLI::Error& problem) {
    for (const CLI::App* at = &namedCommand(root); at != nullptr; at = at->get_parent()) {
        if (const std::string text = unexpectedWord(*at); !text.empty()) {
            return text;
        }
    }
    const bool lacksCommand = !commandsBelow(namedCommand(root)).empty();
    return lacksCommand ? "a command is missing" : problem.what();
}

}  // namespace vrx::cli
