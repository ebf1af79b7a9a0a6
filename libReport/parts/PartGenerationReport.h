#pragma once

#include <string>

#include "libInventory/Inventory.h"
#include "libReport/ReportWriter.h"
#include "libReport/lint/ScriptMistakes.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// What parts generation found, and what it was made from.
///
///     PartGenerationReport report;
///     report.machine = &machine;
///     ...  // the results of Inventory::generatePartsList
///     std::cout << partGenerationJson(report, TextFormat());
struct PartGenerationReport {
    std::string machineName;
    const StateManager* machine = nullptr;  ///< set before a report is made
    Array<Inventory::PartSpec> partsList;
    TestResultImp result;
    Array<Inventory::PartSpec> generatedParts;  ///< one for each instance, with its devices
    Inventory::DeviceToPartsTable deviceToParts{32};
    Array<Array<Inventory::PartSpec>> ambiguousGroups;
    Array<Inventory::DeviceSpec> extraDevices;
    XmlDocument document;     ///< the engine's own report
    ScriptMistakes mistakes;  ///< for which the list or the base script was refused; then there is nothing else

    bool isGenerated() const noexcept {
        return result.code() == TestResultImp::Passed || result.code() == TestResultImp::PassedWithExtraDevices;
    }
};

/// text: how many of each part were found, which devices each instance stands for, and for parts that cannot be told
/// apart which devices they share and what would tell them apart. json: all that was found. xml: the report document.
ReportWriters<PartGenerationReport> partGenerationWriters();

std::string partGenerationText(const PartGenerationReport& report, const TextFormat& format);
std::string partGenerationCsv(const PartGenerationReport& report, const TextFormat& format);
std::string partGenerationJson(const PartGenerationReport& report, const TextFormat& format);
std::string partGenerationXml(const PartGenerationReport& report, const TextFormat& format);

}  // namespace vrx
