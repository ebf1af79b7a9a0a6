/// Devices beyond the script. A device is extra when one `fail-on-extra` rule covers it by type or capability, the
/// device satisfies the rule's constraints, and the reduced graph holds no link for it (or never saw it). Devices that
/// no rule covers are never extra. A device is recorded once a call, under the first rule that makes it extra.
///
/// Only devices that some rule covers are examined; the log is told of the others, which no rule can make extra, too.

#include "libInventory/engine/ExtraDeviceSearch.h"

#include <algorithm>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

bool ExtraDeviceSearch::findNone(unsigned slot) {
    bool foundExtras = false;
    if (!m_state.m_failOnExtraElements.isEmpty()) {
        std::size_t at = 0;
        const StateManager::DeviceArray& covered = rules().coveredDevices();
        for (std::size_t position = 0; position < covered.size(); ++position) {
            logPassedOver(at, covered[position].get());
            foundExtras = examine(position, slot) || foundExtras;
        }
        logPassedOver(at, nullptr);
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"checkForExtraDevices() foundExtras: " << foundExtras);
    return !foundExtras;
}

ExtraDeviceRules& ExtraDeviceSearch::rules() {
    if (!m_state.m_extraDeviceRules) {
        m_state.m_extraDeviceRules =
            std::make_unique<ExtraDeviceRules>(m_state.m_failOnExtraElements, *m_state.m_stateManager);
    }
    return *m_state.m_extraDeviceRules;
}

bool ExtraDeviceSearch::canAskAll() {
    if (m_state.m_failOnExtraElements.isEmpty()) {
        return true;
    }
    const StateManager::DeviceArray& covered = rules().coveredDevices();
    for (std::size_t position = 0; position < covered.size(); ++position) {
        for (std::size_t rule = 0; rule < rules().count(); ++rule) {
            if (rules().covers(rule, *covered[position]) && rules().hasConstraints(rule) && !rules().canAsk(position)) {
                return false;
            }
        }
    }
    return true;
}

std::vector<boost::shared_ptr<IDeviceImp>> ExtraDeviceSearch::watched() {
    std::vector<boost::shared_ptr<IDeviceImp>> devices;
    if (m_state.m_failOnExtraElements.isEmpty()) {
        return devices;
    }
    const StateManager::DeviceArray& covered = rules().coveredDevices();
    for (std::size_t position = 0; position < covered.size(); ++position) {
        for (std::size_t rule = 0; rule < rules().count(); ++rule) {
            if (rules().covers(rule, *covered[position]) &&
                rules().satisfiesConstraints(rule, position, m_state.m_record)) {
                devices.push_back(covered[position]);
                break;
            }
        }
    }
    return devices;
}

// Contract: a rule's constraints are asked whether or not the device turned out extra.
bool ExtraDeviceSearch::examine(std::size_t position, unsigned slot) {
    ExtraDeviceRules& rules = *m_state.m_extraDeviceRules;
    const boost::shared_ptr<IDeviceImp>& device = rules.coveredDevices()[position];
    bool isNoted = false;
    for (std::size_t rule = 0; rule < rules.count(); ++rule) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"checkForExtraDevices() dev: " << device->guid() << u" extra: " << rules.element(rule).toString());
        if (!rules.covers(rule, *device)) {
            continue;
        }
        const bool isUnclaimed = hasNoLinks(device);
        const bool meetsConstraints = rules.satisfiesConstraints(rule, position, m_state.m_record);
        if (isUnclaimed && rules.hasConstraints(rule) && !rules.canAsk(position) && !isNoted) {
            noteUndecided(device);
            isNoted = true;
        }
        if (isUnclaimed && meetsConstraints) {
            ErrorFiling(m_state).fileExtra(m_state.root(), {device, &rules.element(rule)}, true, slot);
            return true;
        }
    }
    return false;
}

bool ExtraDeviceSearch::hasNoLinks(const boost::shared_ptr<IDeviceImp>& device) const {
    bool found = false;
    const bool isExtra = m_state.m_associations.isExtra(device, found);
    if (!found) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"checkForExtraDevices() dev: " << device->toString() << u" no associations found, marking as extra.");
    }
    return isExtra || !found;
}

void ExtraDeviceSearch::noteUndecided(const boost::shared_ptr<IDeviceImp>& device) {
    auto& undecided = m_state.m_record.summary.undecidedExtras;
    if (std::find(undecided.begin(), undecided.end(), device) == undecided.end()) {
        undecided.append(device);
    }
}

/// The lines of the devices from `at` on that come before the next one that is examined.
void ExtraDeviceSearch::logPassedOver(std::size_t& at, const IDeviceImp* next) const {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    const ExtraDeviceRules& rules = *m_state.m_extraDeviceRules;
    const auto& devices = m_state.m_stateManager->devicesCapableOf(CapabilityImp::ALL());
    for (; at < devices.size() && devices[at].get() != next; ++at) {
        for (std::size_t rule = 0; rule < rules.count(); ++rule) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"checkForExtraDevices() dev: " << devices[at]->guid() << u" extra: "
                                                    << rules.element(rule).toString());
        }
    }
    ++at;
}

}  // namespace vrx
