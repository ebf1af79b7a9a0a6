#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/input/MachineSource.h"
#include "cli/input/MistakesFound.h"
#include "cli/input/PartsListFile.h"
#include "cli/program/CommonOptions.h"
#include "libReport/parts/PartGenerationReport.h"
#include "libSystemState/StateManager.h"

namespace vrx::cli {

namespace {

constexpr const char* PARTS_GENERATE_FOOTER =
    "Counts how many of each part the machine holds and checks them all together, behind\n"
    "the base script. Parts that claim the same devices are reported in groups.\n"
    "Exit status: 0 the parts were generated; 1 they were not; 2 a file cannot be read,\n"
    "parsed or written, has mistakes, or a part is blank or undecidable; 3 undetermined: the machine\n"
    "holds none of the parts and there is no base script, or this machine cannot be\n"
    "read; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory parts generate parts.xml\n"
    "  vrx-inventory parts generate parts.xml --state machine.xml --format json\n"
    "  vrx-inventory parts generate parts.xml --base base.xml --format xml -o report.xml";

struct PartsGenerateOptions : CommonOptions {
    std::string listPath;
    std::string basePath;
};

/// The base script. Fills in the parts of the list.
String loadInputs(const PartsGenerateOptions& options, PartGenerationReport& report) {
    report.partsList = loadPartsForGeneration(options.listPath, options.isPlain);
    return loadBaseScript(options.basePath, options.isPlain);
}

CommandResult refusal(const PartsGenerateOptions& options, const Session& session, PartGenerationReport& report,
                      const MistakesFound& found) {
    report.mistakes = found.mistakes();
    CommandResult result{found.status(), {}, {}, found.lines()};
    if (options.format == "json") {
        result.text = options.written(report, partGenerationWriters(), session);
    }
    return result;
}

CommandResult generateParts(const PartsGenerateOptions& options, Session& session) {
    PartGenerationReport& report = session.make<PartGenerationReport>();
    String base;
    try {
        base = loadInputs(options, report);
    } catch (const MistakesFound& found) {
        return refusal(options, session, report, found);
    }
    StateManager& store = session.make<StateManager>();
    loadMachine(options.statePath, store, session);
    report.machine = &store;
    report.machineName = machineName(options.statePath);
    // The report says it in words that help.
    const ErrorStreamLog::Quiet quiet(*session.log, LogPriority::Error);
    report.result =
        Inventory::generatePartsListDataAndXml(report.partsList, base, report.generatedParts, report.deviceToParts,
                                               report.ambiguousGroups, report.extraDevices, report.document, &store);
    CommandResult result;
    result.text = options.written(report, partGenerationWriters(), session);
    if (!report.isGenerated()) {
        result.status = ExitStatus::NotPassed;
    } else if (report.generatedParts.isEmpty() && trimmed(base).empty()) {
        result.status = ExitStatus::Undetermined;
        result.note = options.listPath + ": nothing to check: the machine holds none of the parts";
    }
    return result;
}

}  // namespace

void addPartsGenerateCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<PartsGenerateOptions>();
    CLI::App& command = *parent.add_subcommand("generate", "Find which parts a machine holds, and how many of each");
    options->addInput(command, "LIST", options->listPath, "The parts list").required();
    options->addState(command);
    options->addInput(command, "--base", options->basePath, "What the machine must hold besides: a script's inner XML");
    options->addPlain(command, "mistakes are passed over");
    options->addFormat(command, partGenerationWriters());
    options->addOutput(command);
    options->addLogging(command);
    command.footer(PARTS_GENERATE_FOOTER);
    setAction(command, session, options, [options, &session] { return generateParts(*options, session); });
}

}  // namespace vrx::cli
