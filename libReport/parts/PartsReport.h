#pragma once

#include <string>

#include "libInventory/Inventory.h"
#include "libReport/ReportWriter.h"
#include "libReport/lint/ScriptMistakes.h"

namespace vrx {

/// What reading a parts list gave.
///
///     PartsReport report{"parts.xml"};
///     report.result = Inventory::parsePartsListBytes(bytes, u"parts.xml", report.parts, report.error);
///     std::cout << partsJson(report, TextFormat());
struct PartsReport {
    std::string path;  ///< as given
    Inventory::ParsePartsResult result = Inventory::PartsNoRoot;
    String error;
    Array<Inventory::PartSpec> parts;
    Array<String> blankParts;  ///< the names of those without a description
    ScriptMistakes mistakes;   ///< for which the list was refused
};

/// text: the blank parts first, then a table of the others; requires that parts were read. json: all of it.
ReportWriters<PartsReport> partsWriters();

std::string partsText(const PartsReport& report, const TextFormat& format);
std::string partsCsv(const PartsReport& report, const TextFormat& format);
std::string partsJson(const PartsReport& report, const TextFormat& format);

}  // namespace vrx
