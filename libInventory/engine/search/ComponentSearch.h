#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "libInventory/engine/search/ComponentTrial.h"
#include "libInventory/engine/search/ShortageBound.h"

namespace vrx {

/// Searches the combinations of one component.
class ComponentSearch {
public:
    enum class Aim {
        Passing,  ///< the first that passes; where none does, the best
        Best      ///< the best
    };

    /// `onTrial` is called before each trial; what it throws ends the search. All is borrowed.
    ComponentSearch(const SearchModel& model, SearchComponent& component, const std::function<void()>& onTrial);

    /// Within ranges of the model's digits. What was found out before is remembered.
    SearchOutcome find(const DigitRanges& ranges, Aim aim);

    /// The best combination that was tried as a whole, also when a search was ended.
    const SearchOutcome::Best& bestTried() const noexcept { return m_bestTried; }

private:
    using Numbers = ComponentTrial::Numbers;
    using Ranges = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

    /// Digits that are still to be chosen, from the one that turns slowest on, digits that are chosen, and groups: what
    /// has to do with one another.
    struct Part {
        Numbers open;
        Numbers chosen;
        Numbers groups;
    };

    /// Parts that have nothing to do with one another, and what nothing that is still to be chosen has to do with.
    struct Division {
        std::vector<Part> parts;
        Part settled;
    };
    struct Known {
        std::optional<SearchOutcome> passing;  ///< by the aim
        std::optional<SearchOutcome> best;
    };
    using Memory = boost::unordered_flat_map<std::string, Known>;

    /// A cost that was found elsewhere: what is no better need not be found. None where everything is wanted.
    using Limit = std::optional<SearchCost>;

    SearchOutcome solve(const Part& part, Aim aim, const Limit& limit);
    SearchOutcome choose(const Part& part, Aim aim, const Limit& limit);
    SearchOutcome enumerate(const Part& part, Aim aim, const Limit& limit);
    SearchOutcome solveAll(const Division& division, Aim aim, const Limit& limit);
    bool tryNext(const Part& part, const Numbers& digits, Aim aim, const Limit& limit, SearchOutcome& outcome);
    SearchOutcome tryOne(const Numbers& digits, const Numbers& groups);
    bool takeTried(const ComponentTrial::Result& result, const Part& part, SearchOutcome& outcome, Aim aim) const;
    std::optional<SearchCost> boundOf(const Part& part) {
        return m_bound.of(part.open, part.chosen, part.groups, m_trial.values());
    }
    std::optional<std::size_t> stepThrough(const Numbers& open);
    void noteTried(std::size_t digits, const SearchCost& cost);
    bool isFew(const Part& part) const;
    Rank rankOf(const Numbers& digits) const;
    Rank weightOf(std::uint32_t digit) const { return m_model.digits.all()[m_component.digits[digit].digit].weight; }
    void setRanges(const Ranges& ranges);
    static std::string keyOf(const Part& part, const std::vector<std::uint32_t>& values);
    static const SearchOutcome* recall(const Known& known, Aim aim);

    // ---- ComponentDivision.cpp ----

    Division divide(const Part& whole) const;
    bool isRuledOut(std::uint32_t digit, const std::vector<bool>& isOpen) const;

    const SearchModel& m_model;
    SearchComponent& m_component;
    const std::function<void()>& m_onTrial;
    ComponentTrial m_trial;
    ShortageBound m_bound;
    Ranges m_ranges;                  ///< by number of the digit
    std::vector<BitRow> m_reachable;  ///< by number of the digit: groups of all values in the range
    std::size_t m_chosen = 0;         ///< how many digits are
    std::vector<bool> m_isIdle;       ///< by group: nothing comes of it while no alternative has to do with it
    Memory m_parts;                   ///< within the present ranges
    Memory m_wholes;                  ///< by the ranges
    SearchOutcome::Best m_bestTried;
};

}  // namespace vrx
