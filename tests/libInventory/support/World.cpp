#include "tests/libInventory/support/World.h"

#include <boost/make_shared.hpp>

#include "libCommon/xml/XmlElement.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

namespace vrx::test {

String text(const std::string& utf8) { return String::UTF8Decode(utf8); }
std::string utf8(const String& text) { return text.toUtf8(); }

boost::shared_ptr<IDeviceImp> addDevice(StateManager& store, const std::string& type, const std::string& name,
                                        const std::string& hwLocator, const std::string& osLocator,
                                        const Properties& properties) {
    auto device = DeviceImp::createGeneric(CapabilityImp(text(type)), CapabilityImp(), 0, text(name), u"desc",
                                           text(osLocator), text(hwLocator));
    for (const auto& [key, values] : properties) {
        auto spec = boost::make_shared<PropertySpecImp>(text(key), PropertyCategoryImp::SysInfo(), DataTypeImp::STRING,
                                                        CapabilityImp::ALL());
        Array<String> texts;
        for (const std::string& value : values) {
            texts.append(text(value));
        }
        device->addProperty(
            boost::make_shared<PropertyImp>(spec, texts.size() == 1 ? ValueImp(texts[0]) : ValueImp(texts)));
    }
    store.addDevice(device, nullptr);
    return device;
}

namespace {

void collectErrors(const XmlElement& element, std::vector<std::string>& errors) {
    for (const XmlElement* child = element.FirstChildElement(); child != nullptr; child = child->NextSiblingElement()) {
        if (child->Name() == u"error") {
            errors.push_back(utf8(child->GetText()));
        } else {
            collectErrors(*child, errors);
        }
    }
}

std::vector<std::string> namesOf(const Array<Inventory::DeviceSpec>& specs) {
    std::vector<std::string> names;
    for (const auto& spec : specs) {
        names.push_back(utf8(spec.name.isEmpty() ? spec.hwLocator : spec.name));
    }
    return names;
}

}  // namespace

Outcome check(StateManager& store, const std::string& body, const std::string& rootAttributes) {
    Inventory inventory;
    RecordingObserver observer;
    inventory.setStateManager(store);
    inventory.registerInventoryObserver(observer);
    Outcome outcome;
    outcome.loaded =
        inventory.loadInventoryScript(text("<inventory-check" + rootAttributes + ">" + body + "</inventory-check>"));
    outcome.passed = inventory.run(&outcome.satisfied);
    outcome.annotated = utf8(inventory.script().toString());
    outcome.unsatisfied = namesOf(inventory.unsatisfiedDevices());
    outcome.extra = namesOf(inventory.extraDevices());
    if (inventory.script().RootElement() != nullptr) {
        collectErrors(*inventory.script().RootElement(), outcome.errors);
    }
    for (const auto& event : observer.events) {
        outcome.events.push_back(utf8(event.name()));
    }
    return outcome;
}

}  // namespace vrx::test
