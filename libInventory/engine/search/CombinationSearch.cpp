/// The whole search: each component by itself, then what comes of all together. See SearchModelBuilder.cpp for why that
/// is the same, and SearchDigits.cpp for the boxes.

#include "libInventory/engine/search/CombinationSearch.h"

#include <utility>

namespace vrx {

CombinationSearch::CombinationSearch(SearchModel& model, Progress progress)
    : m_model(model), m_progress(std::move(progress)), m_onTrial([this] { countTrial(); }) {
    for (SearchComponent& component : model.components) {
        m_searches.emplace_back(model, component, m_onTrial);
    }
}

void CombinationSearch::countTrial() {
    if (m_progress && !m_progress(m_tried)) {
        throw Stopped();
    }
    ++m_tried;
}

CombinationSearch::Answer CombinationSearch::run(Wanted wanted) {
    try {
        for (const DigitRanges& box : m_model.digits.boxes()) {
            if (findPassing(box)) {
                return std::move(m_answer);
            }
            if (wanted == Wanted::Outcome) {
                findBest(box);
            }
        }
    } catch (const Stopped&) {
        m_answer.wasStopped = true;
        keepWhatWasFound();
    }
    return std::move(m_answer);
}

bool CombinationSearch::findPassing(const DigitRanges& box) {
    if (!m_model.isConstantMet || m_model.hasConstantExtra) {
        return false;
    }
    Rank rank;
    for (ComponentSearch& search : m_searches) {
        const SearchOutcome outcome = search.find(box, ComponentSearch::Aim::Passing);
        if (!outcome.passing) {
            return false;
        }
        rank += *outcome.passing;
    }
    m_answer.passing = rank;
    return true;
}

/// Boxes come in the order of combinations, so that of equals the first stays.
void CombinationSearch::findBest(const DigitRanges& box) {
    SearchOutcome nothing;
    nothing.met.emplace();
    std::vector<SearchOutcome> frames(m_model.frames.size(), nothing);
    for (std::size_t i = 0; i < m_searches.size(); ++i) {
        frames[m_model.components[i].frame].add(m_searches[i].find(box, ComponentSearch::Aim::Best));
    }
    for (std::size_t i = frames.size(); i-- > 1;) {
        if (frames[i].failed) {
            frames[i].failed->cost += m_model.frames[i].cost;
        }
        frames[m_model.frames[i].outer].add(frames[i]);
    }
    const SearchOutcome& all = frames.front();
    m_answer.isAnyMet = m_answer.isAnyMet || (m_model.isConstantMet && all.met);
    SearchChoice best = *all.best();
    best.cost += m_model.constantCost;
    if (m_answer.best.empty() || best.cost.isBetterThan(m_answer.cost)) {
        m_answer.best = {best.rank};
        m_answer.cost = best.cost;
    }
}

/// A combination of the best that components have tried, and of the first where they have not tried any.
void CombinationSearch::keepWhatWasFound() {
    Rank rank;
    for (std::size_t i = 0; i < m_searches.size(); ++i) {
        if (const SearchOutcome::Best& best = m_searches[i].bestTried()) {
            rank += best->rank;
            continue;
        }
        for (const SearchDigitPart& part : m_model.components[i].digits) {
            const SearchDigit& digit = m_model.digits.all()[part.digit];
            rank += digit.weight * digit.start;
        }
    }
    m_answer.best.push_back(rank);
}

}  // namespace vrx
