/// The run driver. The first pass finds which alternatives can be met and how many combinations they make; then the
/// combinations are tried one by one, each as a second pass over a merged and reduced graph, until one passes. Of those
/// that fail the best is kept (fewest errors, then the larger index sum; the earlier of equals), and its findings are
/// written into the script when all have failed.
///
/// The first iteration files its findings in the slot of the best iteration, all later ones in the slot of the current
/// one; a better iteration's slot takes the place of the best one's.
///
/// Contract: the list of unsatisfied devices is that of the last combination tried, not of the best.

#include "libCommon/error/Exception.h"
#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libInventory/engine/ExtraDeviceRules.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

bool Inventory::run(bool* inventorySatisfied) {
    State& state = *m_state;
    XmlElement* const root = state.m_script.Error() ? nullptr : state.m_script.RootElement();
    if (root == nullptr) {
        for (InventoryTestObserver* const observer : state.m_observers) {
            observer->handleFileError(
                u"Inventory Script has not loaded successfully, load script with "
                u"Inventory::loadInventoryScriptFile() before calling Inventory::run()");
        }
        return false;
    }
    bool passed = false;
    unsigned errorsIndex = slot::BEST;
    try {
        passed = runCombinations(root, inventorySatisfied, errorsIndex);
    } catch (const Exception& exception) {
        reportUnexpectedException(root, exception.text(), errorsIndex);
    }
    if (!passed) {
        raiseTestFailed();
    }
    return passed;
}

bool Inventory::runCombinations(XmlElement* root, bool* inventorySatisfied, unsigned& errorsIndex) {
    State& state = *m_state;
    settleFiledTips();
    state.m_extraDeviceRules.reset();
    assignIndices(root, StringView(), 0);
    ErrorSpec firstPassErrors;
    runFirstPass(root, firstPassErrors, false, 0);
    VRX_LOG(inventoryLog(), LogPriority::Info, u"First Pass: totalCombinations = " << state.m_totalCombinations);

    unsigned passNumber = 2;
    std::uint32_t iteration = 0;
    bool first = true;
    bool anySatisfied = false;
    bool status = false;
    ErrorSpec previous;
    do {
        ++iteration;
        VRX_LOG(inventoryLog(), LogPriority::Info, u"run() current iteration: " << passNumber);
        ErrorSpec errors;
        status = runIteration(root, first, passNumber, errorsIndex, errors, anySatisfied);
        if (!status && first) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"run() first iteration setting errorsIndex = " << slot::CURRENT);
            errorsIndex = slot::CURRENT;
            previous = errors;
        } else if (!status) {
            keepBetterIteration(iteration, errors, previous);
        }
        first = false;
        ++passNumber;
    } while (!status && iteration < state.m_totalCombinations);

    if (!status) {
        if (!anySatisfied) {
            checkForExtraDevices(!state.m_failOnExtraElements.isEmpty(), slot::BEST, passNumber);
        }
        // Of a run that shares a match cache only the extra devices are read, and those are filed at the root.
        if (state.m_matchCache != nullptr && !inventoryLog().isEnabled(LogPriority::Debug)) {
            gatherErrorsForElement(root, slot::BEST);
        } else {
            gatherErrorsAndCleanUserData(root, slot::BEST);
        }
    }
    if (inventorySatisfied != nullptr) {
        *inventorySatisfied = status || anySatisfied;
    }
    return status;
}

bool Inventory::runIteration(XmlElement* root, bool first, unsigned passNumber, unsigned errorsIndex, ErrorSpec& errors,
                             bool& anySatisfied) {
    State& state = *m_state;
    state.m_unsatisfiedDevices.clear();
    takeCommonAssociations(first);
    const bool hasAlternatives = state.m_associationSets.size() > 1;
    if (hasAlternatives || inventoryLog().isEnabled(LogPriority::Debug)) {
        bool more = false;
        bool increment = !first;
        mergeSubTrees(root, state.m_associations, more, increment);
    }
    state.m_associations.removeExtraLinks();

    bool status = runSecondPass(root, false, passNumber, errorsIndex, errors);
    if (status) {
        anySatisfied = true;
        const bool failOnExtra = !state.m_failOnExtraElements.isEmpty();
        const bool noExtras = checkForExtraDevices(failOnExtra, errorsIndex, passNumber);
        status = !failOnExtra || noExtras;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"run() after checkForExtraDevices status = " << status << u" first = " << first);
    return status;
}

/// What the elements outside of all alternatives matched is the start of every combination. A lonely combination takes
/// it as it is, and one after another goes back to it, unless the log wants to tell of each link.
void Inventory::takeCommonAssociations(bool first) {
    State& state = *m_state;
    const bool isLogged = inventoryLog().isEnabled(LogPriority::Debug);
    if (!first && !isLogged && state.m_associations.rewind()) {
        return;
    }
    state.m_associations.clear();
    if (state.m_totalCombinations == 1 && !isLogged) {
        state.m_associations.swap(state.m_associationSets[0]);
    } else {
        state.m_associations.append(state.m_associationSets[0]);
        state.m_associations.mark();
    }
}

void Inventory::keepBetterIteration(std::uint32_t iteration, const ErrorSpec& errors, ErrorSpec& previous) {
    State& state = *m_state;
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"run() iteration: " << iteration << u" numErrors: " << errors.numErrors << u" prevErrors: "
                                 << previous.numErrors);
    const bool better = errors.isBetterThan(previous);
    VRX_LOG(
        inventoryLog(), LogPriority::Debug,
        u"run() iteration: " << iteration << (better ? u" this iteration is better" : u" previous iteration better"));
    if (better) {
        state.m_errorElementLists[slot::BEST] = state.m_errorElementLists[slot::CURRENT];
        state.m_tipTables[slot::BEST] = std::move(state.m_tipTables[slot::CURRENT]);
        state.m_extraTables[slot::BEST] = std::move(state.m_extraTables[slot::CURRENT]);
        previous = errors;
    }
    state.m_errorElementLists[slot::CURRENT].clear();
    state.m_tipTables[slot::CURRENT].clear();
    state.m_extraTables[slot::CURRENT].clear();
}

void Inventory::reportUnexpectedException(XmlElement* root, const String& text, unsigned errorsIndex) {
    VRX_LOG(inventoryLog(), LogPriority::Error, u"Caught unexpected exception: " << text);
    failDevice(root, u"Inventory Unexpected Error: " + text, slot::SCRIPT);
    gatherErrorsAndCleanUserData(root, errorsIndex);
}

}  // namespace vrx
