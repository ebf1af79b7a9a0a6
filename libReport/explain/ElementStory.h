#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libDiagnosis/DeviceProblem.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// A device that was tried for an element.
struct TriedDevice {
    Inventory::DeviceSpec device;
    std::vector<Difference> differences;  ///< what it failed; none of one that would do
    std::optional<ElementPlace> holder;   ///< the element that has it
};

/// How one `device` element of a script fared: every device that was tried, what each failed, and who has which.
struct ElementStory {
    ElementPlace place;
    Inventory::DeviceSpec asked;
    bool isSatisfied = false;
    bool isForbidden = false;  ///< it lies in a `not`
    std::optional<Refusal> refusal;
    std::vector<TriedDevice> tried;
};

/// The story of the element that `where` names: ROW:COLUMN of a `device` element or of anything in it, a guid or a
/// locator that it asks for, or those of the device that it has. The first of several; nothing when there is none.
///
/// Requires: the inventory has run on that machine.
std::optional<ElementStory> elementStory(const Inventory& inventory, const StateManager& machine,
                                         std::string_view where);

/// For people. `file` is the script's path.
std::string storyText(const ElementStory& story, const std::string& file, const TextFormat& format);

}  // namespace vrx
