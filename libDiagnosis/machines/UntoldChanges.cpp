#include "libDiagnosis/machines/UntoldChanges.h"

#include <algorithm>

#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

bool UntoldChanges::isDeviceUntold(const DeviceChange& change) const {
    if (change.before != nullptr && change.after != nullptr) {
        return false;
    }
    const CapabilityImp& type = (change.before != nullptr ? change.before : change.after)->type();
    const StateManager& lacking = change.before != nullptr ? m_after : m_before;
    return std::ranges::any_of(lacking.unread(), [&type](const UnreadSource& unread) { return unread.mayHide(type); });
}

bool UntoldChanges::isValueUntold(const DeviceChange& change, const ValueChange& value) {
    if (value.what != ValueChange::What::Property || value.before.has_value() == value.after.has_value()) {
        return false;
    }
    const StateManager& lacking = value.before ? m_after : m_before;
    const CapabilityImp& type = (value.before ? change.after : change.before)->type();
    return std::ranges::any_of(lacking.unread(), [&](const UnreadSource& unread) {
        return unread.mayHide(type, value.key) || (unread.leavesUntold(type) && !hasKey(lacking, type, value.key));
    });
}

UntoldChanges::Count UntoldChanges::takeOut(std::vector<DeviceChange>& changes) {
    Count count;
    std::erase_if(changes, [&](DeviceChange& change) {
        if (isDeviceUntold(change)) {
            ++count.devices;
            return true;
        }
        const std::size_t untold =
            std::erase_if(change.values, [&](const ValueChange& value) { return isValueUntold(change, value); });
        count.values += untold;
        return untold > 0 && change.values.empty() && !change.isMoved();
    });
    return count;
}

bool UntoldChanges::hasKey(const StateManager& machine, const CapabilityImp& type, StringView key) {
    const StringView side = &machine == &m_before ? u"<" : u">";
    const auto [at, isNew] = m_hasKey.try_emplace(concat(side, type.toString(), u"\x1F", key), false);
    if (isNew) {
        at->second = std::ranges::any_of(machine.devicesCapableOf(type),
                                         [key](const auto& device) { return device->findProperty(key) != nullptr; });
    }
    return at->second;
}

}  // namespace vrx
