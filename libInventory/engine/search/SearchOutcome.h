#pragma once

#include <boost/multiprecision/cpp_int.hpp>
#include <cstdint>
#include <optional>

namespace vrx {

/// The position of a combination among all, in the order of the odometer. There may be more than machine words count.
using Rank = boost::multiprecision::cpp_int;

/// What failing elements add to the error measure (Inventory::ErrorSpec).
struct SearchCost {
    std::uint64_t errors = 0;
    std::uint64_t indexSum = 0;

    SearchCost& operator+=(const SearchCost& other) noexcept {
        errors += other.errors;
        indexSum += other.indexSum;
        return *this;
    }
    bool operator==(const SearchCost&) const noexcept = default;

    /// As ErrorSpec::isBetterThan.
    bool isBetterThan(const SearchCost& other) const noexcept {
        return errors != other.errors ? errors < other.errors : indexSum > other.indexSum;
    }
};

/// The best combination of some alternatives: its cost, and what these alternatives add to its rank.
struct SearchChoice {
    SearchCost cost;
    Rank rank;

    /// The cheaper one, and of equals the earlier.
    bool isBetterThan(const SearchChoice& other) const {
        return cost == other.cost ? rank < other.rank : cost.isBetterThan(other.cost);
    }
};

/// What is known of all combinations of some alternatives. Outcomes of alternatives that have nothing to do with one
/// another are joined by `add`; no outcome of alternatives that do is ever made from two.
struct SearchOutcome {
    using Best = std::optional<SearchChoice>;

    Best met;                     ///< the best in which everything is satisfied
    Best failed;                  ///< the best in which something is not
    std::optional<Rank> passing;  ///< the first in which everything is satisfied and no device is extra

    /// Whether nothing better than what stands here can be found. Not when the search ended at the first that passes.
    bool isComplete = true;

    const Best& best() const;

    /// That of this and of other alternatives together.
    void add(const SearchOutcome& other);

    /// The same alternatives with another one in front, which adds to the rank.
    void advance(const Rank& rank);

    /// Takes over what is better in an outcome of later combinations of the same alternatives.
    void improve(SearchOutcome later);
};

}  // namespace vrx
