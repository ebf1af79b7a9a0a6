// Any bytes as a script on a small machine: a script that loads runs to its end.

#include <cstdint>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"

namespace {

constexpr vrx::StringView MACHINE =
    u"<SysInfo><Device type='Fan' name='Fan 1' hwLocator='f1' osLocator='o'><property key='Speed' value='3' "
    u"units='GHz'/><property key='Model' value='A1'/></Device><Device type='Fan' name='Fan 2' hwLocator='f2' "
    u"osLocator='o'/><Device type='Memory' name='M' hwLocator='m' osLocator='o'/></SysInfo>";

/// Alternatives multiply, and a run of all their combinations would teach nothing.
constexpr std::size_t LARGEST = 2'000;

vrx::StateManager& machine() {
    static auto* const store = [] {
        auto* const filled = new vrx::StateManager;
        vrx::Inventory::importStateFromXmlString(MACHINE, *filled);
        return filled;
    }();
    return *store;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > LARGEST) {
        return 0;
    }
    vrx::Inventory inventory;
    inventory.setStateManager(machine());
    const vrx::String script = vrx::String::UTF8Decode({reinterpret_cast<const char*>(data), size});
    if (inventory.loadInventoryScript(script)) {
        inventory.run();
    }
    return 0;
}
