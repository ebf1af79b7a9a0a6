/// Waived faults are set aside, and what the script asks for is told of with all faults in sight, so that each element
/// knows whether all that is wrong with it is waived.
///
/// A machine passes with waived faults only when these account for everything that kept it from passing: no fault is
/// left, no element has failed or is in doubt for another reason, and the run tried all that there was to try. Anything
/// else leaves the verdict as it is.

#include "libReport/waivers/ReportWaivers.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "libCommon/text/PrintableText.h"
#include "libInventory/Finding.h"

namespace vrx {

namespace {

using Outcome = CheckedElement::Outcome;

/// Parts the faults of an element, which are numbered with the waived ones behind those that are left.
void partFaults(CheckedElement& element, std::size_t left) {
    for (const std::size_t index : std::exchange(element.faults, {})) {
        if (index < left) {
            element.faults.push_back(index);
        } else {
            element.waived.push_back(index - left);
        }
    }
    const bool isWrong = element.outcome == Outcome::Failed || element.outcome == Outcome::Undetermined;
    if (isWrong && element.faults.empty() && !element.waived.empty()) {
        element.outcome = Outcome::Waived;
    }
}

bool isTriedInFull(const Inventory& inventory) {
    const RunSummary& summary = inventory.summary();
    return summary.patternsGivenUp == 0 && !summary.hasUntried && summary.undecidedExtras.isEmpty();
}

/// Whether as many devices at least as rules found too many have a waived fault. With equal elements the engine may
/// give the faulty one to another of them, and then a good one is too many in its stead.
bool explainExtraDevices(const CheckReport& report) {
    std::map<String, std::ptrdiff_t> unexplained;
    for (const Inventory::DeviceSpec& extra : report.extra) {
        ++unexplained[extra.type];
    }
    for (const WaivedFault& waived : report.waived) {
        if (waived.fault.device) {
            --unexplained[waived.fault.device->spec.type];
        }
        for (const FoldedFault& folded : waived.fault.withIt) {
            unexplained[folded.spec.type] -= folded.guid.isEmpty() ? 0 : 1;
        }
    }
    return std::ranges::all_of(unexplained, [](const auto& count) { return count.second <= 0; });
}

/// Such a rule has no fault of its own.
void waiveConsequences(CheckReport& report) {
    if (!explainExtraDevices(report)) {
        return;
    }
    for (CheckedElement& element : report.checked) {
        const bool isUntold = element.faults.empty() && element.waived.empty();
        if (element.kind == CheckedElement::Kind::Extra && element.outcome == Outcome::Failed && isUntold) {
            element.outcome = Outcome::Waived;
        }
    }
}

bool isOtherwiseFine(const CheckReport& report) {
    const auto isFine = [](const CheckedElement& element) {
        return element.outcome != Outcome::Failed && element.outcome != Outcome::Undetermined;
    };
    const auto isOfTheRun = [](const ReportFinding& finding) {
        return finding.kind == FindingKind::UnexpectedException || finding.kind == FindingKind::PropertyOutsideDevice;
    };
    return std::ranges::all_of(report.checked, isFine) && std::ranges::none_of(report.findings, isOfTheRun);
}

}  // namespace

void waiveFaults(CheckReport& report, const Inventory& inventory, const std::vector<Waiver>& waivers) {
    WaivedFaults outcome = applyWaivers(std::move(report.faults), waivers, report.started);
    const std::size_t left = outcome.left.size();
    report.faults = std::move(outcome.left);
    for (const WaivedFault& waived : outcome.waived) {
        report.faults.push_back(waived.fault);
    }
    report.checked = checkedElements(inventory, report);
    report.faults.erase(report.faults.begin() + static_cast<std::ptrdiff_t>(left), report.faults.end());
    for (CheckedElement& element : report.checked) {
        partFaults(element, left);
    }
    report.waived = std::move(outcome.waived);
    report.expiredWaivers = std::move(outcome.expired);
    report.idleWaivers = std::move(outcome.idle);
    if (left == 0) {
        waiveConsequences(report);
    }
    const bool isOpen = report.verdict == Verdict::Failed || report.verdict == Verdict::Undecided;
    if (isOpen && left == 0 && !report.waived.empty() && isOtherwiseFine(report) && isTriedInFull(inventory)) {
        report.verdict = Verdict::Passed;
    }
}

std::string waiverText(const Waiver& waiver) {
    const std::string id = waiver.id.isEmpty() ? "" : printable(waiver.id) + ": ";
    return id + printable(waiver.reason) + " (" + printable(waiver.decidedBy) + ", until " + printable(waiver.expires) +
           ")";
}

}  // namespace vrx
