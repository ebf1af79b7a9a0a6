#include "libDiagnosis/waivers/ApplyWaivers.h"

#include <algorithm>
#include <utility>

#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

namespace {

using SpecText = String Inventory::DeviceSpec::*;

/// Whether what the fault asks for, or a device in it, has that text.
bool names(const Fault& fault, SpecText member, const String& text) {
    return text.isEmpty() || fault.asked.*member == text || (fault.device && fault.device->spec.*member == text) ||
           (fault.other && fault.other->spec.*member == text);
}

bool isOfType(const Fault& fault, const CapabilityImp& type) {
    return type.isCapable(CapabilityImp(fault.asked.type)) ||
           (fault.device && type.isCapable(CapabilityImp(fault.device->spec.type)));
}

bool hasSerialNumber(const Fault& fault, const String& number) {
    return number.isEmpty() || (fault.device && fault.device->serialNumber == number) ||
           (fault.other && fault.other->serialNumber == number);
}

bool isOfKind(const Fault& fault, const Waiver& waiver) {
    return waiver.kind ? *waiver.kind == fault.kind : fault.kind != FaultKind::Undetermined;
}

/// Whether the waiver speaks of that fault, leaving aside in which property.
bool speaksOf(const Waiver& waiver, const Fault& fault) {
    return isOfKind(fault, waiver) && names(fault, &Inventory::DeviceSpec::hwLocator, waiver.hwLocator) &&
           names(fault, &Inventory::DeviceSpec::osLocator, waiver.osLocator) &&
           hasSerialNumber(fault, waiver.serialNumber) &&
           (waiver.type.isEmpty() || isOfType(fault, CapabilityImp(waiver.type)));
}

bool covers(const Waiver& waiver, const Difference& difference) {
    return waiver.property.isEmpty() ||
           (difference.what == Difference::What::Property && difference.key == waiver.property);
}

bool coverAll(const std::vector<const Waiver*>& waivers, const Fault& fault) {
    const auto coverWhole = [](const Waiver* waiver) {
        return waiver->property.isEmpty();
    };
    if (std::ranges::any_of(waivers, coverWhole)) {
        return true;
    }
    return !fault.differences.empty() && std::ranges::all_of(fault.differences, [&](const Difference& difference) {
        return std::ranges::any_of(waivers, [&](const Waiver* waiver) { return covers(*waiver, difference); });
    });
}

/// Whether the waiver says something of that fault.
bool concerns(const Waiver& waiver, const Fault& fault) {
    return speaksOf(waiver, fault) &&
           (waiver.property.isEmpty() || std::ranges::any_of(fault.differences, [&](const Difference& difference) {
                return covers(waiver, difference);
            }));
}

/// Whether the waiver was made for something that now goes with the fault. It covers nothing of it, but it is no idle
/// one either: once the device above is back, it is what decides.
bool speaksOfFolded(const Waiver& waiver, const Fault& fault) {
    return std::ranges::any_of(fault.withIt, [&](const FoldedFault& folded) {
        Fault one;
        one.kind = fault.kind;
        one.asked = folded.spec;
        return speaksOf(waiver, one);
    });
}

}  // namespace

WaivedFaults applyWaivers(std::vector<Fault> faults, const std::vector<Waiver>& waivers, const DateTime& now) {
    WaivedFaults outcome;
    std::vector<bool> isUsed(waivers.size());
    std::vector<bool> isMissed(waivers.size());
    for (Fault& fault : faults) {
        std::vector<const Waiver*> valid;
        std::vector<std::size_t> expired;
        for (std::size_t i = 0; i < waivers.size(); ++i) {
            if (concerns(waivers[i], fault)) {
                isUsed[i] = true;
                if (waivers[i].isExpiredAt(now)) {
                    expired.push_back(i);
                } else {
                    valid.push_back(&waivers[i]);
                }
            } else if (!isUsed[i]) {
                isUsed[i] = speaksOfFolded(waivers[i], fault);
            }
        }
        if (coverAll(valid, fault)) {
            WaivedFault& waived = outcome.waived.emplace_back();
            waived.fault = std::move(fault);
            std::ranges::transform(valid, std::back_inserter(waived.waivers), [](const Waiver* each) { return *each; });
        } else {
            outcome.left.push_back(std::move(fault));
            std::ranges::for_each(expired, [&isMissed](std::size_t i) { isMissed[i] = true; });
        }
    }
    for (std::size_t i = 0; i < waivers.size(); ++i) {
        if (isMissed[i]) {
            outcome.expired.push_back(waivers[i]);
        } else if (!isUsed[i]) {
            outcome.idle.push_back(waivers[i]);
        }
    }
    return outcome;
}

}  // namespace vrx
