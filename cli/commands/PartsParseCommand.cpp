#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/input/MistakesFound.h"
#include "cli/program/CommonOptions.h"
#include "libReport/parts/PartsReport.h"

namespace vrx::cli {

namespace {

constexpr const char* PARTS_PARSE_FOOTER =
    "A part without any device description is blank.\n"
    "Exit status: 0 every part has a description; 1 there are blank parts; 2 the list\n"
    "has mistakes, cannot be read or parsed, or holds no part; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory parts parse parts.xml\n"
    "  vrx-inventory parts parse parts.xml --format json";

struct PartsParseOptions : CommonOptions {
    std::string path;
};

/// Reads the list. Returns why there are no parts in it; empty when there are some. Throws a MistakesFound.
std::string readList(PartsReport& report, bool passesMistakesOver) {
    const String name = String::UTF8Decode(report.path);
    std::string bytes;
    String reason;
    if (!loadInput(report.path, bytes, reason)) {
        report.result = Inventory::parsePartsListFile(name, report.parts, report.error);
        return fileProblem(report.path, reason, FileKind::PartsList);
    }
    report.result = Inventory::parsePartsListBytes(bytes, name, report.parts, report.error, &report.blankParts);
    if (report.result == Inventory::PartsXmlError || !otherKind(bytes, FileKind::PartsList).empty()) {
        XmlDocument document;
        document.ParseUtf8(bytes);
        return xmlProblem(report.path, bytes, document, FileKind::PartsList);
    }
    XmlDocument document;
    if (!passesMistakesOver && document.ParseUtf8(bytes)) {
        refuseMistakes(report.path, document);
    }
    const bool hasParts = !report.parts.isEmpty() || !report.blankParts.isEmpty();
    return hasParts ? std::string() : fileProblem(report.path, u"it holds no part", FileKind::PartsList);
}

CommandResult refusal(const PartsParseOptions& options, const Session& session, PartsReport& report,
                      const MistakesFound& found) {
    report.mistakes = found.mistakes();
    CommandResult result{found.status(), {}, {}, found.lines()};
    if (options.format != "text") {
        result.text = options.written(report, partsWriters(), session);
    }
    return result;
}

CommandResult parseParts(const PartsParseOptions& options, const Session& session) {
    PartsReport report;
    report.path = options.path;
    CommandResult result;
    try {
        result.note = readList(report, options.isPlain);
    } catch (const MistakesFound& found) {
        return refusal(options, session, report, found);
    }
    const bool hasParts = result.note.empty();
    if (hasParts || options.format != "text") {
        result.text = options.written(report, partsWriters(), session);
    }
    result.status = !hasParts                     ? ExitStatus::BadInput
                    : report.blankParts.isEmpty() ? ExitStatus::Success
                                                  : ExitStatus::NotPassed;
    return result;
}

}  // namespace

void addPartsParseCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<PartsParseOptions>();
    CLI::App& command = *parent.add_subcommand("parse", "Read a parts list and print its parts");
    options->addInput(command, "LIST", options->path, "The parts list, - for standard input").required();
    options->addPlain(command, "mistakes are passed over");
    options->addFormat(command, partsWriters());
    options->addOutput(command);
    options->addLogging(command);
    command.footer(PARTS_PARSE_FOOTER);
    setAction(command, session, options, [options, &session] { return parseParts(*options, session); });
}

}  // namespace vrx::cli
