#include "libInventory/engine/sweep/CandidateRanges.h"

#include <algorithm>

namespace vrx {

namespace {

using Range = CandidateRanges::Range;

/// Calls `visit` with the ranges that overlap the given one, in order. A few ranges are mostly set against many.
template <typename Visit>
void forEachOverlap(const std::vector<Range>& ranges, const Range& with, const Visit& visit) {
    auto at = std::ranges::upper_bound(ranges, with.first, {}, &Range::end);
    for (; at != ranges.end() && at->first < with.end; ++at) {
        visit(*at);
    }
}

}  // namespace

void CandidateRanges::append(const Range& range) {
    if (range.first == range.end) {
        return;
    }
    if (!m_ranges.empty() && range.first <= m_ranges.back().end) {
        m_ranges.back().end = std::max(m_ranges.back().end, range.end);
    } else {
        m_ranges.push_back(range);
    }
}

CandidateRanges CandidateRanges::operator|(const CandidateRanges& other) const {
    if (isEmpty() || other.isEmpty()) {
        return isEmpty() ? other : *this;
    }
    CandidateRanges result;
    auto at = other.m_ranges.begin();
    for (const Range& range : m_ranges) {
        for (; at != other.m_ranges.end() && at->first < range.first; ++at) {
            result.append(*at);
        }
        result.append(range);
    }
    std::for_each(at, other.m_ranges.end(), [&result](const Range& range) { result.append(range); });
    return result;
}

CandidateRanges CandidateRanges::operator&(const CandidateRanges& other) const {
    const bool isSmaller = m_ranges.size() <= other.m_ranges.size();
    const std::vector<Range>& many = isSmaller ? other.m_ranges : m_ranges;
    CandidateRanges result;
    for (const Range& range : isSmaller ? m_ranges : other.m_ranges) {
        forEachOverlap(many, range, [&](const Range& overlap) {
            result.append({std::max(range.first, overlap.first), std::min(range.end, overlap.end)});
        });
    }
    return result;
}

CandidateRanges CandidateRanges::operator-(const CandidateRanges& other) const {
    CandidateRanges result;
    for (const Range& range : m_ranges) {
        std::uint32_t at = range.first;
        forEachOverlap(other.m_ranges, range, [&](const Range& overlap) {
            result.append({at, std::max(at, overlap.first)});
            at = overlap.end;
        });
        result.append({at, std::max(at, range.end)});
    }
    return result;
}

std::size_t CandidateRanges::count() const noexcept {
    std::size_t count = 0;
    for (const Range& range : m_ranges) {
        count += range.end - range.first;
    }
    return count;
}

}  // namespace vrx
