#include <CLI/CLI.hpp>
#include <memory>

#include "host/commands/Commands.h"
#include "host/commands/CommonOptions.h"
#include "host/commands/MachineSource.h"
#include "host/report/SysInfoWriter.h"

namespace vrx::host {

namespace {

constexpr const char* FOOTER =
    "What cannot be read is left out and said on standard error.\n"
    "Exit status: 0 recorded; 2 the file cannot be written; 3 nothing could be read;\n"
    "4 internal error.\n"
    "\n"
    "Example:\n"
    "  vrx-inventory collect -o machine.xml";

struct CollectCommandOptions : CommonOptions {
    bool hasAllCategories = false;
};

// An import gives every property the same category, so what changes by itself would end up in scripts of the recording.
ExitStatus collect(const CollectCommandOptions& options, Session& session) {
    StateManager& store = session.make<StateManager>();
    loadMachine("", store, session);
    options.writeResult(session, sysInfoXml(store, options.hasAllCategories));
    return ExitStatus::Success;
}

}  // namespace

void addCollectCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CollectCommandOptions>();
    CLI::App& command = *parent.add_subcommand("collect", "Record this machine as SysInfo XML");
    options->addOutput(command);
    command.add_flag("--all-categories", options->hasAllCategories,
                     "Internal properties and such as change by themselves as well");
    options->addLogging(command);
    command.footer(FOOTER);
    command.callback([options, &session] {
        options->applyLogging(session);
        session.action = [options, &session] {
            return collect(*options, session);
        };
    });
}

}  // namespace vrx::host
