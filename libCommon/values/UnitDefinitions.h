#pragma once

#include <cstdint>
#include <span>

#include "libCommon/text/String.h"
#include "libCommon/values/Unit.h"

namespace vrx {

/// How numbers of a unit become numbers of its kind's base unit: base = (number + shift) * numerator / denominator.
/// Whole numbers keep conversions exact: 1010 mV is 1.01 V and not the next double.
struct UnitScale {
    std::uint64_t numerator = 1;
    std::uint64_t denominator = 1;
    double shift = 0;
};

/// Groups of prefixes, combined as bits.
enum PrefixGroup : unsigned {
    PLAIN = 1,     ///< the unit itself
    TINY = 2,      ///< n, u
    MILLI = 4,     ///< m
    CENTI = 8,     ///< c
    HECTO = 16,    ///< h
    KILO = 32,     ///< k
    LARGE = 64,    ///< M, G, T, P
    BINARY = 128,  ///< K to P as powers of 1024
    IEC = 256,     ///< Ki to Pi
    SMALL = PLAIN | TINY | MILLI,
    SI = PLAIN | KILO | LARGE
};

struct UnitPrefix {
    unsigned group;  ///< one of PrefixGroup
    UnitScale scale;
    StringView name;
    StringView symbol;
    StringView otherSymbols[2];  ///< empty ones are unused
};

struct UnitBase {
    UnitKind kind;
    unsigned prefixes;  ///< the groups that it takes
    UnitScale scale;
    StringView singular;
    StringView plural;
    StringView symbol;           ///< the one that is written
    StringView otherSymbols[3];  ///< empty ones are unused
    StringView otherNames[4];    ///< empty ones are unused
};

/// All prefixes; the first is that of the unit itself.
std::span<const UnitPrefix> unitPrefixes() noexcept;

/// All units without prefix; the first of each kind is the kind's base unit.
std::span<const UnitBase> unitBases() noexcept;

}  // namespace vrx
