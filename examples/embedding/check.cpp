// A machine that this program describes itself, checked against a script: what an observer hears while the check runs,
// what was found, and the report as JSON on standard output. Ends with 0 when the machine passes.

#include <boost/make_shared.hpp>
#include <iostream>

#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libReport/CheckReport.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

namespace {

class Listener final : public vrx::InventoryTestObserver {
    void handleEvent(const vrx::TestRunEventImp& event) override { std::cerr << event.name().toUtf8() << '\n'; }
};

void addModule(vrx::StateManager& machine, const char16_t* slot, const char16_t* bytes) {
    const auto module = vrx::DeviceImp::createGeneric(vrx::CapabilityImp(u"MemoryModule"), vrx::CapabilityImp(), 0,
                                                      u"Memory module", u"", u"", slot);
    const auto size = boost::make_shared<vrx::PropertySpecImp>(u"Size", vrx::PropertyCategoryImp::SysInfo(),
                                                               vrx::DataTypeImp::STRING, vrx::CapabilityImp::ALL());
    module->addProperty(boost::make_shared<vrx::PropertyImp>(size, vrx::ValueImp(bytes)));
    machine.addDevice(module, nullptr);
}

}  // namespace

int main() {
    vrx::StateManager machine;
    addModule(machine, u"DIMM A", u"34359738368");
    addModule(machine, u"DIMM B", u"17179869184");

    vrx::Inventory inventory;
    Listener listener;
    inventory.setStateManager(machine);
    inventory.registerInventoryObserver(listener);
    inventory.loadInventoryScript(
        u"<inventory-check><device type='MemoryModule' hwLocator='DIMM B'>"
        u"<property key='Size' value='34359738368'/></device></inventory-check>");
    const bool passed = inventory.run();
    for (const vrx::Finding& finding : inventory.findings()) {
        if (finding.kind == vrx::FindingKind::PropertyMismatch) {
            std::cerr << finding.device->hwLocator().toUtf8() << ": " << finding.key.toUtf8() << " is "
                      << finding.found.toUtf8() << '\n';
        }
    }
    const vrx::CheckReport report = vrx::checkReport(inventory, machine, passed);
    std::cout << vrx::writerNamed(vrx::checkWriters(), "json")->write(report, vrx::TextFormat());
    return passed ? 0 : 1;
}
