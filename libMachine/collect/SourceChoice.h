#pragma once

#include <cstdint>
#include <optional>

#include "libMachine/MachineCollector.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

class Recording;

/// What a user wants of a recording: which sources, and which device types not.
class SourceChoice {
public:
    /// Requires: the options hold no unknown name.
    explicit SourceChoice(const CollectOptions& options);

    /// The first name in the options that means nothing; none when all mean something.
    static std::optional<UnknownCollectName> unknownName(const CollectOptions& options);

    /// Whether the source of that number in the table has to run. One that gives places runs, wanted or not.
    bool runs(std::size_t source) const;

    /// Whether some wanted source needs the firmware's table and what the processors say.
    bool readsTable() const;

    /// Leaves out what no wanted source said anything of, and the devices of unwanted types. What is below them moves
    /// up; the root stays. What nobody asked for is noted as unread: devices of types of which none is left, properties
    /// of the others.
    void apply(Recording& recording) const;

private:
    bool isWanted(std::uint64_t sources) const noexcept { return (sources & m_wanted) != 0; }
    /// Why a source says nothing.
    enum class Silence : std::uint8_t { None, NotAskedFor, NotInTable };
    Silence silenceOf(std::size_t source) const;
    void noteSilent(Silence silence, const CapabilityImp& kept, Recording& recording) const;

    std::uint64_t m_wanted = 0;  ///< a bit for each source
    CapabilityImp m_excluded;
    bool m_isTableOnly = false;
};

}  // namespace vrx
