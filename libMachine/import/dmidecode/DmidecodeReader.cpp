/// What is regular stands in SmbiosFields.h; here are the ways in which only the text writes a field, and what it says
/// in words where the table has flags.

#include "libMachine/import/dmidecode/DmidecodeReader.h"

#include <algorithm>

#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"

namespace vrx {

namespace {

/// A UUID in small letters, as the kernel writes it; empty where the text says that there is none.
std::string uuidIn(const std::string& text) { return text.starts_with("Not ") ? std::string() : smallLetters(text); }

std::string bufferingIn(const std::string& typeDetail) {
    const auto has = [&typeDetail](std::string_view word) {
        return typeDetail.find(word) != std::string::npos;
    };
    return has("LRDIMM") ? "Load Reduced" : has("Unbuffered") ? "Unbuffered" : has("Registered") ? "Registered" : "";
}

/// The number behind a word: "Model " in "Type 0, Family 6, Model 85, Stepping 7".
std::optional<unsigned> numberBehind(std::string_view text, std::string_view word) {
    const std::size_t at = text.find(word);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(at + word.size());
    const auto number = parseNumber(text.substr(0, text.find(',')));
    return number && *number <= 0xFFFF ? std::optional(static_cast<unsigned>(*number)) : std::nullopt;
}

}  // namespace

std::string_view DmidecodeReader::labelOf(std::string_view names) const noexcept {
    while (true) {
        const std::size_t end = names.find('|');
        const std::string_view name = names.substr(0, end);
        if (end == std::string_view::npos || m_values.structure().field(name) != nullptr) {
            return name;
        }
        names.remove_prefix(end + 1);
    }
}

std::string DmidecodeReader::textOf(std::string_view label, const SmbiosKind& kind) const {
    switch (kind.writing) {
        case SmbiosWriting::Word: return m_values.word(label);
        case SmbiosWriting::Uuid: return uuidIn(m_values.text(label));
        case SmbiosWriting::Buffering: return bufferingIn(m_values.text(label));
        default: return m_values.text(label);
    }
}

double DmidecodeReader::numberOf(std::string_view label, const SmbiosKind& kind) const {
    switch (kind.writing) {
        case SmbiosWriting::Measure: return m_values.measure(label, kind.units);
        case SmbiosWriting::CacheLevel: return numberBehind(m_values.text(label), "Level ").value_or(0);
        default: return m_values.number(label);
    }
}

template <>
bool DmidecodeReader::tells<ProcessorFacts>() const {
    const std::string type = m_values.word("Type");
    const bool isCutOff = m_values.text("Status").empty() && m_values.text("Version").empty();
    return (type.empty() || type == "Central Processor") && !isCutOff;
}

/// One that was cut off does not say whether there is a module.
template <>
bool DmidecodeReader::tells<MemoryModuleFacts>() const {
    return !m_values.text("Size").empty();
}

void DmidecodeReader::finish(BiosFacts& bios) const {
    bios.isVirtualMachine = m_values.structure().hasItem("System is a virtual machine");
}

void DmidecodeReader::finish(ProcessorFacts& processor) const {
    const std::string status = m_values.text("Status");
    processor.isPopulated = status.empty() || status.starts_with("Populated");
    if (processor.socketType == "None") {
        processor.socketType.clear();
    }
    const std::string signature = m_values.text("Signature");
    processor.family = numberBehind(signature, "Family ");
    processor.model = numberBehind(signature, "Model ");
    processor.stepping = numberBehind(signature, "Stepping ");
}

void DmidecodeReader::finish(MemoryArrayFacts& array) const {
    const std::string use = m_values.text("Use");
    array.isSystemMemory = use.empty() || use == "System Memory";
}

void DmidecodeReader::finish(MemoryModuleFacts& module) const {
    const std::string size = m_values.text("Size");
    module.isInstalled = size != "No Module Installed" && size != "Not Installed";
    if (module.technology.starts_with("Intel Optane")) {
        module.technology = memoryTechnologyName(0x07);  // versions spell it in several ways
    }
    const bool isNonVolatile = m_values.text("Type Detail").find("Non-Volatile") != std::string::npos;
    module.isPersistent = isNonVolatile || (!module.technology.empty() && module.technology != "DRAM");
}

void DmidecodeReader::finish(OnboardDeviceFacts& device) const {
    device.isEnabled = m_values.text("Status") == "Enabled";
}

/// The fields of all devices one after the other; each begins with its type.
std::vector<OnboardDeviceFacts> DmidecodeReader::onboardList() const {
    std::vector<OnboardDeviceFacts> devices;
    for (const DmidecodeStructure::Field& field : m_values.structure().fields) {
        if (field.key == "Type") {
            devices.emplace_back().type = DmidecodeValues::wordIn(field.value);
        } else if (!devices.empty() && field.key == "Status") {
            devices.back().isEnabled = field.value == "Enabled";
        } else if (!devices.empty() && field.key == "Description") {
            devices.back().designation = DmidecodeValues::textIn(field.value);
        }
    }
    return devices;
}

void DmidecodeReader::finish(ManagementControllerFacts& controller) const {
    std::string& name = controller.interfaceType;
    name.resize(std::min(name.find(" ("), name.size()));  // "KCS (Keyboard Control Style)"
}

void DmidecodeReader::finish(PortableBatteryFacts& battery) const {
    static constexpr double MILLIVOLTS = 1000;
    battery.designVoltage /= MILLIVOLTS;
}

void DmidecodeReader::finish(PowerSupplyFacts& supply) const {
    supply.isPresent = m_values.text("Status") != "Not Present";
}

}  // namespace vrx
