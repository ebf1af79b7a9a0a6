#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>

#include "cli/commands/Commands.h"
#include "cli/commands/generate/GenerateOptions.h"
#include "cli/commands/generate/GoldenMachines.h"
#include "cli/help/CommandTable.h"
#include "cli/input/FilterFile.h"
#include "cli/input/GeneratedScript.h"
#include "cli/input/MachineSource.h"
#include "cli/input/ScriptableMachine.h"
#include "cli/terminal/StageProgress.h"
#include "libCommon/text/NumberText.h"
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

constexpr const char* GENERATE_FOOTER =
    "The script names every device of the machine, or, with a filter, those that the filter\n"
    "selects; \"check\" on the same machine passes it. Without --filter the file\n"
    "SystemInformationFilter.xml of the working directory is used when there is one.\n"
    "Of several machines it asks for what all have: equal values exactly, near numbers as ranges, few\n"
    "texts as alternatives; never for serial numbers, addresses and the like. All of them pass it.\n"
    "Exit status: 0 the script was written; 2 a file cannot be read, parsed or written;\n"
    "3 this machine cannot be read; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory generate -o golden.xml\n"
    "  vrx-inventory generate --fail-on-extra -o exact.xml\n"
    "  vrx-inventory generate --state machine.xml --filter filter.xml -o golden.xml\n"
    "  vrx-inventory generate --no-check-hw-locators --no-check-names\n"
    "  vrx-inventory generate a.xml b.xml c.xml --decisions why.txt -o golden.xml\n"
    "  vrx-inventory generate --for model --state machine.xml -o model.xml";

[[noreturn]] void refuseGeneration(const std::string& why) { throw CommandFailure(ExitStatus::BadInput, why); }

std::string percentProblem(const std::string& text) {
    const std::optional<double> number = parseReal(String::UTF8Decode(text));
    return number && *number >= 0 && *number <= 100 ? std::string() : "\"" + text + "\" is no percentage from 0 to 100";
}

SysinfoFilter::Language filterLanguage(const GenerateOptions& options) {
    return options.isPlain ? SysinfoFilter::Language::Plain : SysinfoFilter::Language::Extended;
}

/// The program's scripts can be kept in files and outlast a restart of the machine; a plain one is the engine's own.
ScriptOptions scriptOptions(const GenerateOptions& options, SysinfoFilter* filter) {
    ScriptOptions script;
    script.hasAllCategories = options.hasAllCategories;
    script.checksNames = !options.ignoresNames;
    script.checksHwLocators = options.checksHwLocators();
    script.checksOsLocators = options.checksOsLocators();
    script.filter = filter;
    script.leavesOutKernelNames = !options.isPlain;
    script.isWellFormed = !options.isPlain;
    script.filterLanguage = filterLanguage(options);
    return script;
}

/// Throws when the script is not what it should be.
void verifyForMachine(const String& script, StateManager& machine, const SysinfoFilter* filter,
                      const GenerateOptions& options, const Session& session) {
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

CommandResult generateForMachine(const GenerateOptions& options, Session& session) {
    SysinfoFilter filter(filterLanguage(options));
    const bool isFilterGiven = !options.filterPath.empty();
    const bool isFiltered = loadChosenFilter(options.filterPath, filter, session);
    StateManager& store = session.make<StateManager>();
    const ImportReport import = loadMachine(options.statePath, store, session);
    const SysinfoFilter* const chosen = isFiltered ? &filter : nullptr;
    StateManager& scriptable = session.make<StateManager>();
    NotScriptable left;
    if (!options.isPlain) {
        left = takeScriptable(store, chosen, import, machineName(options.statePath), scriptable);
        sayNotScriptable(left, options.hasLenientKeys, session);
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
        verifyForMachine(script, machine, chosen, options, session);
    }
    return {ExitStatus::Success, script.toUtf8()};
}

/// Of one machine a script that describes it, of several what they have in common.
CommandResult generate(GenerateOptions options, Session& session) {
    if (!options.machines.empty() && !options.statePath.empty()) {
        refuseGeneration("--state names one machine; give them all without it");
    }
    options.refuseAsOutput(options.filterPath.empty() ? DEFAULT_FILTER : options.filterPath);
    const bool areSeveral = options.machines.size() > 1;
    if (!areSeveral && options.purpose != ITS_MODEL) {
        if (options.isWithoutOutliers || !options.decisionsPath.empty()) {
            refuseGeneration("one machine leaves nothing to decide; give several, or --for model");
        }
        if (options.machines.size() == 1) {
            options.statePath = options.machines.front();
            options.refuseAsOutput(options.statePath);
        }
        return generateForMachine(options, session);
    }
    if (areSeveral && options.purpose == MACHINE_ITSELF) {
        refuseGeneration("--for machine describes one machine");
    }
    if (options.isPlain) {
        refuseGeneration("--plain writes the script of one machine as it is");
    }
    return generateGolden(options, session);
}

void addGoldenOptions(CLI::App& command, GenerateOptions& options) {
    allowOnly(*command.add_option("--for", options.purpose,
                                  "Describe this very machine (default), or what others of its model have too"),
              {MACHINE_ITSELF, ITS_MODEL});
    allowOnly(*command.add_option("--optional", options.optional,
                                  "Devices that not all machines have: named in comments (default), or an or of them"),
              {"comments", "or"});
    command.add_flag("--without-outliers", options.isWithoutOutliers, "Leave out machines that differ from the rest");
    command
        .add_option("--spread", options.mostSpread,
                    "Numbers that differ by no more than that become a range (default 5)")
        ->type_name("PERCENT")
        ->check(CLI::Validator(percentProblem, ""));
    command.add_option("--alternatives", options.mostAlternatives, "At most that many values of one thing (default 4)")
        ->type_name("NUMBER");
    options.addOutput(
        command, "--decisions", options.decisionsPath,
        "File for what was decided, and why, instead of comments in the script; JSON when it is called .json");
}

}  // namespace

void addGenerateCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<GenerateOptions>();
    CLI::App& command = *parent.add_subcommand("generate", "Write an inventory script of a machine, or of several");
    command.add_option("MACHINE", options->machines,
                       "Recorded machines; of several the script says what they have in common");
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
    addGoldenOptions(command, *options);
    options->addPlain(command, "the script stands as it is written, unread");
    options->addOutput(command);
    options->addLogging(command);
    command.footer(GENERATE_FOOTER);
    setAction(command, session, options, [options, &session] { return generate(*options, session); });
}

}  // namespace vrx::cli
