#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "libCommon/xml/XmlElement.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// What one `device` element asks for, as a set: its type and its conditions (name, locators, each test inside it).
class DeviceConditions {
public:
    explicit DeviceConditions(const XmlElement& device);

    const XmlElement& element() const noexcept { return *m_element; }
    const CapabilityImp& type() const noexcept { return m_type; }

    /// Of each condition the hash of its text, in ascending order.
    const std::vector<std::uint64_t>& conditions() const noexcept { return m_conditions; }

    /// The condition that fewest elements share, as a rule: a locator, else the last one. Requires: there is one.
    std::uint64_t telling() const noexcept { return m_telling; }

    /// Equal for elements that ask for the same.
    std::uint64_t identity() const;

    /// Whether every device that meets the other meets this too.
    bool covers(const DeviceConditions& other) const;

private:
    const XmlElement* m_element;
    CapabilityImp m_type;
    std::vector<std::uint64_t> m_conditions;
    std::uint64_t m_telling = 0;
};

/// Elements, each of which is paired with the first narrower one that is shown to them.
class CoveringElements {
public:
    using Pair = std::pair<const XmlElement*, const XmlElement*>;

    /// Of elements that ask for the same the first counts.
    void add(DeviceConditions element);

    /// Pairs those that cover this element and have no partner yet with it; `isStrict` leaves out those that it covers
    /// in turn.
    void pairWith(const DeviceConditions& narrow, bool isStrict);

    const std::vector<Pair>& pairs() const noexcept { return m_pairs; }

private:
    void pairIfCovering(std::size_t index, const DeviceConditions& narrow, bool isStrict);

    std::vector<DeviceConditions> m_elements;
    std::vector<bool> m_isPaired;
    std::unordered_set<std::uint64_t> m_identities;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> m_byTelling;
    std::vector<std::size_t> m_typesAlone;  ///< those without conditions
    std::vector<Pair> m_pairs;
};

/// The devices that must all be there and those that must not, to find elements that get in each other's way.
class AskedDevices {
public:
    void addRequired(const XmlElement& device);
    void addForbidden(const XmlElement& device) { m_forbidden.add(DeviceConditions(device)); }

    /// A required element and a narrower one that follows it, once for each of the former.
    const std::vector<CoveringElements::Pair>& wideBeforeNarrow() const noexcept { return m_wide.pairs(); }

    /// A forbidden element and a required one that it covers, once for each of the former. To be asked when all are
    /// added.
    const std::vector<CoveringElements::Pair>& forbiddenAndRequired();

private:
    std::vector<DeviceConditions> m_required;
    CoveringElements m_wide;
    CoveringElements m_forbidden;
};

}  // namespace vrx
