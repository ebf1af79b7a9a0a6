#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <optional>

#include "cli/commands/Commands.h"
#include "cli/input/InputFile.h"
#include "cli/input/MachineSource.h"
#include "cli/input/XmlFileProblem.h"
#include "cli/program/CommonOptions.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/FailOnExtraRules.h"
#include "libReport/text/GenerationNotices.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/filter/SysinfoFilter.h"

namespace vrx::cli {

namespace {

constexpr const char* DEFAULT_FILTER = "SystemInformationFilter.xml";
constexpr const char* EXPECTED_FILTER = "expected a filter, XML with the root <system-information-filter>";

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
    "  vrx-inventory generate --no-check-locators --no-check-names";

struct GenerateOptions : CommonOptions {
    std::string filterPath;
    bool hasAllCategories = false;
    bool ignoresLocators = false;
    bool ignoresNames = false;
    bool failsOnExtra = false;
};

std::string filterProblem(const std::string& path, const SysinfoFilter& filter) {
    return fmt::format("{}:{}:{}: {}; {}", path, filter.errorRow(), filter.errorColumn(), filter.errorReason().toUtf8(),
                       EXPECTED_FILTER);
}

/// Why the filter does not load; empty when it does.
std::string loadFilter(const std::string& path, SysinfoFilter& filter) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        return fileProblem(path, reason, EXPECTED_FILTER);
    }
    return filter.load(bytes) == SysinfoFilter::PARSE_SUCCESS ? std::string() : filterProblem(path, filter);
}

/// Whether the default filter is there and loads. That there is none is normal; one that does not load is passed over,
/// so the user learns why.
bool loadDefaultFilter(SysinfoFilter& filter, const Session& session) {
    std::error_code failure;
    if (!std::filesystem::exists(DEFAULT_FILTER, failure)) {
        return false;
    }
    const std::string problem = loadFilter(DEFAULT_FILTER, filter);
    if (!problem.empty()) {
        session.say(problem + "; passed over, so the script names everything");
    }
    return problem.empty();
}

CommandResult generateScript(const GenerateOptions& options, Session& session) {
    SysinfoFilter filter;
    const bool isFilterGiven = !options.filterPath.empty();
    if (isFilterGiven) {
        if (const std::string problem = loadFilter(options.filterPath, filter); !problem.empty()) {
            throw CommandFailure(ExitStatus::BadInput, problem);
        }
    }
    StateManager& store = session.make<StateManager>();
    loadMachine(options.statePath, store, session);
    const bool isFiltered = isFilterGiven || loadDefaultFilter(filter, session);

    // Without a filter of the user's the engine itself looks for the default one, and writes its header. That there is
    // none is all that it could warn of then.
    std::optional<ErrorStreamLog::Quiet> quiet;
    if (!isFiltered) {
        quiet.emplace(*session.log, LogPriority::Warning);
    }
    Inventory inventory;
    inventory.setStateManager(store);
    String script;
    inventory.generateInventoryScript(script, options.hasAllCategories, !options.ignoresLocators, !options.ignoresNames,
                                      isFilterGiven ? &filter : nullptr);
    if (options.failsOnExtra) {
        script = withFailOnExtraRules(script, store);
    }
    for (const std::string& notice : generationNotices(store, isFiltered ? &filter : nullptr, script)) {
        session.say(notice);
    }
    return {ExitStatus::Success, script.toUtf8()};
}

}  // namespace

void addGenerateCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<GenerateOptions>();
    CLI::App& command = *parent.add_subcommand("generate", "Write an inventory script of a machine");
    options->addState(command);
    command.add_option("--filter", options->filterPath, "Which devices and properties, with what tolerances")
        ->type_name("FILE");
    command.add_flag("--all-categories", options->hasAllCategories, "Internal, volatile and group properties as well");
    command.add_flag("--no-check-locators", options->ignoresLocators, "A check of the script ignores locators");
    command.add_flag("--no-check-names", options->ignoresNames, "A check of the script ignores names");
    command.add_flag("--fail-on-extra", options->failsOnExtra,
                     "A check of the script fails on extra devices: a rule for each type that it names wholly");
    options->addOutput(command);
    options->addLogging(command);
    command.footer(GENERATE_FOOTER);
    setAction(command, session, options, [options, &session] { return generateScript(*options, session); });
}

}  // namespace vrx::cli
