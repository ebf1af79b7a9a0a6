#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/input/InputFile.h"
#include "cli/input/XmlFileProblem.h"
#include "cli/program/CommonOptions.h"
#include "libReport/parts/PartsReport.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED_PARTS_LIST = "expected a parts list, XML with <part> elements in its root";

constexpr const char* PARTS_PARSE_FOOTER =
    "A part without any device description is blank.\n"
    "Exit status: 0 every part has a description; 1 there are blank parts; 2 the list\n"
    "cannot be read or parsed, or holds no part; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory parts parse parts.xml\n"
    "  vrx-inventory parts parse parts.xml --format json";

struct PartsParseOptions : CommonOptions {
    std::string path;
};

/// Reads the list. Returns why there are no parts in it; empty when there are some.
std::string readList(PartsReport& report) {
    const String name = String::UTF8Decode(report.path);
    std::string bytes;
    String reason;
    if (!loadInput(report.path, bytes, reason)) {
        report.result = Inventory::parsePartsListFile(name, report.parts, report.error);
        return fileProblem(report.path, reason, EXPECTED_PARTS_LIST);
    }
    report.result = Inventory::parsePartsListBytes(bytes, name, report.parts, report.error, &report.blankParts);
    if (report.result == Inventory::PartsXmlError) {
        XmlDocument document;
        document.ParseUtf8(bytes);
        return xmlProblem(report.path, document, EXPECTED_PARTS_LIST);
    }
    const bool hasParts = !report.parts.isEmpty() || !report.blankParts.isEmpty();
    return hasParts ? std::string() : fileProblem(report.path, u"it holds no part", EXPECTED_PARTS_LIST);
}

CommandResult parseParts(const PartsParseOptions& options, const Session& session) {
    PartsReport report;
    report.path = options.path;
    CommandResult result;
    result.note = readList(report);
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
    command.add_option("LIST", options->path, "The parts list, - for standard input")->required();
    options->addFormat(command, partsWriters());
    options->addOutput(command);
    options->addLogging(command);
    command.footer(PARTS_PARSE_FOOTER);
    setAction(command, session, options, [options, &session] { return parseParts(*options, session); });
}

}  // namespace vrx::cli
