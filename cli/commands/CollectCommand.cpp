#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "cli/commands/Commands.h"
#include "cli/commands/collect/CollectInto.h"
#include "cli/input/MachineSource.h"
#include "cli/program/CommonOptions.h"
#include "libCommon/text/NearestName.h"
#include "libInventory/recording/SysInfoWriter.h"
#include "libMachine/MachineCollector.h"

namespace vrx::cli {

namespace {

constexpr const char* COLLECT_FOOTER =
    "What cannot be read is left out and said on standard error.\n"
    "NAME is a source (--list-sources) in small letters, or a device type (--exclude only); several\n"
    "with commas between them. What is below a device that is left out moves up.\n"
    "Exit status: 0 recorded; 2 wrong usage, or the file cannot be written; 3 nothing could be read;\n"
    "4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory collect -o machine.xml\n"
    "  vrx-inventory collect --into /var/lib/inventory\n"
    "  vrx-inventory collect --exclude sensors,Battery --anonymize -o machine.xml\n"
    "  vrx-inventory collect --root /mnt/saved -o other.xml";

struct CollectCommandOptions : CommonOptions {
    CollectOptions collect;
    bool hasAllCategories = false;
    bool listsSources = false;
    std::string folder;  ///< that takes the recording under a name of its own; empty for none
};

std::string sourceList() {
    std::size_t width = 0;
    for (const CollectSource& source : collectSources()) {
        width = std::max(width, source.name.size());
    }
    std::string list;
    for (const CollectSource& source : collectSources()) {
        list.append(source.name).append(width - source.name.size() + 2, ' ').append(source.description) += '\n';
    }
    return list;
}

std::string problemOf(const UnknownCollectName& unknown) {
    const std::vector<StringView> known(unknown.known.begin(), unknown.known.end());
    return (unknown.isExcluded ? "--exclude: \"" + unknown.name + "\" is neither a source nor a device type"
                               : "--source: \"" + unknown.name + "\" is no source") +
           suggestion(String::UTF8Decode(unknown.name).view(), known);
}

// An import gives every property the same category, so what changes by itself would end up in scripts of the recording.
CommandResult collect(const CollectCommandOptions& options, Session& session) {
    if (options.listsSources) {
        return {ExitStatus::Success, sourceList()};
    }
    if (const std::optional<UnknownCollectName> unknown = unknownName(options.collect)) {
        throw CommandFailure(ExitStatus::BadInput, problemOf(*unknown));
    }
    if (!options.folder.empty() && !options.outputPath.empty()) {
        throw CommandFailure(ExitStatus::BadInput, "--into names the file itself; give it without -o");
    }
    StateManager& store = session.make<StateManager>();
    std::vector<CollectNote> notes;
    const bool isRead = collectMachine(store, options.collect, notes);
    sayNotes(notes, isRead, session);
    std::string recording = sysInfoXml(store, options.hasAllCategories);
    return options.folder.empty() ? CommandResult{ExitStatus::Success, std::move(recording)}
                                  : recordInto(options.folder, store, recording, session);
}

void addChoice(CLI::App& command, CollectCommandOptions& options) {
    command.add_option("--source", options.collect.sources, "Only these sources")
        ->type_name("NAME,...")
        ->delimiter(',');
    command.add_option("--exclude", options.collect.excluded, "Not these sources and device types")
        ->type_name("NAME,...")
        ->delimiter(',');
    command.add_flag("--list-sources", options.listsSources, "Print the sources and end");
}

void addPlaces(CLI::App& command, CollectCommandOptions& options) {
    command
        .add_option("--root", options.collect.root, "A folder with a saved copy of another machine's /sys and /proc")
        ->type_name("FOLDER")
        ->check(CLI::ExistingDirectory.description(""));
    options
        .addInput(command, "--smbios", options.collect.smbiosPath,
                  "A saved SMBIOS table; without --root it is all that is read")
        .check(CLI::ExistingFile.description(""));
}

}  // namespace

void addCollectCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CollectCommandOptions>();
    CLI::App& command = *parent.add_subcommand("collect", "Record this machine as SysInfo XML");
    options->addOutput(command);
    command
        .add_option("--into", options->folder,
                    "A folder for recordings by serial number and time; nothing is written when nothing changed")
        ->type_name("FOLDER");
    command.add_flag("--all-categories", options->hasAllCategories,
                     "Internal properties and such as change by themselves as well");
    addChoice(command, *options);
    addPlaces(command, *options);
    command.add_flag("--anonymize", options->collect.isAnonymous,
                     "Pseudonyms for serial numbers, addresses, UUIDs and host names");
    options->addLogging(command);
    command.footer(COLLECT_FOOTER);
    setAction(command, session, options, [options, &session] { return collect(*options, session); });
}

}  // namespace vrx::cli
