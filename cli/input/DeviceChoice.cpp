#include "cli/input/DeviceChoice.h"

#include <unordered_set>

#include "cli/input/NearGuids.h"
#include "libCommon/text/NearestName.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/capabilities/CapabilityNames.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx::cli {

namespace {

/// The devices that answer to the text. A guid may belong to several devices, which then share both locators.
std::unordered_set<const IDeviceImp*> devicesCalled(const String& text, const StateManager& store) {
    std::unordered_set<const IDeviceImp*> found;
    const auto add = [&found](const StateManager::DeviceArray& devices) {
        for (const auto& device : devices) {
            found.insert(device.get());
        }
    };
    add(store.devicesByHwLocator(text));
    add(store.devicesByOsLocator(text));
    add(store.devicesByName(text));
    if (const auto first = store.deviceByGuid(text)) {
        for (const auto& device : store.devicesByHwLocator(first->hwLocator())) {
            if (device->osLocator() == first->osLocator()) {
                found.insert(device.get());
            }
        }
    }
    return found;
}

}  // namespace

std::string typeProblem(const std::string& type) {
    const String name = String::UTF8Decode(type);
    if (!CapabilityImp(name).isInvalid()) {
        return {};
    }
    return "\"" + type + "\" is no device type" + suggestion(name, capabilityNames());
}

std::vector<const IDeviceImp*> chosenDevices(const StateManager& store, const DeviceChoice& choice) {
    const CapabilityImp type =
        choice.type.empty() ? CapabilityImp::ALL() : CapabilityImp(String::UTF8Decode(choice.type));
    const bool isOfAnyName = choice.device.empty();
    const auto called =
        isOfAnyName ? std::unordered_set<const IDeviceImp*>() : devicesCalled(String::UTF8Decode(choice.device), store);
    std::vector<const IDeviceImp*> chosen;
    for (const auto& device : store.devicesCapableOf(type)) {
        if (isOfAnyName || called.contains(device.get())) {
            chosen.push_back(device.get());
        }
    }
    return chosen;
}

std::string noSuchDevice(const std::string& device, const std::string& machine, const StateManager& store) {
    std::string line = machine + " has no device \"" + device + "\"; expected a guid, a locator or a name";
    const char* before = ", near ones are ";
    const bool isGuid = device.find('|') != device.npos;
    const String text = String::UTF8Decode(device);
    for (const std::string& near : isGuid ? nearGuids(text, store) : nearDevices(text, store)) {
        line += before + ("\"" + near + "\"");
        before = ", ";
    }
    return line;
}

}  // namespace vrx::cli
