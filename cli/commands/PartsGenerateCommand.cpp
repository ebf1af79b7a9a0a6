#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands/Commands.h"
#include "cli/input/MachineSource.h"
#include "cli/input/MistakesFound.h"
#include "cli/input/PartsListFile.h"
#include "cli/program/CommonOptions.h"
#include "cli/terminal/StageProgress.h"
#include "libCommon/text/UuCode.h"
#include "libDiagnosis/certainty/Unknowns.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libReport/parts/PartGenerationReport.h"
#include "libReport/text/DoubtText.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx::cli {

namespace {

constexpr const char* PARTS_GENERATE_FOOTER =
    "Counts how many of each part the machine holds and checks them all together, behind\n"
    "the base script. Parts that claim the same devices are reported in groups.\n"
    "Exit status: 0 the parts were generated; 1 they were not; 2 a file cannot be read,\n"
    "parsed or written, has mistakes, or a part is blank or undecidable; 3 undetermined: the machine\n"
    "holds none of the parts and there is no base script, or it could not be read where\n"
    "parts may be; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory parts generate parts.xml\n"
    "  vrx-inventory parts generate parts.xml --state machine.xml --format json\n"
    "  vrx-inventory parts generate parts.xml --base base.xml --format xml -o out.xml";

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

/// What parts and the base script ask for and nobody can tell of the machine, in words. A device that was not seen
/// belongs to a part that is not counted.
class PartDoubts {
public:
    PartDoubts(const StateManager& machine, const ImportReport& import)
        : m_machine(machine), m_unknowns(machine, &import) {}

    void lookAt(const String& xml) {
        XmlDocument document;
        if (m_unknowns.isEmpty() || !document.Parse(toXmlSafe(xml))) {
            return;
        }
        for (ScriptWalk walk(*document.RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
            if (walk->kind == vocabulary::ElementKind::Device || walk->kind == vocabulary::ElementKind::FailOnExtra) {
                lookAtHolder(*walk);
            } else if (walk->kind == vocabulary::ElementKind::Property && walk->holder != nullptr) {
                lookAtProperty(*walk);
            }
        }
    }

    bool isEmpty() const noexcept { return m_texts.empty(); }

    std::string text() const {
        const std::size_t more = m_texts.size() - 1;
        return m_texts.front() +
               (more > 0 ? fmt::format(", and {} more doubt{}", more, more == 1 ? "" : "s") : std::string());
    }

private:
    void lookAtHolder(const ScriptPlace& place) {
        const bool isRule = place.kind == vocabulary::ElementKind::FailOnExtra;
        const Doubt::Asked asked = isRule               ? Doubt::Asked::Extra
                                   : place.isUnderNot() ? Doubt::Asked::Forbidden
                                                        : Doubt::Asked::Device;
        const String type(attributeOf(*place.element, vocabulary::TYPE));
        add(m_unknowns.hidden(CapabilityImp(type), asked != Doubt::Asked::Device), asked, type);
    }

    void lookAtProperty(const ScriptPlace& place) {
        const String type(attributeOf(*place.holder, vocabulary::TYPE));
        const String key = fromXmlSafe(attributeOf(*place.element, vocabulary::KEY));
        for (const auto& device : m_machine.devicesCapableOf(CapabilityImp(type))) {
            if (const std::optional<Doubt> doubt = m_unknowns.property(*device, key)) {
                add(doubt, Doubt::Asked::Property, type, key);
                return;
            }
        }
    }

    void add(std::optional<Doubt> doubt, Doubt::Asked asked, const String& type, const String& key = String()) {
        if (!doubt) {
            return;
        }
        doubt->asked = asked;
        doubt->spec.type = type;
        doubt->key = key;
        std::string text = doubtText(*doubt);
        if (std::find(m_texts.begin(), m_texts.end(), text) == m_texts.end()) {
            m_texts.push_back(std::move(text));
        }
    }

    const StateManager& m_machine;
    Unknowns m_unknowns;
    std::vector<std::string> m_texts;
};

/// Says what it hangs on that the answer is not certain.
void judgeDoubts(const PartsGenerateOptions& options, const String& base, const ImportReport& import,
                 const PartGenerationReport& report, CommandResult& result) {
    PartDoubts doubts(*report.machine, import);
    for (const Inventory::PartSpec& part : report.partsList) {
        doubts.lookAt(part.xml);
    }
    doubts.lookAt(concat(u"<inventory-check>", base, u"</inventory-check>"));
    if (!doubts.isEmpty()) {
        result.status = ExitStatus::Undetermined;
        result.note = options.listPath + ": undetermined: " + doubts.text();
    }
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
    const ImportReport import = loadMachine(options.statePath, store, session);
    report.machine = &store;
    report.machineName = machineName(options.statePath);
    // The report says it in words that help.
    const ErrorStreamLog::Quiet quiet(LogPriority::Error);
    const StageProgress progress(session.console, "looking for the parts");
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
    if (!options.isPlain) {
        judgeDoubts(options, base, import, report, result);
    }
    return result;
}

}  // namespace

void addPartsGenerateCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<PartsGenerateOptions>();
    CLI::App& command = *parent.add_subcommand("generate", "Find which parts a machine holds, and how many of each");
    options->addInput(command, "LIST", options->listPath, "The parts list").required();
    options->addState(command);
    options->addInput(command, "--base", options->basePath, "What the machine must hold besides: a script's inner XML")
        .type_name("SCRIPT");
    options->addPlain(command, "mistakes are passed over");
    options->addFormat(command, partGenerationWriters());
    options->addOutput(command);
    options->addLogging(command);
    command.footer(PARTS_GENERATE_FOOTER);
    setAction(command, session, options, [options, &session] { return generateParts(*options, session); });
}

}  // namespace vrx::cli
