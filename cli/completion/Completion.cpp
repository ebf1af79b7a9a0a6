/// The words before the last one are read as the command line itself reads them: names of commands lead to commands,
/// options take the word behind them, all else are arguments. Then the last word is an option, the value of one, a
/// command or an argument.

#include "cli/completion/Completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/completion/MachineWords.h"
#include "cli/help/CommandTable.h"
#include "cli/manual/Topics.h"
#include "libDiagnosis/FaultKindNames.h"
#include "libMachine/MachineCollector.h"
#include "libSystemState/capabilities/CapabilityNames.h"

namespace vrx::cli {

namespace {

/// Where the words before the last one lead to.
struct Context {
    const CLI::App* command;
    std::vector<std::string> arguments{};   ///< those of the command
    const CLI::Option* awaiting = nullptr;  ///< an option whose value comes next
    bool isPastOptions = false;
    std::string state{};  ///< the value of --state
};

std::string nameIn(const std::string& word) { return word.substr(0, word.find('=')); }

bool hasValue(const std::string& word) { return word.starts_with("--") && word.find('=') != word.npos; }

void takeOption(Context& context, const std::string& word) {
    const CLI::Option* const option = optionNamed(*context.command, nameIn(word));
    if (hasValue(word)) {
        context.state = nameIn(word) == "--state" ? word.substr(word.find('=') + 1) : context.state;
    } else if (option != nullptr && takesValue(*option)) {
        context.awaiting = option;
    }
}

void take(Context& context, const std::string& word) {
    if (context.awaiting != nullptr) {
        context.state = context.awaiting->check_lname("state") ? word : context.state;
        context.awaiting = nullptr;
    } else if (word == "--") {
        context.isPastOptions = true;
    } else if (!context.isPastOptions && word.starts_with('-') && word.size() > 1) {
        takeOption(context, word);
    } else if (const CLI::App* const below = commandBelow(*context.command, word)) {
        context.command = below;
    } else {
        context.arguments.push_back(word);
    }
}

class Completer {
public:
    Completer(const Context& context, const std::string& word, Session& session)
        : m_context(context), m_word(word), m_session(session) {}

    Completion complete() {
        if (m_context.awaiting != nullptr) {
            values(*m_context.awaiting);
        } else if (!m_context.isPastOptions && m_word.starts_with('-')) {
            optionOrItsValue();
        } else {
            commandOrArgument();
        }
        std::erase_if(m_result.candidates, [this](const Candidate& each) { return !each.word.starts_with(m_word); });
        return std::move(m_result);
    }

private:
    void optionOrItsValue() {
        const CLI::Option* const option = optionNamed(*m_context.command, nameIn(m_word));
        if (hasValue(m_word) && option != nullptr) {
            valuesBehindSign(*option);
        } else {
            options();
        }
    }

    void valuesBehindSign(const CLI::Option& option) {
        const std::string name = nameIn(m_word) + "=";
        m_result = Completer(m_context, m_word.substr(name.size()), m_session).valuesOf(option);
        for (Candidate& candidate : m_result.candidates) {
            candidate.word.insert(0, name);
        }
    }

    Completion valuesOf(const CLI::Option& option) {
        values(option);
        return std::move(m_result);
    }

    void options() {
        for (const CLI::Option* const option : optionsOf(*m_context.command)) {
            for (const std::string& name : namesOf(*option)) {
                add(name, option->get_description());
            }
        }
    }

    void commands(const CLI::App& group) {
        for (const CLI::App* const below : commandsBelow(group)) {
            add(below->get_name(), below->get_description());
        }
    }

    /// Those below the command that the arguments name.
    void commandsNamed() {
        const CLI::App* at = m_context.command->get_parent();
        for (const std::string& word : m_context.arguments) {
            at = at == nullptr ? at : commandBelow(*at, word);
        }
        if (at != nullptr) {
            commands(*at);
        }
        for (const std::string& topic : m_context.arguments.empty() ? topicNames() : std::vector<std::string>()) {
            add(topic, "file format");
        }
    }

    void commandOrArgument() {
        commands(*m_context.command);
        const std::vector<const CLI::Option*> arguments = argumentsOf(*m_context.command);
        if (!arguments.empty() && (m_context.arguments.size() < arguments.size() || takesMany(*arguments.back()))) {
            values(*arguments[std::min(m_context.arguments.size(), arguments.size() - 1)]);
        } else if (m_result.candidates.empty() && !m_context.isPastOptions) {
            options();
        }
    }

    static bool takesMany(const CLI::Option& option) { return option.get_items_expected_max() > 1; }

    void values(const CLI::Option& option) {
        for (const std::string& choice : choicesOf(option)) {
            add(choice, {});
        }
        const std::string name = valueName(option);
        if (name == "TYPE") {
            m_result.candidates = typeWords(m_context.state, m_session);
        } else if (name == "WHICH") {
            m_result.candidates = deviceWords(m_context.state, m_word, m_session);
        } else if (name == "COMMAND") {
            commandsNamed();
        } else if (name == "FORMAT:FILE") {
            formatsOfFiles();
        } else if (name == "NAME,...") {
            sources(option);
        } else if (name == "KIND[,KIND]") {
            kinds();
        } else {
            m_result.files = filesFor(name);
        }
    }

    void formatsOfFiles() {
        const CLI::Option* const format = optionNamed(*m_context.command, "--format");
        for (const std::string& choice : format == nullptr ? std::vector<std::string>() : choicesOf(*format)) {
            add(choice + ":", {});
        }
        m_result.files = m_word.find(':') == m_word.npos ? Completion::Files::None : Completion::Files::Any;
    }

    void sources(const CLI::Option& option) {
        for (const CollectSource& source : collectSources()) {
            addToList(source.name, std::string(source.description));
        }
        if (option.check_lname("exclude")) {
            for (const StringView type : capabilityNames()) {
                addToList(String(type).toUtf8(), "device type");
            }
        }
    }

    void kinds() {
        for (const FaultKind kind : allFaultKinds()) {
            addToList(nameOf(kind), {});
        }
    }

    /// One of several with commas between them.
    void addToList(std::string_view word, std::string text) {
        add(m_word.substr(0, m_word.rfind(',') + 1).append(word), std::move(text));
    }

    static Completion::Files filesFor(const std::string& name) {
        using Files = Completion::Files;
        const bool isXml = name == "SCRIPT" || name == "LIST" || name == "FILTER";
        return isXml                               ? Files::Xml
               : name == "FILE" || name == "OTHER" ? Files::Any
               : name == "FOLDER"                  ? Files::Folders
                                                   : Files::None;
    }

    void add(std::string word, std::string text) { m_result.candidates.push_back({std::move(word), std::move(text)}); }

    const Context& m_context;
    std::string m_word;
    Session& m_session;
    Completion m_result;
};

}  // namespace

Completion completionOf(const CLI::App& root, const std::vector<std::string>& words, Session& session) {
    Context context{&root};
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        take(context, words[i]);
    }
    return Completer(context, words.empty() ? std::string() : words.back(), session).complete();
}

}  // namespace vrx::cli
