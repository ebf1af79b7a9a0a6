#pragma once

#include "libMachine/import/dmidecode/DmidecodeValues.h"
#include "libMachine/smbios/SmbiosFields.h"

namespace vrx {

/// A structure of the text for SmbiosWalk. Borrows it.
class DmidecodeReader {
public:
    DmidecodeReader(const DmidecodeStructure& structure, DamageList& damage) : m_values(structure, damage) {}

    template <typename Facts>
    bool tells() const {
        return true;
    }

    template <typename Facts>
    void read(const SmbiosField<Facts>& field, std::string& text) const {
        text = textOf(labelOf(field.label), field.kind);
    }

    template <typename Facts>
    void read(const SmbiosField<Facts>& field, std::optional<unsigned>& handle) const {
        handle = m_values.handle(labelOf(field.label));
    }

    template <typename Facts>
    void read(const SmbiosField<Facts>& field, std::uint64_t& size) const {
        size = m_values.size(labelOf(field.label));
    }

    template <typename Facts, typename Number>
    void read(const SmbiosField<Facts>& field, Number& number) const {
        number = static_cast<Number>(numberOf(labelOf(field.label), field.kind));
    }

    template <typename Facts>
    void finish(Facts&) const {}
    void finish(BiosFacts& bios) const;
    void finish(ProcessorFacts& processor) const;
    void finish(MemoryArrayFacts& array) const;
    void finish(MemoryModuleFacts& module) const;
    void finish(OnboardDeviceFacts& device) const;
    void finish(ManagementControllerFacts& controller) const;
    void finish(PortableBatteryFacts& battery) const;
    void finish(PowerSupplyFacts& supply) const;

    std::vector<OnboardDeviceFacts> onboardList() const;

private:
    /// Of the newer and older names of a field, the first that the structure has.
    std::string_view labelOf(std::string_view names) const noexcept;
    std::string textOf(std::string_view label, const SmbiosKind& kind) const;
    double numberOf(std::string_view label, const SmbiosKind& kind) const;

    DmidecodeValues m_values;
};

template <>
bool DmidecodeReader::tells<ProcessorFacts>() const;
template <>
bool DmidecodeReader::tells<MemoryModuleFacts>() const;

}  // namespace vrx
