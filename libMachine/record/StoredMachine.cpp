#include "libMachine/record/StoredMachine.h"

#include <utility>
#include <vector>

#include "libSystemState/StateManager.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"

namespace vrx {

StoredMachine::StoredMachine(const StateManager& store) {
    std::vector<std::pair<boost::shared_ptr<IDeviceImp>, std::size_t>> pending;
    if (store.rootDevice()) {
        pending.emplace_back(store.rootDevice(), Recording::NONE);
    }
    for (const UnreadSource& unread : store.unread()) {
        m_recording.addUnread(unread);
    }
    while (!pending.empty()) {
        const auto [device, parent] = std::move(pending.back());
        pending.pop_back();
        DeviceRecord record;
        const String type = device->type().toString();
        record.type = kept(type);
        for (const String& capability : device->capabilities().names()) {
            if (capability != type) {
                record.capabilities.push_back(kept(capability));
            }
        }
        record.name = device->name().toUtf8();
        record.hwLocator = device->hwLocator().toUtf8();
        record.osLocator = device->osLocator().toUtf8();
        if (parent != Recording::NONE) {
            record.parent = parent;
        }
        for (const auto& property : device->properties(PropertyCategoryImp::ALL())) {
            record.properties.push_back({kept(property->key()), property->category(), property->value()});
        }
        const std::size_t place = m_recording.add(std::move(record));
        const Array<boost::shared_ptr<IDeviceImp>> children = device->children();
        for (std::size_t i = children.size(); i > 0; --i) {
            pending.emplace_back(children[i - 1], place);
        }
    }
}

}  // namespace vrx
