/// The run driver. The first pass finds which alternatives can be met and how many combinations they make; then the
/// combinations are tried one by one, each as a second pass over a merged and reduced graph, until one passes. Of those
/// that fail the best is kept (fewest errors, then the larger index sum; the earlier of equals), and its findings are
/// written into the script when all have failed.
///
/// The first iteration files its findings in the slot of the best iteration, all later ones in the slot of the current
/// one; a better iteration's slot takes the place of the best one's.
///
/// A run that assigns devices exactly only where the greedy way fails tries all combinations in the one way first,
/// then, from the same start, in the other.
/// A host may have the search find out which combinations count (engine/search/). They are then tried as in the loop,
/// so that everything that is seen of a run is made by the same steps.
///
/// Contract: the list of unsatisfied devices is that of the last combination tried, not of the best.

#include "libInventory/engine/RunDriver.h"

#include <optional>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/error/Exception.h"
#include "libInventory/InventoryTestObserver.h"
#include "libInventory/engine/AlternativeOdometer.h"
#include "libInventory/engine/ExtraDeviceSearch.h"
#include "libInventory/engine/FirstPass.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/ScriptNotices.h"
#include "libInventory/engine/SecondPass.h"
#include "libInventory/engine/assignment/LinkAssignment.h"
#include "libInventory/engine/assignment/RunStart.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/findings/ErrorGathering.h"
#include "libInventory/engine/findings/KeptLinks.h"
#include "libInventory/engine/search/model/SearchModelBuilder.h"
#include "libInventory/support/InventoryLog.h"
#include "libRegex/Regex.h"

