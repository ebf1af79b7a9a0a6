#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/time/DateTime.h"
#include "libDiagnosis/DeviceProblem.h"
#include "libDiagnosis/Fault.h"
#include "libDiagnosis/certainty/Doubt.h"
#include "libDiagnosis/certainty/Verdict.h"
#include "libDiagnosis/waivers/ApplyWaivers.h"
#include "libInventory/Finding.h"
#include "libInventory/ImportReport.h"
#include "libInventory/Inventory.h"
#include "libReport/CheckedElements.h"
#include "libReport/MachineIdentity.h"
#include "libReport/ProgramVersion.h"
#include "libReport/ReportWriter.h"
#include "libReport/TypeCounts.h"
#include "libReport/explain/ElementStory.h"
#include "libReport/html/MachinePlaces.h"
#include "libReport/lint/ScriptMistakes.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/results/TestRunEventImp.h"

/// What a check found, as data; text and JSON are written from it. CheckRun.h makes one of a machine and a script; who
/// has an inventory that has run already makes it of that:
///
///     const bool passed = inventory.run();
///     CheckReport report = checkReport(inventory, machine, passed);
///     report.script = "golden.xml";
///     std::cout << writerNamed(checkWriters(), "json")->write(report, TextFormat());
namespace vrx {

/// A mistake in the script that the run told of and passed over.
struct ScriptNotice {
    FindingKind kind = FindingKind::UnknownElement;
    ElementPlace place;
    String element;  ///< its XML
};

/// One finding of the run at one element.
struct ReportFinding {
    FindingKind kind = FindingKind::UnsatisfiedOther;
    ElementPlace place;
    String element;                     ///< the element's name
    String part;                        ///< of a part that is not met its name
    Array<String> texts;                ///< the engine's words
    std::optional<std::size_t> device;  ///< in a `device` element: which of the report's devices that is
};

/// A report keeps no store alive and borrows nothing but the script with the findings.
struct CheckReport {
    Verdict verdict = Verdict::NotRun;
    std::string headline;  ///< what is to be said first, in one line
    std::optional<bool> inventorySatisfied;
    std::size_t givenUpPatterns = 0;
    std::uint64_t combinations = 1;  ///< of alternatives
    bool hasUntried = false;         ///< some were left undecided, so that a run that did not pass is

    bool isAssignedExactly = false;             ///< a pass that the greedy assignment would have failed
    std::vector<ElementPlace> exactlyAssigned;  ///< the elements that it would have left without a device

    std::string script;                ///< how reports call it; a path as a rule
    std::optional<std::string> state;  ///< the same of the recording; none for the machine that the program runs on
    Array<String> fileErrors;          ///< why one of them did not load
    std::size_t deviceElements = 0;    ///< of the script
    std::size_t machineDevices = 0;
    Array<UnreadSource> unread;  ///< what could not be read of the machine
    ImportReport import;         ///< what the import of its recording passed over; empty when it was none
    MachineIdentity machine;

    std::string_view version = programVersion();
    DateTime started;  ///< when the check began; else when the report was made
    std::chrono::steady_clock::duration duration{};

    ScriptMistakes mistakes;  ///< for which the script was refused
    std::vector<ScriptNotice> notices;
    std::vector<ReportFinding> findings;  ///< in document order
    std::vector<DeviceProblem> devices;  ///< `device` elements without a device or with findings; likewise, parts first
    std::vector<Inventory::DeviceSpec> forbidden;  ///< of each `not` that is not met the first device that it describes
    Array<Inventory::DeviceSpec> extra;            ///< devices of the machine beyond the script

    std::vector<Fault> faults;            ///< one entry for each thing that is wrong
    std::vector<WaivedFault> waived;      ///< faults that do not count, because somebody decided so
    std::vector<Waiver> expiredWaivers;   ///< each would cover a fault
    std::vector<Waiver> idleWaivers;      ///< these cover nothing
    std::vector<CheckedElement> checked;  ///< what became of every `device` element and rule; see CheckBasis
    std::vector<PlaceGroup> places;       ///< the machine, sorted by place; see CheckBasis
    std::vector<FaultKind> warningKinds;  ///< a monitoring system is only warned of faults of these kinds

    std::vector<TypeCount> counts;      ///< of what was asked for, by type; only for who wants to read them
    std::optional<ElementStory> story;  ///< of the element that somebody asked about

    /// Why the answer is not certain, if it is not; else what it does not hang on.
    std::vector<Doubt> doubts;

    Array<Inventory::DeviceSpec> unsatisfied;  ///< as the engine lists them
    Array<TestRunEventImp> events;             ///< without the closing "InventoryTestFailed"

    /// The inventory's script; null when it did not load.
    const XmlDocument* annotatedScript = nullptr;
    bool showsAnnotatedScript = false;  ///< JSON holds it too
};

class WantedDevices;

/// How much a report trusts the engine's answer.
struct CheckBasis {
    const ImportReport* import = nullptr;          ///< of the machine's recording; borrowed, null for none
    bool isPlain = false;                          ///< the verdict is the engine's answer, whatever is not known
    const std::vector<Waiver>* waivers = nullptr;  ///< borrowed; null for none
    std::optional<DateTime> started{};             ///< when the check began; none for now
    bool listsElements = true;  ///< for writers that want `checked` and `places`; it costs a few microseconds for each
    bool listsFindings = true;  ///< for writers that want `findings`, `devices` and `forbidden`; likewise
    WantedDevices* asked =
        nullptr;  ///< what checks of other machines have read off the script; borrowed, null for none
};

/// Requires: the inventory has run on that machine, and `passed` is its answer. What the inventory cannot know (names,
/// events, duration, whether the script was met leaving extra devices aside) is left for the caller.
CheckReport checkReport(const Inventory& inventory, const StateManager& machine, bool passed,
                        const CheckBasis& basis = CheckBasis());

/// text: the verdict, missing and extra devices, the findings in the order of the script, counts
/// and time; requires that the script and the machine were loaded. The others are for programs, and speak of a check
/// that did not come to run as well; docs/formats.md describes them.
ReportWriters<CheckReport> checkWriters();

}  // namespace vrx
