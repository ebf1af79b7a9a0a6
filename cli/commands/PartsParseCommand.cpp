#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/input/InputFile.h"
#include "cli/input/XmlFileProblem.h"
#include "cli/program/CommonOptions.h"
#include "libCommon/io/FileLoader.h"
#include "libReport/parts/PartsReport.h"
#include "libReport/text/TextPieces.h"

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

/// Why nothing was read. The engine names the file and the place in its own form "(row,column): reason".
std::string problemOf(const PartsReport& report) {
    const std::string& path = report.path;
    if (report.result != Inventory::PartsXmlError) {
        return fileProblem(path, u"it holds no part", EXPECTED_PARTS_LIST);
    }
    XmlDocument document;
    std::string bytes;
    String reason;
    if (path == "-") {
        return inputName(path) + ": " + report.error.toUtf8() + "; " + EXPECTED_PARTS_LIST;
    }
    if (!loadFile(String::UTF8Decode(path), bytes, reason)) {
        return fileProblem(path, reason, EXPECTED_PARTS_LIST);
    }
    document.ParseUtf8(bytes);
    return xmlProblem(path, document, EXPECTED_PARTS_LIST);
}

void parseList(PartsReport& report) {
    const String name = String::UTF8Decode(report.path);
    if (report.path != "-") {
        report.result = Inventory::parsePartsListFile(name, report.parts, report.error);
        return;
    }
    std::string bytes;
    report.result = loadInput(report.path, bytes, report.error)
                        ? Inventory::parsePartsListBytes(bytes, name, report.parts, report.error)
                        : Inventory::PartsXmlError;
}

CommandResult parseParts(const PartsParseOptions& options, const Session& session) {
    PartsReport report;
    report.path = options.path;
    parseList(report);
    const bool hasParts =
        report.result == Inventory::PartsBlank || (report.result == Inventory::PartsParsed && !report.parts.isEmpty());
    CommandResult result;
    if (hasParts || options.format != "text") {
        result.text = options.written(report, partsWriters(), session);
    }
    if (!hasParts) {
        result.note = problemOf(report);
    }
    result.status = !hasParts                                ? ExitStatus::BadInput
                    : report.result == Inventory::PartsBlank ? ExitStatus::NotPassed
                                                             : ExitStatus::Success;
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