namespace vrx {

RunDriver::RunDriver(InventoryState& state) noexcept : m_state(state), m_slot(slot::BEST) {}

bool RunDriver::run(bool* inventorySatisfied) {
    XmlElement* const root = m_state.root();
    if (root == nullptr) {
        ScriptNotices(m_state).fileError(
            u"Inventory Script has not loaded successfully, load script with "
            u"Inventory::loadInventoryScriptFile() before calling Inventory::run()");
        return false;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    bool passed = false;
    try {
        begin();
        passed = tryCombinations(root);
        if (inventorySatisfied != nullptr) {
            *inventorySatisfied = passed || m_anySatisfied;
        }
    } catch (const Exception& exception) {
        failUnexpectedly(root, exception.text());
    }
    RunRecord& record = m_state.m_record;
    record.summary.patternsGivenUp = Regex::exceededCount() - givenUpBefore - record.givenUpInTraces;
    if (!m_state.m_tipTables[slot::MATCHING].isEmpty()) {
        m_state.m_valuesOfRun = std::make_unique<const ValueMoment>();
    }
    if (!passed) {
        ScriptNotices(m_state).testFailed();
    }
    return passed;
}

/// Makes the object ready for a run, also for one after another on the same script: what the last one told is
/// forgotten, what it left in the error slots and in the association sets stays.
void RunDriver::begin() {
    m_isRepeated = m_state.m_record.summary.combinations != 0;
    const std::uint64_t combinations = m_isRepeated ? m_state.m_record.summary.combinations : 1;
    m_state.m_record = RunRecord();
    m_state.m_keptLinks.reset();
    m_state.m_record.summary.combinations = combinations;
    m_state.returnBaseSet();
    m_state.m_extraDeviceRules.reset();
    ErrorGathering(m_state).settle();
}

bool RunDriver::tryCombinations(XmlElement* root) {
    AlternativeOdometer(m_state).assignIndices(root);
    {
        FirstPass firstPass(m_state);
        firstPass.lookAhead(*root);
        firstPass.run(root, false, 0);
    }
    VRX_LOG(inventoryLog(), LogPriority::Info, u"First Pass: totalCombinations = " << m_state.m_totalCombinations);

    const Inventory::Assignment assignment = m_state.m_assignment;
    m_state.m_assignsExactly = !m_isRepeated && assignment == Inventory::Assignment::Exact;
    m_state.m_mayAssignExactly = !m_isRepeated && assignment == Inventory::Assignment::Auto;
    std::optional<const RunStart> start;
    if (m_state.m_mayAssignExactly) {
        start.emplace(m_state);
    }
    const bool status = tryAll(root) || (start && tryAllExactly(root, *start));

    if (status) {
        keepChoices();
    } else {
        tellFailure(root);
    }
    m_state.m_record.hasKeptCombination = true;
    m_state.m_record.hasPassed = status;
    return status;
}

bool RunDriver::tryAll(XmlElement* root) {
    m_isDeducing = mayDeduce();
    const bool mayGoOn = m_deducedExactly || asksToGoOn();
    bool status = tryNext(root, true);
    if (!status && m_iteration < combinations()) {
        const std::optional<bool> deduced = mayGoOn && m_isDeducing ? deduce(root) : std::nullopt;
        m_isDeducing = deduced.has_value();
        status = deduced ? *deduced : goThrough(root, mayGoOn);
    }
    RunSummary& summary = m_state.m_record.summary;
    const bool isOpen = m_isDeducing ? summary.wasStopped : m_iteration < summary.combinations;
    summary.hasUntried = !status && isOpen;
    return status;
}

bool RunDriver::tryAllExactly(XmlElement* root, const RunStart& start) {
    if (!m_state.m_record.couldGainByExactness || m_state.m_record.summary.wasStopped) {
        return false;
    }
    start.restore(m_state);
    m_state.m_assignsExactly = true;
    m_iteration = 0;
    m_slot = slot::BEST;
    m_anySatisfied = false;
    m_bestIsPresent = false;
    return tryAll(root);
}

// Contract: the number that bounds the loop is of 32 bits and may overflow.
std::uint64_t RunDriver::combinations() const noexcept {
    return m_state.m_search == Inventory::Search::Deduced ? m_state.m_record.summary.combinations
                                                          : m_state.m_totalCombinations;
}

/// Tries the combinations after the first one by one.
bool RunDriver::goThrough(XmlElement* root, bool mayGoOn) {
    RunSummary& summary = m_state.m_record.summary;
    bool status = false;
    while (!status && m_iteration < combinations()) {
        mayGoOn = mayGoOn && asksToGoOn();
        summary.wasStopped = !mayGoOn;
        if (!mayGoOn) {
            break;
        }
        status = tryNext(root, true);
    }
    return status;
}

/// Whether the search can take the place of the loop. The log wants the lines of every combination, and a table of
/// parts the parts of every one.
bool RunDriver::mayDeduce() const {
    return m_state.m_search == Inventory::Search::Deduced && !m_isRepeated && m_state.keepsFindings() &&
           m_state.m_deviceToPartsTable == nullptr && !inventoryLog().isEnabled(LogPriority::Info);
}

/// Finds out which of the combinations after the first count, and tries only these: the first that passes, or the best
/// and the last. None, having done nothing, where the search does not know enough.
std::optional<bool> RunDriver::deduce(XmlElement* root) {
    keepLinks();
    if (m_state.m_mayAssignExactly && !m_state.m_assignsExactly) {
        return deduceGreedily(root);
    }
    const std::optional<Deduction> deduction =
        m_deducedExactly ? std::move(m_deducedExactly) : findOut(m_state.m_assignsExactly, Wanted::Outcome);
    return deduction ? std::optional<bool>(tryDeduced(root, *deduction)) : std::nullopt;
}

/// Where all combinations are to be assigned exactly when none passes greedily, what they come to exactly is found out
/// first: when none passes so, none passes greedily either.
std::optional<bool> RunDriver::deduceGreedily(XmlElement* root) {
    m_deducedExactly = findOut(true, Wanted::Outcome);
    if (!m_deducedExactly) {
        return std::nullopt;
    }
    m_state.m_record.couldGainByExactness = true;
    if (!m_deducedExactly->answer.passing) {
        return false;
    }
    const std::optional<Deduction> greedily = findOut(false, Wanted::Passing);
    return greedily && greedily->answer.passing && tryDeduced(root, *greedily);
}

std::optional<RunDriver::Deduction> RunDriver::findOut(bool isExact, Wanted wanted) {
    const RunRecord::Links links = isExact ? LinkAssignment(m_state).exactLinks() : m_state.m_record.keptLinks;
    m_state.m_associations.rewind();
    std::optional<SearchModel> model;
    try {
        model = SearchModelBuilder(m_state, links, isExact).build();
    } catch (const Exception&) {
        return std::nullopt;  // the loop will meet it where it belongs
    }
    if (!model) {
        return std::nullopt;
    }
    CombinationSearch search(*model, [this](std::uint64_t tried) { return asksToGoOn(tried + 2); });
    CombinationSearch::Answer answer = search.run(wanted);
    return Deduction{std::move(*model), std::move(answer), search.triedCount()};
}

bool RunDriver::tryDeduced(XmlElement* root, const Deduction& deduction) {
    const CombinationSearch::Answer& answer = deduction.answer;
    RunSummary& summary = m_state.m_record.summary;
    m_anySatisfied = m_anySatisfied || answer.isAnyMet;
    summary.wasStopped = answer.wasStopped;
    const bool status =
        answer.passing ? tryShown(root, deduction.model, *answer.passing) : tryBest(root, deduction.model, answer);
    summary.combinationsTried = m_iteration + deduction.tried;
    return status;
}

/// Tries the best combination and, for the list of unsatisfied devices, the last.
bool RunDriver::tryBest(XmlElement* root, const SearchModel& model, const CombinationSearch::Answer& answer) {
    bool status = false;
    for (const Rank& rank : answer.best) {
        status = status || tryShown(root, model, rank);
    }
    if (answer.wasStopped) {
        return status;
    }
    VRX_ASSERT_TEXT(!status && m_errors.numErrors == answer.cost.errors && m_errors.indexSum == answer.cost.indexSum,
                    "the best combination is what the search took it for");
    return answer.best.back() != model.digits.last() && tryShown(root, model, model.digits.last());
}

bool RunDriver::tryShown(XmlElement* root, const SearchModel& model, const Rank& rank) {
    model.digits.show(rank);
    return tryNext(root, false);
}

bool RunDriver::asksToGoOn() const { return asksToGoOn(m_iteration + 1); }

bool RunDriver::asksToGoOn(std::uint64_t combination) const {
    return !m_state.m_progress ||
           m_state.m_progress({combination, m_state.m_record.summary.combinations, m_isDeducing});
}

/// Tries the next combination or, without `step`, the one that the digits show.
bool RunDriver::tryNext(XmlElement* root, bool step) {
    const bool first = ++m_iteration == 1;
    VRX_LOG(inventoryLog(), LogPriority::Info, u"run() current iteration: " << m_iteration + 1);
    keepLinks();
    m_state.m_unsatisfiedDevices.clear();
    takeBaseSet();
    AlternativeOdometer(m_state).merge(root, step && !first);
    LinkAssignment(m_state).settle();

    SecondPass pass(m_state, m_slot);
    bool status = pass.run(root, false);
    m_errors = pass.errors();
    if (status) {
        m_anySatisfied = true;
        status = ExtraDeviceSearch(m_state).findNone(m_slot);
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"run() after checkForExtraDevices status = " << status << u" first = " << first);
    m_state.m_record.summary.combinationsTried = m_iteration;
    if (!status) {
        keepBest();
    }
    return status;
}

/// What the elements outside of all alternatives matched is the start of every combination, and each combination after
/// the first goes back to it. It is the base set itself, unless an earlier run has filled that too: then links of one
/// element stand apart in it, and a copy, which brings them together, is reduced in another order.
void RunDriver::takeBaseSet() {
    Inventory::InventoryDeviceAssociations& associations = m_state.m_associations;
    if (m_hasBaseSet) {
        associations.rewind();
        associations.logLinks();
        return;
    }
    associations.clear();
    if (m_isRepeated) {
        associations.append(m_state.m_associationSets[0]);
    } else {
        associations.swap(m_state.m_associationSets[0]);
        associations.logLinks();
        m_state.m_hasBaseSetInUse = true;
    }
    associations.mark();
    m_hasBaseSet = true;
}

void RunDriver::keepBest() {
    if (m_iteration == 1) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"run() first iteration setting errorsIndex = " << slot::CURRENT);
        m_slot = slot::CURRENT;
    } else if (!keepsBetter()) {
        return;
    }
    m_best = m_errors;
    m_bestIsPresent = true;
    m_state.m_record.keptLinks.clear();
    m_state.m_record.areLinksKept = false;
    keepChoices();
}

