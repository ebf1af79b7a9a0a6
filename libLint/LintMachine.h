#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"
#include "libCommon/values/Unit.h"
#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// The kinds of units that some values have; `UnitKind::None` for those without.
class UnitKinds {
public:
    void add(UnitKind kind) noexcept { m_bits |= bitOf(kind); }
    bool has(UnitKind kind) const noexcept { return (m_bits & bitOf(kind)) != 0; }

private:
    static std::uint64_t bitOf(UnitKind kind) noexcept { return std::uint64_t{1} << static_cast<unsigned>(kind); }

    std::uint64_t m_bits = 0;
};

/// A machine that a script is compared with: what its devices have at all, whatever the values. Every question is
/// answered once and kept.
class LintMachine {
public:
    /// What the devices of a type have under one key.
    struct KeyFacts {
        bool isKnown = false;  ///< some device has the property
        UnitKinds kinds;
        std::vector<std::string> near;  ///< printable keys of theirs that look like one that none has; a few at most
    };

    /// The machine is borrowed.
    explicit LintMachine(StateManager& machine) noexcept : m_machine(machine) {}

    /// Makes it the machine that the inventory checks.
    void giveTo(Inventory& inventory) const { inventory.setStateManager(m_machine); }

    bool hasDevices(const CapabilityImp& type) const { return !m_machine.devicesCapableOf(type).isEmpty(); }
    const KeyFacts& factsOf(const CapabilityImp& type, StringView key);

    bool hasHwLocator(const CapabilityImp& type, StringView locator) const;
    bool hasOsLocator(const CapabilityImp& type, StringView locator) const;

    /// The locator of a device of that type that looks most like this one, printable; empty when none does.
    std::string nearHwLocator(const CapabilityImp& type, StringView locator);
    std::string nearOsLocator(const CapabilityImp& type, StringView locator);

private:
    KeyFacts lookUp(const CapabilityImp& type, StringView key);
    std::vector<std::string> nearKeys(const CapabilityImp& type, StringView key);
    std::string nearest(StringView written, std::span<const StringView> names);

    StateManager& m_machine;
    std::unordered_map<String, KeyFacts, HashFunc<String>> m_facts;  ///< by type and key
    int m_searchesLeft = 100;  ///< for near names, each of which looks at all devices of a type
};

}  // namespace vrx
