#include "libReport/writers/FaultText.h"

#include "libReport/text/DeviceSummary.h"
#include "libReport/text/DoubtText.h"
#include "libReport/writers/DifferenceText.h"

namespace vrx {

namespace {

std::string differencesText(const std::vector<Difference>& differences) {
    std::string text;
    for (const Difference& difference : differences) {
        text += (text.empty() ? ": " : "; ") + subjectText(difference) + ": expected " + expectedText(difference) +
                ", found " + foundText(difference);
    }
    return text;
}

}  // namespace

std::string faultTitle(const Fault& fault) { return deviceTitle(fault.device ? fault.device->spec : fault.asked); }

std::string faultText(const Fault& fault) {
    switch (fault.kind) {
        case FaultKind::Missing: return faultTitle(fault) + " is missing";
        case FaultKind::Wrong: return faultTitle(fault) + " differs" + differencesText(fault.differences);
        case FaultKind::Extra: return faultTitle(fault) + " is extra";
        case FaultKind::Moved: return faultTitle(fault) + " stands at another place";
        case FaultKind::Swapped: return faultTitle(fault) + " is swapped with another";
        case FaultKind::Replaced: return faultTitle(fault) + " was replaced" + differencesText(fault.differences);
        case FaultKind::Forbidden: return faultTitle(fault) + " must not be there";
        case FaultKind::Undetermined: break;
    }
    return fault.doubt ? doubtText(*fault.doubt) : faultTitle(fault) + " is not known";
}

}  // namespace vrx
