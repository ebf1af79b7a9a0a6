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
///
/// Contract: the list of unsatisfied devices is that of the last combination tried, not of the best.

#include "libInventory/engine/RunDriver.h"

#include <optional>
#include <utility>

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
    AlternativeOdometer(m_state).assignIndices(root, StringView(), 0);
    FirstPass(m_state).run(root, false, 0);
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
    bool status = false;
    bool mayGoOn = asksToGoOn();
    do {
        ++m_iteration;
        VRX_LOG(inventoryLog(), LogPriority::Info, u"run() current iteration: " << m_iteration + 1);
        Inventory::ErrorSpec errors;
        status = tryNext(root, errors);
        m_state.m_record.summary.combinationsTried = m_iteration;
        if (!status) {
            keepBest(errors);
        }
        const bool isLast = m_iteration >= m_state.m_totalCombinations;
        if (status || isLast) {
            break;
        }
        mayGoOn = mayGoOn && asksToGoOn();
        m_state.m_record.summary.wasStopped = !mayGoOn;
    } while (mayGoOn);
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

bool RunDriver::asksToGoOn() const {
    return !m_state.m_progress ||
           m_state.m_progress({std::uint64_t{m_iteration} + 1, m_state.m_record.summary.combinations});
}

bool RunDriver::tryNext(XmlElement* root, Inventory::ErrorSpec& errors) {
    const bool first = m_iteration == 1;
    keepLinks();
    m_state.m_unsatisfiedDevices.clear();
    takeBaseSet();
    AlternativeOdometer(m_state).merge(root, !first);
    LinkAssignment(m_state).settle();

    SecondPass pass(m_state, m_slot);
    bool status = pass.run(root, false);
    errors = pass.errors();
    if (status) {
        m_anySatisfied = true;
        status = ExtraDeviceSearch(m_state).findNone(m_slot);
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"run() after checkForExtraDevices status = " << status << u" first = " << first);
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

void RunDriver::keepBest(const Inventory::ErrorSpec& errors) {
    if (m_iteration == 1) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"run() first iteration setting errorsIndex = " << slot::CURRENT);
        m_slot = slot::CURRENT;
    } else if (!keepsBetter(errors)) {
        return;
    }
    m_best = errors;
    m_bestIsPresent = true;
    m_state.m_record.keptLinks.clear();
    m_state.m_record.areLinksKept = false;
    keepChoices();
}

/// Whether the present iteration is better than the best so far; if so, its findings take the place of the others.
bool RunDriver::keepsBetter(const Inventory::ErrorSpec& errors) {
    InventoryState& state = m_state;
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"run() iteration: " << m_iteration << u" numErrors: " << errors.numErrors << u" prevErrors: "
                                 << m_best.numErrors);
    const bool better = errors.isBetterThan(m_best);
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
