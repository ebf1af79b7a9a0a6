#include "libFleet/FleetResult.h"

namespace vrx {

namespace {

FleetVerdict fleetVerdict(Verdict verdict) noexcept {
    switch (verdict) {
        case Verdict::Passed: return FleetVerdict::Passed;
        case Verdict::Failed: return FleetVerdict::Failed;
        default: return FleetVerdict::Undetermined;
    }
}

}  // namespace

std::string_view nameOf(FleetVerdict verdict) noexcept {
    static constexpr std::string_view NAMES[] = {"passed", "failed", "undetermined", "unreadable"};
    return NAMES[static_cast<std::size_t>(verdict)];
}

FleetResult fleetResult(const std::string& file, const CheckReport& report) {
    FleetResult result;
    result.file = file;
    result.script = report.script;
    result.time = report.started.toIso8601().toUtf8();
    result.manufacturer = report.machine.manufacturer.toUtf8();
    result.model = report.machine.model.toUtf8();
    result.serialNumber = report.machine.serialNumber.toUtf8();
    result.hostName = report.machine.hostName.toUtf8();
    result.verdict = fleetVerdict(report.verdict);
    result.headline = report.headline;
    for (const Fault& fault : report.faults) {
        result.faults.push_back(fleetFault(fault));
    }
    return result;
}

FleetResult unreadableResult(const std::string& file, const std::string& reason) {
    FleetResult result;
    result.file = file;
    result.headline = reason;
    return result;
}

}  // namespace vrx
