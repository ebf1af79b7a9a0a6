#pragma once

#include "libMachine/smbios/SmbiosFields.h"

namespace vrx {

/// Adds the structure of that type, which `reader` has at hand, to the facts. Types that mean nothing to a recording
/// are passed over, and so are further structures of what a machine has once: the first counts, as it does for the
/// kernel.
///
/// The reader is a SmbiosTableReader or a DmidecodeReader. It offers
///
///     bool tells<Facts>() const                        whether the structure is such a thing at all
///     void read(const SmbiosField&, Value&) const      a field, of each of the types that fields have
///     void finish(Facts&) const                        what it has in a way of its own
///     std::vector<OnboardDeviceFacts> onboardList() const   the devices of a structure that holds several
template <typename Reader>
class SmbiosWalk {
public:
    SmbiosWalk(const Reader& reader, const SmbiosPlace& place, SmbiosFacts& facts)
        : m_reader(reader), m_place(place), m_facts(facts) {}

    void read(unsigned type) {
        using namespace smbios;
        switch (type) {
            case SmbiosTable::BIOS: return readInto(m_facts.bios, BIOS_FIELDS);
            case SmbiosTable::SYSTEM: return readInto(m_facts.system, SYSTEM_FIELDS);
            case SmbiosTable::BOARD: return readInto(m_facts.boards, BOARD_FIELDS);
            case SmbiosTable::CHASSIS: return readInto(m_facts.chassis, CHASSIS_FIELDS);
            case SmbiosTable::PROCESSOR: return readInto(m_facts.processors, PROCESSOR_FIELDS);
            case SmbiosTable::CACHE: return readInto(m_facts.caches, CACHE_FIELDS);
            case SmbiosTable::SLOT: return readInto(m_facts.slots, SLOT_FIELDS);
            case SmbiosTable::ONBOARD_LIST: return readList();
            case SmbiosTable::MEMORY_ARRAY: return readInto(m_facts.memory.arrays, ARRAY_FIELDS);
            case SmbiosTable::MEMORY_DEVICE: return readInto(m_facts.memory.modules, MODULE_FIELDS);
            case SmbiosTable::PORTABLE_BATTERY: return readInto(m_facts.batteries, BATTERY_FIELDS);
            case SmbiosTable::COOLING_DEVICE: return readInto(m_facts.coolingDevices, COOLING_FIELDS);
            case SmbiosTable::MANAGEMENT_CONTROLLER: return readInto(m_facts.managementController, CONTROLLER_FIELDS);
            case SmbiosTable::POWER_SUPPLY: return readInto(m_facts.powerSupplies, SUPPLY_FIELDS);
            case SmbiosTable::ONBOARD_DEVICE: return readInto(m_facts.onboardDevices, ONBOARD_FIELDS);
            case SmbiosTable::TRUSTED_PLATFORM: return readInto(m_facts.trustedPlatform, TRUSTED_PLATFORM_FIELDS);
            default: return;
        }
    }

private:
    template <typename Facts, std::size_t Size>
    void readInto(std::optional<Facts>& once, const SmbiosField<Facts> (&fields)[Size]) {
        if (!once) {
            once = readFields(fields);
        }
    }

    template <typename Facts, std::size_t Size>
    void readInto(std::vector<Facts>& list, const SmbiosField<Facts> (&fields)[Size]) {
        if (m_reader.template tells<Facts>()) {
            list.push_back(readFields(fields));
        }
    }

    /// Each device goes by its place in all lists, as the structures have no numbers for them.
    void readList() {
        for (OnboardDeviceFacts& device : m_reader.onboardList()) {
            device.place = m_place;
            device.place.instance = static_cast<unsigned>(m_facts.onboardDevices.size());
            m_facts.onboardDevices.push_back(std::move(device));
        }
    }

    template <typename Facts, std::size_t Size>
    Facts readFields(const SmbiosField<Facts> (&fields)[Size]) {
        Facts facts;
        facts.place = m_place;
        for (const SmbiosField<Facts>& field : fields) {
            std::visit([&](auto member) { readMember(field, facts.*member); }, field.member);
        }
        m_reader.finish(facts);
        return facts;
    }

    template <typename Facts, typename Value>
    void readMember(const SmbiosField<Facts>& field, Value& value) {
        if (value == Value()) {
            m_reader.read(field, value);
        }
    }

    const Reader& m_reader;
    const SmbiosPlace& m_place;
    SmbiosFacts& m_facts;
};

}  // namespace vrx
