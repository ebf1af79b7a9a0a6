#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/files/InputFile.h"
#include "cli/program/CommonOptions.h"
#include "libCommon/xml/XmlDocument.h"
#include "libDiagnosis/waivers/WriteWaivers.h"
#include "libReport/text/TextPieces.h"
#include "libReport/waivers/WaiverDraft.h"

namespace vrx::cli {

namespace {

constexpr const char* WAIVE_FOOTER =
    "Each fault gets a waiver for its kind, type and place, and for what differs. Read them\n"
    "before you use them: leave out what is to be mended.\n"
    "Exit status: 0 written; 1 the report has no faults; 2 wrong usage, or a file that cannot\n"
    "be read or written; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory check golden.xml --format json -o report.json\n"
    "  vrx-inventory waive report.json --reason \"until the delivery of March\" \\\n"
    "      --decided-by \"J. Doe\" --expires 2027-03-31 -o waivers.xml\n"
    "  vrx-inventory check golden.xml --waivers waivers.xml";

struct WaiveOptions : CommonOptions {
    std::string reportPath;
    std::string reason;
    std::string decidedBy;
    std::string expires;
};

/// What the waivers have in common. Throws a CommandFailure when they would be refused for it.
Waiver decisionOf(const WaiveOptions& options) {
    Waiver decision;
    decision.reason = String::UTF8Decode(options.reason);
    decision.decidedBy = String::UTF8Decode(options.decidedBy);
    decision.expires = String::UTF8Decode(options.expires);
    Waiver trial = decision;
    trial.type = u"System";
    XmlDocument document;
    std::vector<WaiverMistake> mistakes;
    document.Parse(waiversXml({trial}));
    readWaivers(*document.RootElement(), mistakes);
    if (!mistakes.empty()) {
        throw CommandFailure(ExitStatus::BadInput, mistakes.front().text);
    }
    return decision;
}

CommandResult waive(const WaiveOptions& options, const Session&) {
    const Waiver decision = decisionOf(options);
    std::string json;
    String reason;
    if (!loadInput(options.reportPath, json, reason)) {
        throw CommandFailure(ExitStatus::BadInput, inputName(options.reportPath) + ": " + reason.toUtf8());
    }
    const WaiverDraft draft = draftWaivers(json, decision);
    if (!draft.error.empty()) {
        throw CommandFailure(ExitStatus::BadInput, fmt::format("{}: {}; expected what check --format json writes",
                                                               inputName(options.reportPath), draft.error));
    }
    CommandResult result{draft.waivers.empty() ? ExitStatus::NotPassed : ExitStatus::Success,
                         waiversXml(draft.waivers).toUtf8()};
    if (draft.waivers.empty()) {
        result.note = inputName(options.reportPath) + ": no fault to waive";
    }
    if (draft.leftOut > 0) {
        result.problems.push_back(fmt::format("{} left out: neither a type nor a place tells what they are about",
                                              counted(draft.leftOut, "fault")));
    }
    return result;
}

}  // namespace

void addWaiveCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<WaiveOptions>();
    CLI::App& command = *parent.add_subcommand("waive", "Write waivers for the faults of a report");
    options->addInput(command, "REPORT", options->reportPath, "The JSON report of a check, - for standard input")
        .required();
    command.add_option("--reason", options->reason, "Why they are waived")->required();
    command.add_option("--decided-by", options->decidedBy, "Who decided so")->type_name("NAME")->required();
    command.add_option("--expires", options->expires, "The last day on which they hold")
        ->type_name("YYYY-MM-DD")
        ->required();
    options->addOutput(command);
    options->addLogging(command);
    command.footer(WAIVE_FOOTER);
    setAction(command, session, options, [options, &session] { return waive(*options, session); });
}

}  // namespace vrx::cli
