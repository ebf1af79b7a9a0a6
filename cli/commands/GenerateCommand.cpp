#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <optional>

#include "cli/commands/Commands.h"
#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/input/GeneratedScript.h"
#include "cli/input/MachineSource.h"
#include "cli/input/ScriptableMachine.h"
#include "cli/program/CommonOptions.h"
#include "cli/terminal/StageProgress.h"
#include "libInventory/ScriptGeneration.h"
#include "libInventory/script/FailOnExtraRules.h"
#include "libReport/text/GenerationNotices.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/UnreadText.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/filter/SysinfoFilter.h"

namespace vrx::cli {

namespace {

constexpr const char* DEFAULT_FILTER = "SystemInformationFilter.xml";

constexpr const char* GENERATE_FOOTER =
    "The script names every device of the machine, or, with a filter, those that the filter\n"
    "selects; \"check\" on the same machine passes it. Without --filter the file\n"
    "SystemInformationFilter.xml of the working directory is used when there is one.\n"
    "Exit status: 0 the script was written; 2 a file cannot be read, parsed or written;\n"
    "3 this machine cannot be read; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory generate -o golden.xml\n"
    "  vrx-inventory generate --fail-on-extra -o exact.xml\n"
    "  vrx-inventory generate --state machine.xml --filter filter.xml -o golden.xml\n"
    "  vrx-inventory generate --no-check-hw-locators --no-check-names";

struct GenerateOptions : CommonOptions {
    std::string filterPath;
    bool hasAllCategories = false;
    bool ignoresLocators = false;
    bool ignoresHwLocators = false;
    bool ignoresOsLocators = false;
    bool ignoresNames = false;
    bool failsOnExtra = false;
    bool hasLenientKeys = false;
};

std::string filterProblem(const std::string& path, std::string_view bytes, const SysinfoFilter& filter) {
    if (const std::string other = otherKind(bytes, FileKind::Filter); !other.empty()) {
        return fmt::format("{}: {}", inputName(path), other);
    }
    return fmt::format("{}:{}:{}: {}; {}", inputName(path), filter.errorRow(), filter.errorColumn(),
                       filter.errorReason().toUtf8(), expectedText(FileKind::Filter));
}

/// Why the filter does not load; empty when it does.
std::string loadFilter(const std::string& path, SysinfoFilter& filter) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        return fileProblem(path, reason, FileKind::Filter);
    }
    return filter.load(bytes) == SysinfoFilter::PARSE_SUCCESS ? std::string() : filterProblem(path, bytes, filter);
}

/// Whether the default filter is there and loads. That there is none is normal; one that does not load is passed over,
/// so the user learns why.
bool loadDefaultFilter(SysinfoFilter& filter, const Session& session) {
    std::error_code failure;
    if (!std::filesystem::exists(DEFAULT_FILTER, failure)) {
        return false;
    }
    const std::string problem = loadFilter(DEFAULT_FILTER, filter);
    session.say(problem.empty()
                    ? fmt::format("{} of the working directory decides what the script names", DEFAULT_FILTER)
                    : problem + "; passed over, so the script names everything");
    return problem.empty();
}

/// The program's scripts can be kept in files and outlast a restart of the machine; a plain one is the engine's own.
ScriptOptions scriptOptions(const GenerateOptions& options, SysinfoFilter* filter) {
    ScriptOptions script;
    script.hasAllCategories = options.hasAllCategories;
    script.checksNames = !options.ignoresNames;
    script.checksHwLocators = !options.ignoresLocators && !options.ignoresHwLocators;
    script.checksOsLocators = !options.ignoresLocators && !options.ignoresOsLocators;
    script.filter = filter;
    script.leavesOutKernelNames = !options.isPlain;
    script.isWellFormed = !options.isPlain;
    return script;
}

void sayLeftOut(const std::vector<std::string>& leftOut, const std::string& noun, const char* why,
                const Session& session) {
    if (!leftOut.empty()) {
        session.say(fmt::format("{} left out of the script, {}; the first is {}", counted(leftOut.size(), noun), why,
                                leftOut.front()));
    }
}

/// Says what the script has to do without. Throws when the user has to decide on it.
void sayNotScriptable(const NotScriptable& found, const GenerateOptions& options, const Session& session) {
    if (!found.codedKeys.empty() && !options.hasLenientKeys) {
        const std::size_t more = found.codedKeys.size() - 1;
        throw CommandFailure(
            ExitStatus::BadInput,
            fmt::format("{} has an escape or a control character in it, so no script can ask for it{}; "
                        "--lenient-keys leaves it out",
                        found.codedKeys.front(), more > 0 ? fmt::format(", nor for {} more", more) : ""));
    }
    sayLeftOut(found.codedKeys, "property key", "because of an escape or a control character", session);
    sayLeftOut(found.unknownTypes, "device", "because no rule sees a type that is none", session);
    sayLeftOut(found.hiddenProperties, "property", "because a check sees only the first of a key, and none without one",
               session);
}

