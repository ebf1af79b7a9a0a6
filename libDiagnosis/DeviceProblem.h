#pragma once

#include <optional>
#include <vector>

#include "libDiagnosis/Candidates.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// Why no device could be tried for an element.
struct Refusal {
    static constexpr std::size_t MOST_PRESENT = 3;

    FindingKind kind = FindingKind::NoDeviceOfType;
    String expected;              ///< the type, the pattern of the name or the locator
    String words;                 ///< the engine's, for kinds that nobody has better words for
    std::vector<String> present;  ///< the first few different texts of that sort that devices of the type have
    bool hasMorePresent = false;
};

/// A `device` element that the machine does not meet, and what became of what it asks for.
///
///     const DeviceProblem problem = problemOf(element, inventory, &machine);
///     if (problem.isMissing && problem.atPlace) {
///         show(problem.atPlace->device, problem.atPlace->differences);
///     }
struct DeviceProblem {
    ElementPlace place;
    Inventory::DeviceSpec written;  ///< its attributes; the name is a pattern
    Inventory::DeviceSpec asked;    ///< the same without what the root of the script switches off
    bool isMissing = false;         ///< it got no device, and no `not` forbids what it describes
    bool isUndetermined = false;    ///< nobody can tell: see Doubt.h
    bool isKnownType = true;
    unsigned breadth = 0;    ///< 0 for a part; the more, the more of the machine its type sums up
    bool hasGroups = false;  ///< it asks for more than properties, with `and`, `or` or `not`
    std::optional<Refusal> refusal;
    CandidateSummary candidates;

    /// The device of the right type at the place that the element asks for.
    std::optional<NearDevice> atPlace;
};

/// Requires: the inventory has run on that machine, and the element is a `device` of its script and lies in none. With
/// null for the machine, what it holds besides the candidates is left out.
DeviceProblem problemOf(const XmlElement& device, const Inventory& inventory, const StateManager* machine);

/// Why no device could be tried for an element of that type; nothing when one was.
std::optional<Refusal> refusalOf(const DeviceOutcome& outcome, const CapabilityImp& type, const StateManager* machine);

/// What a `device` element asks for; the name is a pattern.
Inventory::DeviceSpec askedBy(const XmlElement& device);

}  // namespace vrx
