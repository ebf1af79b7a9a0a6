#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "libFleet/FleetResult.h"

namespace vrx {

/// What the results of a fleet say together: how many machines passed, which faults are frequent, and which machines
/// have the same ones. Counts are exact; how many different faults and groups are told apart is bounded, and a summary
/// says so where more were met, so that a million results take no more memory than the bounds do.
///
///     FleetSummary summary;
///     for (const FleetResult& result : results) {
///         summary.add(result);
///     }
///     if (summary.suspect()) { blame the script, not the machines }
class FleetSummary {
public:
    static constexpr std::size_t MOST_FAULTS = 100'000;     ///< different ones that are counted
    static constexpr std::size_t MOST_GROUPS = 50'000;      ///< of machines
    static constexpr std::size_t MOST_MEMBERS = 2'000'000;  ///< faults of all groups
    static constexpr std::size_t MOST_EXAMPLES = 3;
    static constexpr std::size_t MOST_UNREADABLE = 20;  ///< whose reasons are kept

    /// One fault of the fleet.
    struct FaultCount {
        FaultKey key;
        std::size_t machines = 0;
        std::string text;  ///< of the first machine that has it
        std::vector<std::string> examples;
    };

    /// Machines that have the same set of faults, one at least.
    struct Group {
        std::vector<std::uint32_t> faults;  ///< indices into `faults()`, ascending
        std::size_t machines = 0;
        std::vector<std::string> examples;
    };

    struct Unreadable {
        std::string file;
        std::string reason;
    };

    /// Counts the result. Which group its machine belongs to, if to one.
    std::optional<std::uint32_t> add(const FleetResult& result);

    std::size_t machines() const noexcept;
    std::size_t count(FleetVerdict verdict) const noexcept { return m_counts[static_cast<std::size_t>(verdict)]; }

    /// In the order in which they were met.
    const std::vector<FaultCount>& faults() const noexcept { return m_faults; }
    const std::vector<Group>& groups() const noexcept { return m_groups; }

    /// The most frequent ones, at most that many; of equally frequent ones the first met.
    std::vector<const FaultCount*> frequentFaults(std::size_t most) const;
    std::vector<const Group*> largestGroups(std::size_t most) const;

    /// A fault that more than half of the machines have: then the script or the recorder is to blame rather than the
    /// machines. Null without one, and for less than three machines.
    const FaultCount* suspect() const;

    const std::vector<Unreadable>& unreadable() const noexcept { return m_unreadable; }

    /// How often a machine had a fault beyond MOST_FAULTS different ones.
    std::size_t uncountedFaults() const noexcept { return m_uncountedFaults; }

    /// How many machines with faults belong to no group, because there are too many groups.
    std::size_t ungroupedMachines() const noexcept { return m_ungroupedMachines; }

    bool hasInternalError() const noexcept { return m_hasInternalError; }

    bool wasStopped = false;  ///< machines are left that were not checked
    std::optional<std::chrono::steady_clock::duration> duration;

private:
    std::optional<std::uint32_t> indexOf(const FleetFault& fault);
    std::optional<std::vector<std::uint32_t>> countFaults(const FleetResult& result);
    std::optional<std::uint32_t> groupOf(const std::vector<std::uint32_t>& faults);

    std::array<std::size_t, 4> m_counts{};
    std::vector<FaultCount> m_faults;
    std::unordered_map<std::string, std::uint32_t> m_faultIndex;
    std::vector<Group> m_groups;
    std::unordered_map<std::string, std::uint32_t> m_groupIndex;
    std::size_t m_members = 0;
    std::vector<Unreadable> m_unreadable;
    std::size_t m_uncountedFaults = 0;
    std::size_t m_ungroupedMachines = 0;
    bool m_hasInternalError = false;
};

}  // namespace vrx
