#include "libReport/CheckReport.h"

#include <set>
#include <utility>

#include "libDiagnosis/Diagnosis.h"
#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptWalk.h"
#include "libReport/ReportFindings.h"
#include "libReport/waivers/ReportWaivers.h"
#include "libReport/writers/CheckHeadline.h"

namespace vrx {

namespace {

/// The first devices of every `not` whose content is there all the same.
std::vector<Inventory::DeviceSpec> forbiddenDevices(const Array<Finding>& findings) {
    std::vector<Inventory::DeviceSpec> devices;
    for (const Finding& finding : findings) {
        if (finding.kind != FindingKind::UnsatisfiedNot) {
            continue;
        }
        for (ScriptWalk walk(*finding.element); walk; ++walk) {
            if (walk->kind == vocabulary::ElementKind::Device) {
                devices.push_back(askedBy(*walk->element));
                break;
            }
        }
    }
    return devices;
}

std::vector<ScriptNotice> noticesOf(const Inventory& inventory) {
    std::vector<ScriptNotice> notices;
    for (const Finding& notice : inventory.notices()) {
        notices.push_back({notice.kind, placeIn(*notice.element), notice.element->toString()});
    }
    return notices;
}

/// Marks the problems of devices that may be none.
void markUndetermined(CheckReport& report) {
    std::set<std::pair<std::uint64_t, std::uint64_t>> places;
    for (const Doubt& doubt : report.doubts) {
        places.emplace(doubt.device.row, doubt.device.column);
    }
    for (DeviceProblem& problem : report.devices) {
        problem.isUndetermined = places.contains({problem.place.row, problem.place.column});
    }
}

void addAssignment(const RunSummary& summary, CheckReport& report) {
    report.isAssignedExactly = summary.isAssignedExactly;
    for (const XmlElement* const element : summary.exactlyAssigned) {
        report.exactlyAssigned.push_back(placeIn(*element));
    }
}

Verdict plainVerdict(bool passed) noexcept { return passed ? Verdict::Passed : Verdict::Failed; }

}  // namespace

CheckReport checkReport(const Inventory& inventory, const StateManager& machine, bool passed, const CheckBasis& basis) {
    CheckReport report;
    WantedDevices own;
    WantedDevices& asked = basis.asked != nullptr ? *basis.asked : own;
    Certainty certainty = basis.isPlain ? Certainty() : certaintyOf(inventory, machine, basis.import, passed, asked);
    report.verdict = basis.isPlain ? plainVerdict(passed) : verdictOf(inventory, passed, certainty);
    if (report.verdict != Verdict::Passed) {
        report.faults = diagnose(inventory, machine, certainty, asked);
    }
    report.doubts = std::move(certainty.doubts);
    report.unread = machine.unread();
    report.import = basis.import != nullptr ? *basis.import : ImportReport();
    report.combinations = inventory.summary().combinations;
    report.hasUntried = inventory.summary().hasUntried;
    if (passed) {
        addAssignment(inventory.summary(), report);
    }
    report.givenUpPatterns = static_cast<std::size_t>(inventory.summary().patternsGivenUp);
    report.deviceElements = contentOf(*inventory.script().RootElement()).devices;
    report.machineDevices = machine.deviceCount();
    report.machine = machineIdentity(machine);
    report.started = basis.started.value_or(DateTime::getCurrentDateTime());
    report.notices = noticesOf(inventory);
    report.extra = inventory.extraDevices();
    report.unsatisfied = inventory.unsatisfiedDevices();
    report.annotatedScript = &inventory.script();
    report.showsAnnotatedScript = basis.isPlain;
    if (!passed && (basis.listsFindings || basis.waivers != nullptr)) {
        const Array<Finding> findings = inventory.findings();
        addFindings(findings, inventory, &machine, report.findings, report.devices);
        report.forbidden = forbiddenDevices(findings);
        markUndetermined(report);
    }
    if (basis.waivers != nullptr) {
        waiveFaults(report, inventory, *basis.waivers);
    } else if (basis.listsElements) {
        report.checked = checkedElements(inventory, report);
    }
    if (basis.listsElements) {
        report.places = machinePlaces(machine, report.faults);
    }
    report.headline = headlineOf(report);
    return report;
}

}  // namespace vrx
