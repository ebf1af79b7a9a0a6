#include "libInventory/engine/search/SearchOutcome.h"

#include <utility>

namespace vrx {

namespace {

SearchOutcome::Best sumOf(const SearchOutcome::Best& a, const SearchOutcome::Best& b) {
    if (!a || !b) {
        return std::nullopt;
    }
    SearchChoice sum = *a;
    sum.cost += b->cost;
    sum.rank += b->rank;
    return sum;
}

const SearchOutcome::Best& betterOf(const SearchOutcome::Best& a, const SearchOutcome::Best& b) {
    return !a || (b && b->isBetterThan(*a)) ? b : a;
}

void improveChoice(SearchOutcome::Best& choice, SearchOutcome::Best& later) {
    if (later && (!choice || later->cost.isBetterThan(choice->cost))) {
        choice = std::move(later);
    }
}

}  // namespace

const SearchOutcome::Best& SearchOutcome::best() const { return betterOf(met, failed); }

void SearchOutcome::add(const SearchOutcome& other) {
    const Best failedHere = sumOf(failed, other.best());
    const Best failedThere = sumOf(met, other.failed);
    failed = betterOf(failedHere, failedThere);
    met = sumOf(met, other.met);
    if (passing && other.passing) {
        *passing += *other.passing;
    } else {
        passing.reset();
    }
    isComplete = isComplete && other.isComplete;
}

void SearchOutcome::advance(const Rank& rank) {
    if (met) {
        met->rank += rank;
    }
    if (failed) {
        failed->rank += rank;
    }
    if (passing) {
        *passing += rank;
    }
}

void SearchOutcome::improve(SearchOutcome later) {
    improveChoice(met, later.met);
    improveChoice(failed, later.failed);
    if (!passing) {
        passing = std::move(later.passing);
    }
}

}  // namespace vrx
