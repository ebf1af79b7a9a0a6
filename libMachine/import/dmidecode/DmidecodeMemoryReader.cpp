/// Memory arrays and modules out of the text of dmidecode.

#include "libMachine/import/dmidecode/DmidecodeReaders.h"

namespace vrx {

namespace {

/// Older versions call transfers a second MHz.
constexpr std::string_view TRANSFERS = "MT/s|MHz";
constexpr std::string_view BITS = "bits|bit";

std::string bufferingOf(const std::string& typeDetail) {
    const auto has = [&typeDetail](std::string_view word) {
        return typeDetail.find(word) != std::string::npos;
    };
    return has("LRDIMM") ? "Load Reduced" : has("Unbuffered") ? "Unbuffered" : has("Registered") ? "Registered" : "";
}

/// The newer name of a field, or the older one.
unsigned speedOf(const DmidecodeValues& values, std::string_view newer, std::string_view older) {
    const std::string_view key = values.structure().field(newer) != nullptr ? newer : older;
    return static_cast<unsigned>(values.measure(key, TRANSFERS));
}

}  // namespace

void readMemoryArray(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    MemoryArrayFacts& array = facts.memory.arrays.emplace_back();
    array.place = place;
    const std::string use = values.text("Use");
    array.isSystemMemory = use.empty() || use == "System Memory";
    array.errorCorrection = values.word("Error Correction Type");
    array.maximumSize = values.size("Maximum Capacity");
    array.slots = values.number("Number Of Devices");
}

void readMemoryModule(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    const std::string size = values.text("Size");
    if (size.empty()) {
        return;  // cut off before it says whether there is a module
    }
    MemoryModuleFacts& module = facts.memory.modules.emplace_back();
    module.place = place;
    module.array = values.handle("Array Handle");
    module.isInstalled = size != "No Module Installed" && size != "Not Installed";
    module.slot = values.text("Locator");
    module.bank = values.text("Bank Locator");
    module.formFactor = values.word("Form Factor");
    module.memoryType = values.word("Type");
    module.buffering = bufferingOf(values.text("Type Detail"));
    module.vendor = values.text("Manufacturer");
    module.partNumber = values.text("Part Number");
    module.serialNumber = values.text("Serial Number");
    module.assetTag = values.text("Asset Tag");
    module.size = values.size("Size");
    module.speed = speedOf(values, "Speed", "Speed");
    module.configuredSpeed = speedOf(values, "Configured Memory Speed", "Configured Clock Speed");
    module.voltage = values.measure("Configured Voltage", "V");
    module.dataWidth = static_cast<unsigned>(values.measure("Data Width", BITS));
    module.totalWidth = static_cast<unsigned>(values.measure("Total Width", BITS));
    module.ranks = values.number("Rank");
}

}  // namespace vrx
