#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/input/XmlFileProblem.h"
#include "cli/program/CommonOptions.h"
#include "libCommon/io/FileLoader.h"
#include "libReport/parts/PartsReport.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED = "expected a parts list, XML with <part> elements in its root";

constexpr const char* FOOTER =
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
std::string problemOf(const std::string& path, const PartsOutcome& outcome) {
    if (outcome.result != Inventory::PartsXmlError) {
        return fileProblem(path, u"it holds no part", EXPECTED);
    }
    XmlDocument document;
    std::string bytes;
    String reason;
    if (path == "-") {
        return inputName(path) + ": " + outcome.error.toUtf8() + "; " + EXPECTED;
    }
    if (!loadFile(String::UTF8Decode(path), bytes, reason)) {
        return fileProblem(path, reason, EXPECTED);
    }
    document.ParseUtf8(bytes);
    return xmlProblem(path, document, EXPECTED);
}

ExitStatus parse(const PartsParseOptions& options, const Session& session) {
    PartsOutcome outcome;
    outcome.result = Inventory::parsePartsListFile(String::UTF8Decode(options.path), outcome.parts, outcome.error);
    const bool hasParts = outcome.result == Inventory::PartsBlank ||
                          (outcome.result == Inventory::PartsParsed && !outcome.parts.isEmpty());
    if (options.format == "json") {
        options.writeResult(session, partsJson(outcome));
    } else if (hasParts) {
        options.writeResult(session, partsText(outcome, options.path, options.textFormat(session)));
    }
    if (!hasParts) {
        throw CommandFailure(ExitStatus::BadInput, problemOf(options.path, outcome));
    }
    return outcome.result == Inventory::PartsBlank ? ExitStatus::NotPassed : ExitStatus::Success;
}

}  // namespace

void addPartsParseCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<PartsParseOptions>();
    CLI::App& command = *parent.add_subcommand("parse", "Read a parts list and print its parts");
    command.add_option("LIST", options->path, "The parts list, - for standard input")->required();
    options->addFormat(command, {"text", "json"});
    options->addOutput(command);
    options->addLogging(command);
    command.footer(FOOTER);
    command.callback([options, &session] {
        options->applyLogging(session);
        session.action = [options, &session] {
            return parse(*options, session);
        };
    });
}

}  // namespace vrx::cli
