#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "libInventory/engine/search/ComponentSearch.h"

namespace vrx {

/// Finds what trying all combinations after the first would find.
class CombinationSearch {
public:
    struct Answer {
        std::optional<Rank> passing;  ///< the first that passes
        std::vector<Rank> best;       ///< the best of those that fail; those that may be it, when it was stopped
        SearchCost cost;              ///< of the best, when it was not stopped
        bool isAnyMet = false;        ///< in some combination everything is satisfied, extra devices aside
        bool wasStopped = false;
    };

    /// Asks before each trial whether to go on, and tells how many were made; nobody when empty.
    using Progress = std::function<bool(std::uint64_t)>;

    CombinationSearch(SearchModel& model, Progress progress);
    CombinationSearch(const CombinationSearch&) = delete;
    CombinationSearch& operator=(const CombinationSearch&) = delete;

    enum class Wanted {
        Passing,  ///< whether some combination passes, and which
        Outcome   ///< if none does, the best
    };
    Answer run(Wanted wanted);

    std::uint64_t triedCount() const noexcept { return m_tried; }

private:
    struct Stopped {};

    void countTrial();
    bool findPassing(const DigitRanges& box);
    void findBest(const DigitRanges& box);
    void keepWhatWasFound();

    SearchModel& m_model;
    Progress m_progress;
    std::function<void()> m_onTrial;
    std::deque<ComponentSearch> m_searches;
    std::uint64_t m_tried = 0;
    Answer m_answer;
};

}  // namespace vrx
