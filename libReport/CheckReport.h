#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/ScriptContent.h"
#include "libReport/ReportWriter.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

enum class Verdict {
    NotRun,  ///< the script or the machine could not be loaded
    Passed,
    Failed,
    NothingToCheck,  ///< the script asks for nothing
    Undecided,       ///< patterns were given up at their work limit, and another answer to them could change the result
};

/// Everything that a check found. Documents and devices are borrowed.
struct CheckReport {
    Verdict verdict = Verdict::NotRun;
    std::optional<bool> inventorySatisfied;
    std::string script;                ///< path as given
    std::optional<std::string> state;  ///< path as given; none for the machine that the program runs on
    Array<String> fileErrors;
    Array<TestRunEventImp> events;  ///< without the closing "InventoryTestFailed"
    Array<Inventory::DeviceSpec> missing;
    Array<Inventory::DeviceSpec> extra;
    const XmlDocument* annotatedScript = nullptr;  ///< null when the script did not load
    const StateManager* machine = nullptr;         ///< null when the machine did not load
    ScriptContent content;
    std::size_t givenUpPatterns = 0;
    std::chrono::steady_clock::duration duration{};  ///< loading included
};

/// text: the verdict, the devices that are missing and those too many, the findings in the order of the script, counts
/// and time; requires that the script and the machine were loaded. json: one object.
ReportWriters<CheckReport> checkWriters();

}  // namespace vrx
