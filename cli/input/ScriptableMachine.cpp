/// A generated text is decoded as a whole, after its keys were put in as they are. So a key with an escape in it comes
/// out as another text, in the worst case as markup that hides devices from the check.

#include "cli/input/ScriptableMachine.h"

#include <fmt/format.h>

#include <boost/unordered/unordered_flat_map.hpp>
#include <unordered_set>
#include <utility>

#include "libCommon/text/TextHash.h"
#include "libCommon/text/UuCode.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx::cli {

namespace {

using Device = StateManager::DevicePointer;

class ScriptableSearch {
public:
    ScriptableSearch(const SysinfoFilter* filter, const ImportReport& import, const std::string& name)
        : m_filter(filter), m_import(import), m_name(name) {}

    NotScriptable look(const StateManager& machine) {
        std::uint32_t number = 0;
        for (const Device& device : machine.devicesCapableOf(CapabilityImp::ALL())) {
            lookAt(*device, number++);
        }
        return std::move(m_found);
    }

    /// Requires: all devices of the machine were looked at.
    void copyTo(const StateManager& machine, StateManager& scriptable) const {
        std::vector<std::pair<Device, Device>> pending{{machine.rootDevice(), nullptr}};
        while (!pending.empty()) {
            const auto [device, above] = std::move(pending.back());
            pending.pop_back();
            Device parent = above;
            if (!m_devices.contains(device.get())) {
                parent = scriptable.addDevice(copyOf(*device), nullptr, above);
            }
            const Array<Device> children = device->children();
            for (std::size_t i = children.size(); i > 0; --i) {
                pending.emplace_back(children[i - 1], parent);
            }
        }
    }

private:
    void lookAt(const IDeviceImp& device, std::uint32_t number) {
        Array<boost::shared_ptr<IPropertyImp>> properties = device.properties(PropertyCategoryImp::ALL());
        Array<boost::shared_ptr<IPropertyImp>> selected = properties;
        if (m_filter != nullptr && !m_filter->includeDevice(device, selected)) {
            return;
        }
        if (device.type().isInvalid()) {
            m_devices.insert(&device);
            m_found.unknownTypes.push_back(
                fmt::format("\"{}\" ({})", device.type().toString().toUtf8(), device.guid().toUtf8()));
            return;
        }
        boost::unordered_flat_map<StringView, const IPropertyImp*, TextHash> firstOfKey;
        for (const auto& property : properties) {
            firstOfKey.try_emplace(property->key(), property.get());
        }
        for (const auto& property : selected) {
            lookAt(*property, *firstOfKey.at(property->key()), device, number);
        }
    }

    void lookAt(const IPropertyImp& property, const IPropertyImp& first, const IDeviceImp& device,
                std::uint32_t number) {
        const String& key = property.key();
        if (needsUuEncode(key)) {
            m_found.codedKeys.push_back(placeOfKey(key, device, number) + ": property key \"" + key.toUtf8() + "\"");
        } else if (key.isEmpty() || first.value().toStringArray(false) != property.value().toStringArray(false)) {
            m_found.hiddenProperties.push_back(fmt::format("\"{}\" ({})", key.toUtf8(), device.guid().toUtf8()));
        } else {
            return;
        }
        m_properties.insert(&property);
    }

    std::string placeOfKey(const String& key, const IDeviceImp& device, std::uint32_t number) const {
        for (const ImportReport::CodedKey& one : m_import.codedKeys) {
            if (one.device == number && one.key == key) {
                return fmt::format("{}:{}:{}", m_name, one.row, one.column);
            }
        }
        return fmt::format("{}: device {}", m_name, device.guid().toUtf8());
    }

    Device copyOf(const IDeviceImp& device) const {
        Device copy = DeviceImp::createGeneric(device.type(), device.capabilities(), 0, device.name(),
                                               device.description(), device.osLocator(), device.hwLocator());
        for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
            if (!m_properties.contains(property.get())) {
                copy->addProperty(property);
            }
        }
        return copy;
    }

    const SysinfoFilter* m_filter;
    const ImportReport& m_import;
    const std::string& m_name;
    NotScriptable m_found;
    std::unordered_set<const IDeviceImp*> m_devices;       // that are left out
    std::unordered_set<const IPropertyImp*> m_properties;  // likewise
};

void sayLeftOut(const std::vector<std::string>& leftOut, const std::string& noun, const char* why,
                const Session& session) {
    if (!leftOut.empty()) {
        session.say(fmt::format("{} left out of the script, {}; the first is {}", counted(leftOut.size(), noun), why,
                                leftOut.front()));
    }
}

}  // namespace

NotScriptable takeScriptable(const StateManager& machine, const SysinfoFilter* filter, const ImportReport& import,
                             const std::string& name, StateManager& scriptable) {
    ScriptableSearch search(filter, import, name);
    NotScriptable found = search.look(machine);
    if (!found.isEmpty()) {
        search.copyTo(machine, scriptable);
        for (const UnreadSource& unread : machine.unread()) {
            scriptable.addUnread(unread);
        }
    }
    return found;
}

void sayNotScriptable(const NotScriptable& found, bool hasLenientKeys, const Session& session) {
    if (!found.codedKeys.empty() && !hasLenientKeys) {
        const std::size_t more = found.codedKeys.size() - 1;
        throw CommandFailure(
            ExitStatus::BadInput,
            fmt::format("{} has an escape or a control character in it, so no script can ask for it{}; "
                        "--lenient-keys leaves it out",
                        found.codedKeys.front(), more > 0 ? fmt::format(", nor for {} more", more) : ""));
    }
    sayLeftOut(found.codedKeys, "property key", "because of an escape or a control character", session);
    sayLeftOut(found.unknownTypes, "device", "because no rule sees a type that is none", session);
    sayLeftOut(found.hiddenProperties, "property", "because a check sees only the first of a key, and none without one",
               session);
}

}  // namespace vrx::cli
