#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "libDiagnosis/waivers/Waiver.h"

namespace vrx {

/// Waivers for the faults of a check's JSON report.
struct WaiverDraft {
    std::vector<Waiver> waivers;
    std::size_t leftOut = 0;  ///< faults that name neither a type nor a place nor a serial number
    std::string error;        ///< why the text is no report of a check; empty when it is one
};

/// One waiver for each fault, as narrow as the report allows: kind, type and place, of an extra device its serial
/// number, of a device that differs one for each property that does. Reason, name and day are those of `decision`.
///
///     Waiver decision;
///     decision.reason = u"until the delivery of March";
///     std::cout << waiversXml(draftWaivers(json, decision).waivers).toUtf8();
WaiverDraft draftWaivers(std::string_view json, const Waiver& decision);

}  // namespace vrx
