#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "libDiagnosis/Difference.h"
#include "libInventory/Inventory.h"

namespace vrx {

struct CheckReport;

/// What became of one thing that a script asks for: a `device` element, or a rule that says what must not be there.
struct CheckedElement {
    enum class Kind : std::uint8_t {
        Device,
        Forbidden,  ///< a `not` around devices; the outermost of several
        Extra       ///< a `fail-on-extra` element
    };
    enum class Outcome : std::uint8_t {
        Passed,
        Failed,
        Undetermined,
        Waived,    ///< it has failed or is undetermined, and waivers cover that
        NotChosen  ///< it stands in an alternative that was not needed
    };

    Kind kind = Kind::Device;
    Outcome outcome = Outcome::Passed;
    ElementPlace place;
    Inventory::DeviceSpec asked;  ///< the name is a pattern; of a `not` the first device in it, of a rule its type or
                                  ///< else its capability
    std::optional<Inventory::DeviceSpec> device;  ///< the one that meets a `device` element
    std::vector<std::size_t> faults;              ///< the indexes of the report's faults that speak of it
    std::vector<std::size_t> waived;              ///< likewise of its waived faults
};

/// In document order. A passed device costs two look-ups, so this is quick with ten thousands of them.
/// Requires: the inventory has run, and the report has its verdict, findings, doubts and faults.
std::vector<CheckedElement> checkedElements(const Inventory& inventory, const CheckReport& report);

}  // namespace vrx