/// Throws when the script is not what it should be.
void verify(const String& script, StateManager& machine, const SysinfoFilter* filter, const GenerateOptions& options,
            const Session& session) {
    const ErrorStreamLog::Quiet quiet(LogPriority::Error);
    const std::string problem = [&] {
        const StageProgress progress(session.console, "trying the script");
        return problemOfGenerated(script, machine, filter, options.hasAllCategories);
    }();
    if (!problem.empty()) {
        throw CommandFailure(ExitStatus::BadInput,
                             fmt::format("the script would not hold for {} itself: {}; --plain writes it all the same",
                                         machineName(options.statePath), problem));
    }
}

CommandResult generateScript(const GenerateOptions& options, Session& session) {
    SysinfoFilter filter;
    const bool isFilterGiven = !options.filterPath.empty();
    options.refuseAsOutput(isFilterGiven ? options.filterPath : DEFAULT_FILTER);
    if (isFilterGiven) {
        if (const std::string problem = loadFilter(options.filterPath, filter); !problem.empty()) {
            throw CommandFailure(ExitStatus::BadInput, problem);
        }
    }
    StateManager& store = session.make<StateManager>();
    const ImportReport import = loadMachine(options.statePath, store, session);
    const bool isFiltered = isFilterGiven || loadDefaultFilter(filter, session);
    const SysinfoFilter* const chosen = isFiltered ? &filter : nullptr;
    StateManager& scriptable = session.make<StateManager>();
    NotScriptable left;
    if (!options.isPlain) {
        left = takeScriptable(store, chosen, import, machineName(options.statePath), scriptable);
        sayNotScriptable(left, options, session);
    }
    StateManager& machine = left.isEmpty() ? store : scriptable;

    // Without a filter of the user's the engine itself looks for the default one, and writes its header. That there is
    // none is all that it could warn of then.
    std::optional<ErrorStreamLog::Quiet> quiet;
    if (!isFiltered) {
        quiet.emplace(LogPriority::Warning);
    }
    String script = [&] {
        const StageProgress progress(session.console, "making the script");
        return generatedScript(machine, scriptOptions(options, isFilterGiven ? &filter : nullptr));
    }();
    if (options.failsOnExtra) {
        script = withFailOnExtraRules(script, machine);
    }
    for (const UnreadSource& unread : store.unread()) {
        session.say("not read, so the script does not ask for it: " + unreadText(unread));
    }
    for (const std::string& notice : generationNotices(machine, chosen, script, !options.isPlain)) {
        session.say(notice);
    }
    if (isFiltered) {
        const std::string path = isFilterGiven ? options.filterPath : DEFAULT_FILTER;
        for (const std::string& notice : idleFilterNotices(store, filter, path, options.hasAllCategories)) {
            session.say(notice);
        }
    }
    if (!options.isPlain) {
        verify(script, machine, chosen, options, session);
    }
    return {ExitStatus::Success, script.toUtf8()};
}

}  // namespace

void addGenerateCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<GenerateOptions>();
    CLI::App& command = *parent.add_subcommand("generate", "Write an inventory script of a machine");
    options->addState(command);
    options->addInput(command, "--filter", options->filterPath, "Which devices and properties, with what tolerances")
        .type_name("FILTER");
    command.add_flag("--all-categories", options->hasAllCategories, "Internal, volatile and group properties as well");
    command.add_flag("--no-check-locators", options->ignoresLocators, "A check of the script ignores locators");
    command.add_flag("--no-check-hw-locators", options->ignoresHwLocators,
                     "A check of the script ignores hardware locators");
    command.add_flag("--no-check-os-locators", options->ignoresOsLocators, "A check of the script ignores OS locators");
    command.add_flag("--no-check-names", options->ignoresNames, "A check of the script ignores names");
    command.add_flag("--fail-on-extra", options->failsOnExtra,
                     "A check of the script fails on extra devices: a rule for each type that it names wholly");
    command.add_flag("--lenient-keys", options->hasLenientKeys,
                     "Leave out properties whose keys no script can ask for");
    options->addPlain(command, "the script stands as it is written, unread");
    options->addOutput(command);
    options->addLogging(command);
    command.footer(GENERATE_FOOTER);
    setAction(command, session, options, [options, &session] { return generateScript(*options, session); });
}

}  // namespace vrx::cli
