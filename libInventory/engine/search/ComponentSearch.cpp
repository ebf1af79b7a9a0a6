/// The search within a component: digits are chosen one after the other, from the one that turns slowest on, so that
/// combinations come in the order of the loop.
///
/// After each choice the rest is divided: alternatives that are still open, chosen ones, and groups of devices fall
/// into parts that have no group in common. Each part is solved by itself. Whatever no open alternative can reach any
/// more is settled by one trial.
///
/// What comes of a part depends on nothing but the digits in it that are open and the values of those that are chosen.
/// So it is remembered under these, and found again for all other choices that have been settled meanwhile; that is how
/// what cannot fit together is learnt once. Where all chosen alternatives are still part of it, a part never comes
/// again, and is not remembered.
///
/// What cannot be better than what was found already, because there are too few devices for it, is passed over. It
/// comes later, so that of equals it would not be the one.
///
/// The best combination of parts is made of the best of each, since costs and ranks are sums. A search for the first
/// combination that passes ends where it finds it, because ranks rise; and no combination is better than one without
/// any error, so the search for the best ends there.

#include "libInventory/engine/search/ComponentSearch.h"

namespace vrx {

namespace {

/// A part of so few combinations is not divided further.
constexpr std::size_t FEW_COMBINATIONS = 64;

/// Parts that are remembered at most; what does not fit in is found anew.
constexpr std::size_t MOST_KNOWN = 250000;

const std::optional<SearchCost> NO_LIMIT;

SearchOutcome nothingToDecide() {
    SearchOutcome outcome;
    outcome.met.emplace();
    outcome.passing.emplace();
    return outcome;
}

/// Whether the outcome is as good as anything within the bound can be.
bool reaches(const SearchOutcome& outcome, const std::optional<SearchCost>& bound) {
    return bound && outcome.best() && !bound->isBetterThan(outcome.best()->cost);
}

/// The better of what was found in the present part and elsewhere.
std::optional<SearchCost> limitOf(const SearchOutcome& outcome, const std::optional<SearchCost>& limit) {
    const SearchOutcome::Best& best = outcome.best();
    return best && (!limit || best->cost.isBetterThan(*limit)) ? best->cost : limit;
}

/// Whether nothing within the bound is better than the limit.
bool isBeyond(const std::optional<SearchCost>& bound, const std::optional<SearchCost>& limit) {
    return bound && limit && !bound->isBetterThan(*limit);
}

bool isFaultless(const SearchOutcome& outcome) { return outcome.met && outcome.met->cost.errors == 0; }

void appendNumber(std::string& key, std::uint32_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        key += static_cast<char>(number >> shift & 0xFF);
    }
}

}  // namespace

ComponentSearch::ComponentSearch(const SearchModel& model, SearchComponent& component,
                                 const std::function<void()>& onTrial)
    : m_model(model), m_component(component), m_onTrial(onTrial), m_trial(model, component), m_bound(model, component) {
    for (const SearchGroup& group : component.groups) {
        m_isIdle.push_back(group.elements.empty() && group.tops.empty() && !component.extras.meets(group.devices));
    }
}

SearchOutcome ComponentSearch::find(const DigitRanges& ranges, Aim aim) {
    Ranges own;
    std::string key;
    for (const SearchDigitPart& digit : m_component.digits) {
        own.push_back(ranges[digit.digit]);
        appendNumber(key, own.back().first);
        appendNumber(key, own.back().second);
    }
    if (const SearchOutcome* const known = recall(m_wholes[key], aim)) {
        return *known;
    }
    if (own != m_ranges) {
        setRanges(own);
    }
    Part whole;
    for (auto digit = static_cast<std::uint32_t>(m_component.digits.size()); digit-- > 0;) {
        whole.open.push_back(digit);
    }
    for (std::uint32_t group = 0; group < m_component.groups.size(); ++group) {
        whole.groups.push_back(group);
    }
    m_chosen = 0;
    SearchOutcome outcome = solveAll(divide(whole), aim, std::nullopt);
    (aim == Aim::Passing ? m_wholes[key].passing : m_wholes[key].best) = outcome;
    return outcome;
}

void ComponentSearch::setRanges(const Ranges& ranges) {
    m_ranges = ranges;
    m_bound.setRanges(ranges);
    m_parts.clear();
    m_reachable.clear();
    for (std::size_t number = 0; number < ranges.size(); ++number) {
        BitRow groups(m_component.groups.size());
        for (std::uint32_t value = ranges[number].first; value <= ranges[number].second; ++value) {
            groups |= m_component.digits[number].groups[value];
        }
        m_reachable.push_back(std::move(groups));
    }
}

