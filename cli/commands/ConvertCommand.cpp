#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>

#include "cli/commands/Commands.h"
#include "cli/help/CommandTable.h"
#include "cli/input/MachineSource.h"
#include "cli/program/CommonOptions.h"
#include "libInventory/recording/SysInfoWriter.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* CONVERT_FOOTER =
    "FILE may be the output of lshw (-xml or -json), of dmidecode, of lstopo (--of xml), SysInfo XML,\n"
    "or the resources of a Redfish service (a folder, a tar archive, one JSON document); what it is\n"
    "shows in its content. What it was taken for, how many devices it holds, and what\n"
    "was damaged is said on standard error. Whatever a file of another program lacks is left out.\n"
    "Exit status: 0 converted; 2 wrong usage, a file that cannot be read or written, or one that\n"
    "holds no devices; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  lshw -xml | vrx-inventory convert - -o machine.xml\n"
    "  vrx-inventory convert lshw.json --anonymize -o machine.xml";

struct ConvertOptions : CommonOptions {
    std::string inputPath;
    std::string from;
    bool hasAllCategories = false;
    bool isAnonymous = false;
};

CommandResult convert(const ConvertOptions& options, Session& session) {
    ImportOptions load;
    load.isAnonymous = options.isAnonymous;
    load.threads = processors();
    if (!options.from.empty()) {
        load.format = formatNamed(options.from);
    }
    StateManager& store = session.make<StateManager>();
    const RecordingFormat format = loadRecording(options.inputPath, load, store, session).format;
    session.say(fmt::format("{}: {}, {}", inputName(options.inputPath),
                            formatTitle(isForeign(format) ? format : RecordingFormat::SysInfo),
                            counted(static_cast<std::size_t>(store.deviceCount()), "device")));
    return {ExitStatus::Success, sysInfoXml(store, options.hasAllCategories)};
}

}  // namespace

void addConvertCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<ConvertOptions>();
    CLI::App& command = *parent.add_subcommand("convert", "Turn another program's recording into SysInfo XML");
    options->addInput(command, "FILE", options->inputPath, "The recording, - for standard input").required();
    options->addOutput(command);
    allowOnly(*command.add_option("--from", options->from, "Format of FILE"), formatNames());
    command.add_flag("--all-categories", options->hasAllCategories,
                     "Internal properties and such as change by themselves as well");
    command.add_flag("--anonymize", options->isAnonymous,
                     "Pseudonyms for serial numbers, addresses, UUIDs and host names");
    options->addLogging(command);
    command.footer(CONVERT_FOOTER);
    setAction(command, session, options, [options, &session] { return convert(*options, session); });
}

}  // namespace vrx::cli
