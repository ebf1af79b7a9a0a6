#include "libDiagnosis/Candidates.h"

#include <algorithm>

namespace vrx {

namespace {

bool isFailedProperty(const Finding& finding) noexcept {
    return finding.kind == FindingKind::PropertyMismatch || finding.kind == FindingKind::PropertyMissing;
}

NearDevice nearDevice(const Candidate& candidate) {
    NearDevice near{specOf(*candidate.device), {}};
    for (const Finding& failure : candidate.failures) {
        if (std::optional<Difference> difference = differenceOf(failure)) {
            near.differences.push_back(std::move(*difference));
        }
    }
    return near;
}

}  // namespace

std::optional<Difference> differenceOf(const Finding& finding) {
    if (!isFailedProperty(finding)) {
        return std::nullopt;
    }
    Difference difference{.place = placeIn(*finding.element), .key = finding.key};
    difference.expected.assign(finding.expected.begin(), finding.expected.end());
    if (finding.kind == FindingKind::PropertyMismatch) {
        difference.found = finding.found;
    }
    return difference;
}

CandidateSummary summaryOf(const DeviceOutcome& outcome) {
    CandidateSummary summary;
    const Candidate* nearest = nullptr;
    std::ptrdiff_t fewest = 0;
    for (const Candidate& candidate : outcome.candidates) {
        const std::ptrdiff_t failed =
            std::count_if(candidate.failures.begin(), candidate.failures.end(), isFailedProperty);
        if (failed > 0) {
            ++summary.failed;
            if (nearest == nullptr || failed < fewest) {
                nearest = &candidate;
                fewest = failed;
            }
        } else if (candidate.failures.isEmpty() && candidate.holder != nullptr && candidate.holder != outcome.element) {
            if (++summary.takenCount <= CandidateSummary::MOST_TAKEN) {
                summary.taken.push_back({specOf(*candidate.device), placeIn(*candidate.holder)});
            }
        }
    }
    if (nearest != nullptr) {
        summary.nearest = nearDevice(*nearest);
    }
    return summary;
}

}  // namespace vrx
