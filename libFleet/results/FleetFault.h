#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "libDiagnosis/Fault.h"

namespace vrx {

/// What makes faults of different machines the same fault: what the script asked for and where, and what about it is
/// wrong, but nothing that is a machine's own, as found values and serial numbers are.
struct FaultKey {
    std::string kind;
    std::string type;
    std::string place;  ///< a locator; of a fault that has neither type, name nor locator its element's row and column
    std::string name;   ///< that the script asks for, a pattern
    std::vector<std::string> properties;  ///< that differ, sorted

    /// One text for all of it, of different keys another.
    std::string text() const;

    /// For people: `missing MemoryModule at dimm:B3`, `wrong Disk at slot:2: Size`. Printable.
    std::string title() const;
};

/// A fault of one machine of a fleet.
struct FleetFault {
    FaultKey key;
    std::string text;  ///< as reports have it, in one line
};

/// What a key is made of, as a check and its JSON tell it.
struct FaultFacts {
    std::string kind;
    std::string type;
    std::string askedName;
    std::string askedHwLocator;
    std::string askedOsLocator;
    std::string deviceHwLocator;  ///< of the device that is there
    std::string deviceSerial;
    std::uint64_t row = 0;
    std::uint64_t column = 0;
    std::vector<std::string> differences;  ///< properties, or what else differs
};

FaultKey keyOf(FaultFacts facts);

FleetFault fleetFault(const Fault& fault);

}  // namespace vrx
