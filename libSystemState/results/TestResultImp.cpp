#include "libSystemState/results/TestResultImp.h"

namespace vrx {

String TestResultImp::toString() const {
    switch (m_code) {
        case Passed: return u"Passed";
        case PassedWithExtraDevices: return u"Passed with extra devices";
        case FailedAmbiguousParts: return u"Failed: ambiguous parts";
        case Failed: return u"Failed";
        case NotRun: break;
    }
    return u"Not run";
}

}  // namespace vrx
