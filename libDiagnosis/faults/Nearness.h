#pragma once

#include <compare>
#include <cstddef>

#include "libDiagnosis/Difference.h"
#include "libInventory/Finding.h"

namespace vrx {

/// How near a device comes to what an element asks for; the smaller, the nearer.
struct Nearness {
    std::size_t failed = 0;   ///< tests
    bool isElsewhere = true;  ///< it stands at another place than the element names, or the element names none
    double distance = 0;      ///< how far its numbers are from those that were asked for

    std::partial_ordering operator<=>(const Nearness&) const = default;
};

Nearness nearnessOf(const Candidate& candidate, const XmlElement& element);

/// How far a number is from what a pattern asks for, in parts of it: 0 within a range, 0.5 for 8 GB in place of 16 GB.
/// At least 1 where one of the two is no number or their units differ in kind.
double numericDistance(StringView pattern, StringView found);

}  // namespace vrx
