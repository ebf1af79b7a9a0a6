#include <CLI/CLI.hpp>
#include <memory>

#include "host/commands/Commands.h"
#include "host/commands/CommonOptions.h"
#include "host/commands/MachineSource.h"
#include "host/report/ShowJson.h"
#include "host/report/ShowText.h"
#include "host/report/SysInfoWriter.h"

namespace vrx::host {

namespace {

constexpr const char* FOOTER =
    "Exit status: 0 done; 2 a file cannot be read, parsed or written; 3 this machine\n"
    "cannot be read; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory show\n"
    "  vrx-inventory show --state machine.xml --properties\n"
    "  vrx-inventory show --format json | jq '.devices[].name'";

struct ShowOptions : CommonOptions {
    bool hasProperties = false;
};

std::string textOf(const ShowOptions& options, const StateManager& store, const Session& session) {
    if (options.format == "json") {
        return showJson(store);
    }
    if (options.format == "xml") {
        return sysInfoXml(store, true);
    }
    return showText(store, machineName(options.statePath), options.hasProperties, options.textFormat(session));
}

ExitStatus show(const ShowOptions& options, Session& session) {
    StateManager& store = session.make<StateManager>();
    loadMachine(options.statePath, store, session);
    options.writeResult(session, textOf(options, store, session));
    return ExitStatus::Success;
}

}  // namespace

void addShowCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App& command = *parent.add_subcommand("show", "Print the devices of a machine");
    options->addState(command);
    options->addFormat(command, {"text", "json", "xml"});
    options->addOutput(command);
    command.add_flag("--properties", options->hasProperties, "Print the properties of every device as well (text)");
    options->addLogging(command);
    command.footer(FOOTER);
    command.callback([options, &session] {
        options->applyLogging(session);
        session.action = [options, &session] {
            return show(*options, session);
        };
    });
}

}  // namespace vrx::host
