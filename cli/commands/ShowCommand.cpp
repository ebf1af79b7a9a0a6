#include <CLI/CLI.hpp>
#include <memory>
#include <unordered_set>

#include "cli/commands/Commands.h"
#include "cli/commands/show/FolderChanges.h"
#include "cli/input/DeviceChoice.h"
#include "cli/input/MachineSource.h"
#include "cli/program/CommonOptions.h"
#include "libReport/changes/ChangesReport.h"
#include "libReport/changes/FleetChangesReport.h"
#include "libReport/show/ShowReport.h"

namespace vrx::cli {

namespace {

constexpr const char* SHOW_FOOTER =
    "Exit status: 0 done, or the two machines are equal; 1 they differ; 2 no such device,\n"
    "or a file cannot be read, parsed or written; 3 this machine, or one of a folder of recordings\n"
    "that are equal else, cannot be read, or they are equal as far as both recordings tell;\n"
    "4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory show\n"
    "  vrx-inventory show --state machine.xml --type Storage --properties\n"
    "  vrx-inventory show --device /dev/sda --properties\n"
    "  vrx-inventory show --changed-from yesterday.xml\n"
    "  vrx-inventory show --changed-from monday/ --state tuesday/ --format html\n"
    "  vrx-inventory show --format json | jq '.devices[].name'";

struct ShowOptions : CommonOptions {
    DeviceChoice choice;
    std::string otherPath;  ///< the machine to compare with; empty to compare nothing
    bool hasProperties = false;
    bool hasAllCategories = false;
};

using Devices = std::vector<const IDeviceImp*>;

[[noreturn]] void failWithoutDevice(const ShowOptions& options, const StateManager& store) {
    throw CommandFailure(ExitStatus::BadInput,
                         noSuchDevice(options.choice.device, machineName(options.statePath), store));
}

CommandResult showMachine(const ShowOptions& options, Session& session) {
    if (writerNamed(showWriters(), options.format) == nullptr) {
        throw CommandFailure(ExitStatus::BadInput, "only --changed-from has the format " + options.format);
    }
    StateManager& store = session.make<StateManager>();
    loadMachine(options.statePath, store, session);
    const ShowReport report{store, machineName(options.statePath), chosenDevices(store, options.choice),
                            !options.choice.isEverything(), options.hasProperties};
    if (report.devices.empty() && !options.choice.device.empty()) {
        failWithoutDevice(options, store);
    }
    return {ExitStatus::Success, options.written(report, showWriters(), session)};
}

/// Keeps the changes of devices that are chosen in either machine.
void keepChosen(const ShowOptions& options, const StateManager& before, const StateManager& after,
                std::vector<DeviceChange>& changes) {
    std::unordered_set<const IDeviceImp*> chosen;
    for (const StateManager* const store : {&before, &after}) {
        const Devices devices = chosenDevices(*store, options.choice);
        chosen.insert(devices.begin(), devices.end());
    }
    if (chosen.empty() && !options.choice.device.empty()) {
        failWithoutDevice(options, after);
    }
    std::erase_if(changes, [&chosen](const DeviceChange& change) {
        return !chosen.contains(change.before) && !chosen.contains(change.after);
    });
}

/// Requires: one of the two is a folder of recordings.
CommandResult showFleet(const ShowOptions& options, Session& session) {
    if (!isRecordingFolder(options.otherPath) || !isRecordingFolder(options.statePath)) {
        throw CommandFailure(ExitStatus::BadInput, "a folder of recordings is compared with another folder");
    }
    if (!options.choice.isEverything()) {
        throw CommandFailure(ExitStatus::BadInput, "--type and --device choose devices of one machine");
    }
    if (writerNamed(fleetChangesWriters(), options.format) == nullptr) {
        throw CommandFailure(ExitStatus::BadInput,
                             "changes of a fleet have no format " + options.format + "; take text, json or html");
    }
    return showFolderChanges(options, options.otherPath, options.hasAllCategories, session);
}

CommandResult showChanges(const ShowOptions& options, Session& session) {
    if (isRecordingFolder(options.otherPath) || isRecordingFolder(options.statePath)) {
        return showFleet(options, session);
    }
    if (writerNamed(changesWriters(), options.format) == nullptr) {
        throw CommandFailure(ExitStatus::BadInput,
                             "--changed-from has no format " + options.format + "; take text, json, junit or csv");
    }
    if (options.otherPath == "-" && options.statePath == "-") {
        throw CommandFailure(ExitStatus::BadInput, "the two machines cannot both come from standard input");
    }
    StateManager& before = session.make<StateManager>();
    StateManager& after = session.make<StateManager>();
    loadMachine(options.otherPath, before, session);
    loadMachine(options.statePath, after, session);
    ChangesReport report{machineName(options.otherPath), machineName(options.statePath),
                         machineChanges(before, after, options.hasAllCategories), session.console.time()};
    if (!options.choice.isEverything()) {
        keepChosen(options, before, after, report.changes);
    }
    report.untold = UntoldChanges(before, after).takeOut(report.changes);
    return {!report.isEqual()        ? ExitStatus::NotPassed
            : report.untold.isNone() ? ExitStatus::Success
                                     : ExitStatus::Undetermined,
            options.written(report, changesWriters(), session)};
}

void addOptions(CLI::App& command, ShowOptions& options) {
    options.addState(command);
    command.add_option("--type", options.choice.type, "Only devices of that type and of the types below it")
        ->type_name("TYPE")
        ->check(CLI::Validator(typeProblem, ""));
    command.add_option("--device", options.choice.device, "Only devices of that guid, locator or name")
        ->type_name("WHICH");
    command.add_flag("--properties", options.hasProperties, "Print the properties of every device as well (text)");
    options
        .addInput(command, "--changed-from", options.otherPath,
                  "Print what differs from that recording, - for standard input; or from a folder of them")
        .type_name("OTHER");
    command.add_flag("--all-categories", options.hasAllCategories,
                     "Compare what changes by itself as well (--changed-from)");
    options.addFormat(command, showWriters(), changesWriters(), fleetChangesWriters());
    options.addOutput(command);
    options.addLogging(command);
}

}  // namespace

void addShowCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<ShowOptions>();
    CLI::App& command = *parent.add_subcommand("show", "Print the devices of a machine, or what changed on it");
    addOptions(command, *options);
    command.footer(SHOW_FOOTER);
    setAction(command, session, options, [options, &session] {
        return options->otherPath.empty() ? showMachine(*options, session) : showChanges(*options, session);
    });
}

}  // namespace vrx::cli
