#pragma once

#include "libMachine/smbios/SmbiosFields.h"

namespace vrx {

/// A structure of the table for SmbiosWalk. Borrows it.
class SmbiosTableReader {
public:
    explicit SmbiosTableReader(const SmbiosStructure& structure) noexcept : m_structure(structure) {}

    template <typename Facts>
    bool tells() const {
        return true;
    }

    template <typename Facts>
    void read(const SmbiosField<Facts>& field, std::string& text) const {
        text = field.kind.text(m_structure, field.offset);
    }

    template <typename Facts>
    void read(const SmbiosField<Facts>& field, std::optional<unsigned>& number) const {
        if (const auto found = numberOf(field)) {
            number = static_cast<unsigned>(*found);
        }
    }

    template <typename Facts, typename Number>
    void read(const SmbiosField<Facts>& field, Number& number) const {
        number = static_cast<Number>(numberOf(field).value_or(0)) / static_cast<Number>(field.kind.divisor);
    }

    template <typename Facts>
    void finish(Facts&) const {}
    void finish(BiosFacts& bios) const;
    void finish(ProcessorFacts& processor) const;
    void finish(MemoryArrayFacts& array) const;
    void finish(MemoryModuleFacts& module) const;
    void finish(OnboardDeviceFacts& device) const;
    void finish(PowerSupplyFacts& supply) const;
    void finish(PortableBatteryFacts& battery) const;

    std::vector<OnboardDeviceFacts> onboardList() const;

private:
    template <typename Facts>
    std::optional<std::uint64_t> numberOf(const SmbiosField<Facts>& field) const {
        return field.kind.number(m_structure, field.offset, field.kind.wider);
    }

    bool hasBits(std::size_t offset, unsigned bits) const noexcept { return (m_structure.byte(offset) & bits) != 0; }

    void readCpuid(ProcessorFacts& processor) const;

    const SmbiosStructure& m_structure;
};

template <>
bool SmbiosTableReader::tells<ProcessorFacts>() const;

}  // namespace vrx
