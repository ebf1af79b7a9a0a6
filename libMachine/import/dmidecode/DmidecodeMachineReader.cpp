/// BIOS, system, boards, chassis, processors and caches out of the text of dmidecode.

#include <algorithm>

#include "libMachine/import/dmidecode/DmidecodeReaders.h"
#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

/// A UUID in small letters, as the kernel writes it; empty where the text says that there is none.
std::string uuidText(std::string text) {
    if (text.starts_with("Not ")) {
        return {};
    }
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    return text;
}

/// The number behind a label: "Model " in "Type 0, Family 6, Model 85, Stepping 7".
std::optional<unsigned> numberBehind(std::string_view text, std::string_view label) {
    const std::size_t at = text.find(label);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(at + label.size());
    const auto number = parseNumber(text.substr(0, text.find(',')));
    return number && *number <= 0xFFFF ? std::optional(static_cast<unsigned>(*number)) : std::nullopt;
}

/// "Enabled, Not Socketed, Level 3" says 3.
unsigned cacheLevel(const std::string& configuration) { return numberBehind(configuration, "Level ").value_or(0); }

}  // namespace

void readBios(const DmidecodeValues& values, const SmbiosPlace&, SmbiosFacts& facts) {
    if (facts.bios) {
        return;
    }
    BiosFacts& bios = facts.bios.emplace();
    bios.vendor = values.text("Vendor");
    bios.version = values.text("Version");
    bios.releaseDate = values.text("Release Date");
    bios.revision = values.text("BIOS Revision");
    bios.controllerRevision = values.text("Firmware Revision");
    bios.isVirtualMachine = values.structure().hasItem("System is a virtual machine");
}

void readSystem(const DmidecodeValues& values, const SmbiosPlace&, SmbiosFacts& facts) {
    if (facts.system) {
        return;
    }
    SystemFacts& system = facts.system.emplace();
    system.vendor = values.text("Manufacturer");
    system.model = values.text("Product Name");
    system.version = values.text("Version");
    system.serialNumber = values.text("Serial Number");
    system.uuid = uuidText(values.text("UUID"));
    system.sku = values.text("SKU Number");
    system.family = values.text("Family");
}

void readBoard(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    BoardFacts& board = facts.boards.emplace_back();
    board.place = place;
    board.vendor = values.text("Manufacturer");
    board.model = values.text("Product Name");
    board.version = values.text("Version");
    board.serialNumber = values.text("Serial Number");
    board.assetTag = values.text("Asset Tag");
    board.location = values.text("Location In Chassis");
    board.type = values.word("Type");
}

void readChassis(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    ChassisFacts& chassis = facts.chassis.emplace_back();
    chassis.place = place;
    chassis.vendor = values.text("Manufacturer");
    chassis.type = values.word("Type");
    chassis.version = values.text("Version");
    chassis.serialNumber = values.text("Serial Number");
    chassis.assetTag = values.text("Asset Tag");
    chassis.sku = values.text("SKU Number");
    chassis.height = static_cast<unsigned>(values.measure("Height", "U"));
}

void readProcessor(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    if (const std::string type = values.word("Type"); !type.empty() && type != "Central Processor") {
        return;
    }
    const std::string status = values.text("Status");
    if (status.empty() && values.text("Version").empty()) {
        return;  // cut off before it says whether there is a processor
    }
    ProcessorFacts& processor = facts.processors.emplace_back();
    processor.place = place;
    processor.isPopulated = status.empty() || status.starts_with("Populated");
    processor.socket = values.text("Socket Designation");
    processor.socketType = values.word("Upgrade");
    if (processor.socketType == "None") {
        processor.socketType.clear();
    }
    processor.vendor = values.text("Manufacturer");
    processor.version = values.text("Version");
    processor.serialNumber = values.text("Serial Number");
    processor.assetTag = values.text("Asset Tag");
    processor.partNumber = values.text("Part Number");
    const std::string signature = values.text("Signature");
    processor.family = numberBehind(signature, "Family ");
    processor.model = numberBehind(signature, "Model ");
    processor.stepping = numberBehind(signature, "Stepping ");
    processor.clock = static_cast<unsigned>(values.measure("Current Speed", "MHz"));
    processor.maxClock = static_cast<unsigned>(values.measure("Max Speed", "MHz"));
    const unsigned enabled = values.number("Core Enabled");
    processor.cores = enabled != 0 ? enabled : values.number("Core Count");
    processor.threads = values.number("Thread Count");
    processor.level3Cache = values.handle("L3 Cache Handle");
}

void readCache(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    CacheFacts& cache = facts.caches.emplace_back();
    cache.place = place;
    cache.level = cacheLevel(values.text("Configuration"));
    cache.size = values.size("Installed Size");
}

}  // namespace vrx
