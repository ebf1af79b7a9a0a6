#pragma once

#include <optional>
#include <string>
#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/time/DateTime.h"
#include "libDiagnosis/Difference.h"
#include "libDiagnosis/Fault.h"

namespace vrx {

/// A fault that somebody has decided to live with for a while. What is empty covers anything; a type covers the types
/// below it, and all other texts are compared as they stand.
struct Waiver {
    String id;
    std::optional<FaultKind> kind;  ///< without one every kind but Undetermined, for nobody knows what that would cover
    String type;
    String hwLocator;
    String osLocator;
    String serialNumber;
    String property;  ///< only what differs in that property
    String reason;
    String decidedBy;
    String expires;      ///< "2026-12-31", the last day on which it holds; UTC
    DateTime end;        ///< the first second after that day
    ElementPlace place;  ///< in its file

    bool isExpiredAt(const DateTime& time) const noexcept {
        return time.secondsSinceEpoch() >= end.secondsSinceEpoch();
    }
};

/// A mistake in a file of waivers.
struct WaiverMistake {
    ElementPlace place;
    std::string text;
};

/// Reads a file of waivers (schemas/waivers.xsd). With mistakes no waiver of the file should be used.
///
///     std::vector<WaiverMistake> mistakes;
///     const std::vector<Waiver> waivers = readWaivers(*document.RootElement(), mistakes);
std::vector<Waiver> readWaivers(const XmlElement& root, std::vector<WaiverMistake>& mistakes);

}  // namespace vrx
