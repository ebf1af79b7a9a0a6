#include "libReport/CheckReport.h"

#include <algorithm>

#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptWalk.h"
#include "libReport/ReportFindings.h"
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

}  // namespace

std::size_t CheckReport::missingCount() const noexcept {
    return static_cast<std::size_t>(std::ranges::count(devices, true, &DeviceProblem::isMissing));
}

CheckReport checkReport(const Inventory& inventory, const StateManager& machine, bool passed) {
    CheckReport report;
    report.verdict = verdictOf(inventory, passed);
    report.givenUpPatterns = static_cast<std::size_t>(inventory.summary().patternsGivenUp);
    report.deviceElements = contentOf(*inventory.script().RootElement()).devices;
    report.machineDevices = machine.deviceCount();
    report.notices = noticesOf(inventory);
    report.extra = inventory.extraDevices();
    report.unsatisfied = inventory.unsatisfiedDevices();
    report.annotatedScript = &inventory.script();
    if (!passed) {
        const Array<Finding> findings = inventory.findings();
        addFindings(findings, inventory, &machine, report.findings, report.devices);
        report.forbidden = forbiddenDevices(findings);
    }
    report.headline = headlineOf(report);
    return report;
}

}  // namespace vrx
