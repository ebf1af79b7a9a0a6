/// A table is read in one pass. What is regular stands in SmbiosFields.h; here are the flags, and what is told by
/// several fields together.

#include "libMachine/smbios/SmbiosTableReader.h"

#include <fmt/format.h>

#include "libMachine/smbios/SmbiosWalk.h"

namespace vrx {

template <>
bool SmbiosTableReader::tells<ProcessorFacts>() const {
    static constexpr unsigned CENTRAL_PROCESSOR = 3;
    return m_structure.byte(0x05) == CENTRAL_PROCESSOR;
}

void SmbiosTableReader::finish(BiosFacts& bios) const { bios.isVirtualMachine = hasBits(0x13, 0x10); }

void SmbiosTableReader::finish(ProcessorFacts& processor) const {
    processor.isPopulated = hasBits(0x18, 0x40);
    readCpuid(processor);
}

/// Family, model and stepping of an x86 processor; other kinds of processors have other things in their CPUID.
void SmbiosTableReader::readCpuid(ProcessorFacts& processor) const {
    const std::string& vendor = processor.vendor;
    const bool isX86 = vendor.find("Intel") != std::string::npos || vendor.find("AMD") != std::string::npos ||
                       vendor.find("Advanced Micro") != std::string::npos;
    const std::uint32_t cpuid = m_structure.dword(0x08);
    if (isX86 && cpuid != 0) {
        processor.family = (cpuid >> 20 & 0xFF) + (cpuid >> 8 & 0x0F);
        processor.model = (cpuid >> 12 & 0xF0) + (cpuid >> 4 & 0x0F);
        processor.stepping = cpuid & 0x0F;
    }
}

void SmbiosTableReader::finish(MemoryArrayFacts& array) const {
    static constexpr unsigned SYSTEM_MEMORY = 3;
    array.isSystemMemory = m_structure.byte(0x05) == SYSTEM_MEMORY;
}

void SmbiosTableReader::finish(MemoryModuleFacts& module) const {
    module.isInstalled = m_structure.word(0x0C) != 0;
    const bool isNonVolatile = hasBits(0x14, 0x10);
    module.isPersistent = isNonVolatile || (!module.technology.empty() && module.technology != "DRAM");
}

void SmbiosTableReader::finish(OnboardDeviceFacts& device) const { device.isEnabled = hasBits(0x05, 0x80); }

/// Two bytes each behind the header: the type with the bit that says whether it is switched on, and the text's number.
std::vector<OnboardDeviceFacts> SmbiosTableReader::onboardList() const {
    std::vector<OnboardDeviceFacts> devices;
    for (std::size_t offset = 0x04; m_structure.has(offset, 2); offset += 2) {
        OnboardDeviceFacts device;
        device.type = smbios::nameAt<onboardDeviceName, 0x7F>(m_structure, offset);
        device.designation = m_structure.text(offset + 1);
        device.isEnabled = hasBits(offset, 0x80);
        devices.push_back(std::move(device));
    }
    return devices;
}

void SmbiosTableReader::finish(PowerSupplyFacts& supply) const {
    supply.isPresent = !m_structure.has(0x0E, 2) || hasBits(0x0E, 0x02);
}

void SmbiosTableReader::finish(PortableBatteryFacts& battery) const {
    if (const unsigned multiplier = m_structure.byte(0x15); multiplier != 0) {
        battery.designCapacity *= multiplier;
    }
}

SmbiosFacts readSmbiosFacts(const SmbiosTable& table) {
    SmbiosFacts facts;
    facts.isEmpty = table.isEmpty();
    for (const SmbiosStructure& structure : table.structures()) {
        const unsigned instance = structure.instance();
        const SmbiosPlace place{structure.handle(), instance, smbiosEntry(structure.type(), instance)};
        SmbiosWalk(SmbiosTableReader(structure), place, facts).read(structure.type());
    }
    return facts;
}

std::string smbiosEntry(unsigned type, unsigned instance) {
    return fmt::format("/sys/firmware/dmi/entries/{}-{}", type, instance);
}

}  // namespace vrx