/// Whether the present iteration is better than the best so far; if so, its findings take the place of the others.
bool RunDriver::keepsBetter() {
    InventoryState& state = m_state;
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"run() iteration: " << m_iteration << u" numErrors: " << m_errors.numErrors << u" prevErrors: "
                                 << m_best.numErrors);
    const bool better = m_errors.isBetterThan(m_best);
    VRX_LOG(
        inventoryLog(), LogPriority::Debug,
        u"run() iteration: " << m_iteration << (better ? u" this iteration is better" : u" previous iteration better"));
    if (better) {
        state.m_errorElementLists[slot::BEST] = state.m_errorElementLists[slot::CURRENT];
        state.m_tipTables[slot::BEST] = std::move(state.m_tipTables[slot::CURRENT]);
        state.m_extraTables[slot::BEST] = std::move(state.m_extraTables[slot::CURRENT]);
    }
    state.m_errorElementLists[slot::CURRENT].clear();
    state.m_tipTables[slot::CURRENT].clear();
    state.m_extraTables[slot::CURRENT].clear();
    return better;
}

void RunDriver::keepChoices() {
    std::vector<RunRecord::Choice>& choices = m_state.m_record.keptChoices;
    choices.clear();
    for (const XmlElement* const element : m_state.m_record.orElements) {
        const ElementContext& context = *InventoryState::existingContext(element);
        choices.push_back({element, context.m_selectedChild, context.m_pruned});
    }
    RunSummary& summary = m_state.m_record.summary;
    summary.isAssignedExactly = m_state.m_record.isAssignedExactly;
    summary.exactlyAssigned.clear();
    for (const XmlElement* const element : m_state.m_record.exactlyAssigned) {
        summary.exactlyAssigned.append(element);
    }
}

/// Copies the links of the best iteration before the working graph becomes that of the next.
void RunDriver::keepLinks() {
    if (m_bestIsPresent) {
        m_state.m_associations.getLinks(m_state.m_record.keptLinks);
        m_state.m_record.areLinksKept = true;
        m_bestIsPresent = false;
    }
}

void RunDriver::tellFailure(XmlElement* root) {
    if (!m_anySatisfied) {
        ExtraDeviceSearch(m_state).findNone(slot::BEST);
    }
    ErrorGathering(m_state).gatherAndClean(root, slot::BEST);
}

void RunDriver::failUnexpectedly(XmlElement* root, const String& text) {
    VRX_LOG(inventoryLog(), LogPriority::Error, u"Caught unexpected exception: " << text);
    ErrorFiling(m_state).file(root, FindingKind::UnexpectedException, slot::SCRIPT, text);
    ErrorGathering(m_state).gatherAndClean(root, m_slot);
}

}  // namespace vrx