/// A search for the first that passes has looked at everything where it found none, and where nothing is better than
/// what it found.
const SearchOutcome* ComponentSearch::recall(const Known& known, Aim aim) {
    if (known.passing && (aim == Aim::Passing || known.passing->isComplete)) {
        return &*known.passing;
    }
    return aim == Aim::Best && known.best ? &*known.best : nullptr;
}

/// What is remembered is found without a limit, for it may be asked for with another one.
SearchOutcome ComponentSearch::solve(const Part& part, Aim aim, const Limit& limit) {
    if (isFew(part)) {
        return enumerate(part, aim, limit);
    }
    const bool mayComeAgain = part.chosen.size() < m_chosen;
    if (!mayComeAgain) {
        return choose(part, aim, limit);
    }
    const std::string key = keyOf(part, m_trial.values());
    if (const auto at = m_parts.find(key); at != m_parts.end()) {
        if (const SearchOutcome* const known = recall(at->second, aim)) {
            return *known;
        }
    }
    SearchOutcome outcome = choose(part, aim, std::nullopt);
    if (m_parts.size() < MOST_KNOWN || m_parts.contains(key)) {
        (aim == Aim::Passing ? m_parts[key].passing : m_parts[key].best) = outcome;
    }
    return outcome;
}

std::string ComponentSearch::keyOf(const Part& part, const std::vector<std::uint32_t>& values) {
    std::string key;
    key.reserve(4 * (part.open.size() + 2 * part.chosen.size() + 1));
    appendNumber(key, static_cast<std::uint32_t>(part.open.size()));
    for (const std::uint32_t digit : part.open) {
        appendNumber(key, digit);
    }
    for (const std::uint32_t digit : part.chosen) {
        appendNumber(key, digit);
        appendNumber(key, values[digit]);
    }
    return key;
}

bool ComponentSearch::isFew(const Part& part) const {
    std::size_t combinations = 1;
    for (const std::uint32_t digit : part.open) {
        combinations *= std::size_t{m_ranges[digit].second} - m_ranges[digit].first + 1;
        if (combinations > FEW_COMBINATIONS) {
            return part.open.size() == 1;
        }
    }
    return true;
}

/// Chooses the digit that turns slowest.
SearchOutcome ComponentSearch::choose(const Part& part, Aim aim, const Limit& limit) {
    const std::uint32_t digit = part.open.front();
    Part rest{{part.open.begin() + 1, part.open.end()}, part.chosen, part.groups};
    rest.chosen.push_back(digit);
    SearchOutcome outcome;
    ++m_chosen;
    for (std::uint32_t value = m_ranges[digit].first; value <= m_ranges[digit].second; ++value) {
        m_trial.values()[digit] = value;
        const Limit present = limitOf(outcome, limit);
        if (present && isBeyond(boundOf(rest), present)) {
            continue;
        }
        SearchOutcome found = solveAll(divide(rest), aim, present);
        found.advance(weightOf(digit) * value);
        outcome.improve(std::move(found));
        if (aim == Aim::Passing && outcome.passing) {
            outcome.isComplete = isFaultless(outcome);
            break;
        }
        if (aim == Aim::Best && isFaultless(outcome)) {
            break;
        }
    }
    --m_chosen;
    return outcome;
}

/// Tries all combinations of the open digits.
SearchOutcome ComponentSearch::enumerate(const Part& part, Aim aim, const Limit& limit) {
    Numbers digits = part.chosen;
    digits.insert(digits.end(), part.open.begin(), part.open.end());
    for (const std::uint32_t digit : part.open) {
        m_trial.values()[digit] = m_ranges[digit].first;
    }
    const std::optional<SearchCost> bound = boundOf(part);
    SearchOutcome outcome;
    if (isBeyond(bound, limit)) {
        return outcome;
    }
    m_bound.begin(part.open, part.chosen, part.groups, m_trial.values());
    m_trial.setGroups(part.groups);
    std::optional<std::size_t> changed = 0;
    do {
        m_bound.noteChange(*changed);
        if (tryNext(part, digits, aim, limit, outcome) || reaches(outcome, bound)) {
            break;
        }
        changed = stepThrough(part.open);
    } while (changed);
    return outcome;
}

