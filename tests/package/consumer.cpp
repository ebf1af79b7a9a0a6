// A stranger's program: checks a recorded machine through nothing but the installed headers and libraries.

#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"

namespace {

bool passes(vrx::StateManager& machine, const char16_t* script) {
    vrx::Inventory inventory;
    inventory.setStateManager(machine);
    bool satisfied = false;
    return inventory.loadInventoryScript(script) && inventory.run(&satisfied) && satisfied;
}

}  // namespace

int main() {
    vrx::StateManager machine;
    const bool imported = vrx::Inventory::importStateFromXmlString(
        u"<SysInfo><Device type='System' name='box' hwLocator='box' osLocator=''/>"
        u"<Device type='Processor' name='cpu' hwLocator='socket-0' osLocator='cpu0'/></SysInfo>",
        machine);
    const bool found = passes(machine, u"<inventory-check><device type='Processor' name='cpu'/></inventory-check>");
    const bool missed = !passes(machine, u"<inventory-check><device type='Processor' name='gpu'/></inventory-check>");
    return imported && found && missed ? 0 : 1;
}