/// Tries the present combination unless it is too bad for sure; whether no later one can make a difference.
bool ComponentSearch::tryNext(const Part& part, const Numbers& digits, Aim aim, const Limit& limit,
                              SearchOutcome& outcome) {
    const Limit present = limitOf(outcome, limit);
    if (present && isBeyond(m_bound.ofPresent(m_trial.values()), present)) {
        return false;
    }
    m_onTrial();
    const BitRow& missing = m_trial.reduce(digits);
    if (m_model.isExact && present && isBeyond(m_bound.ofExact(missing), present)) {
        return false;
    }
    const ComponentTrial::Result result = m_trial.decide(digits);
    noteTried(digits.size(), result.cost);
    return takeTried(result, part, outcome, aim);
}

/// Takes the present combination into the outcome; whether no later one can make a difference.
bool ComponentSearch::takeTried(const ComponentTrial::Result& result, const Part& part, SearchOutcome& outcome,
                                Aim aim) const {
    SearchOutcome::Best& choice = result.isMet ? outcome.met : outcome.failed;
    if (!choice || result.cost.isBetterThan(choice->cost)) {
        choice = {result.cost, rankOf(part.open)};
    }
    if (result.isMet && !result.hasExtras && !outcome.passing) {
        outcome.passing = rankOf(part.open);
    }
    if (aim == Aim::Passing) {
        outcome.isComplete = !outcome.passing || isFaultless(outcome);
        return outcome.passing.has_value();
    }
    return isFaultless(outcome);
}

/// The next combination of the open digits, of which the last turns fastest: the position of the first that has
/// changed; nothing when there is none.
std::optional<std::size_t> ComponentSearch::stepThrough(const Numbers& open) {
    std::vector<std::uint32_t>& values = m_trial.values();
    for (std::size_t i = open.size(); i-- > 0;) {
        const auto& [first, last] = m_ranges[open[i]];
        if (values[open[i]] < last) {
            ++values[open[i]];
            return i;
        }
        values[open[i]] = first;
    }
    return std::nullopt;
}

SearchOutcome ComponentSearch::tryOne(const Numbers& digits, const Numbers& groups) {
    if (digits.empty() && groups.empty()) {
        return nothingToDecide();
    }
    m_onTrial();
    m_trial.setGroups(groups);
    const ComponentTrial::Result result = m_trial.run(digits);
    noteTried(digits.size(), result.cost);
    SearchOutcome outcome;
    (result.isMet ? outcome.met : outcome.failed) = SearchChoice{result.cost, 0};
    if (result.isMet && !result.hasExtras) {
        outcome.passing.emplace();
    }
    return outcome;
}

Rank ComponentSearch::rankOf(const Numbers& digits) const {
    Rank rank;
    for (const std::uint32_t digit : digits) {
        rank += weightOf(digit) * m_trial.values()[digit];
    }
    return rank;
}

/// Keeps the best combination of all digits for those who end the search.
void ComponentSearch::noteTried(std::size_t digits, const SearchCost& cost) {
    if (digits == m_component.digits.size() && (!m_bestTried || cost.isBetterThan(m_bestTried->cost))) {
        Numbers all;
        for (std::uint32_t digit = 0; digit < digits; ++digit) {
            all.push_back(digit);
        }
        m_bestTried = {cost, rankOf(all)};
    }
}

/// Joins what comes of all parts. Once one of them does not pass, nothing does, and the best of the others is wanted.
/// A limit holds for a part that is all that there is.
SearchOutcome ComponentSearch::solveAll(const Division& division, Aim aim, const Limit& limit) {
    const SearchOutcome settled = tryOne(division.settled.chosen, division.settled.groups);
    const bool isOne = division.parts.size() == 1 && settled.best()->cost == SearchCost();
    const Limit& own = isOne ? limit : NO_LIMIT;
    bool mayPass = aim == Aim::Passing && settled.passing;
    std::vector<SearchOutcome> outcomes;
    for (const Part& part : division.parts) {
        outcomes.push_back(solve(part, mayPass ? Aim::Passing : Aim::Best, own));
        mayPass = mayPass && outcomes.back().passing;
    }
    SearchOutcome sum = settled;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (!mayPass && !outcomes[i].isComplete) {
            outcomes[i] = solve(division.parts[i], Aim::Best, own);
        }
        sum.add(outcomes[i]);
    }
    if (!mayPass) {
        sum.passing.reset();
    }
    return sum;
}

}  // namespace vrx
