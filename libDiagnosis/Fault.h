#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "libDiagnosis/AskedProperty.h"
#include "libDiagnosis/Candidates.h"
#include "libDiagnosis/DeviceIdentity.h"
#include "libDiagnosis/DeviceProblem.h"
#include "libDiagnosis/Difference.h"
#include "libDiagnosis/certainty/Doubt.h"
#include "libDiagnosis/faults/Shortage.h"

namespace vrx {

/// What is wrong with one device, or with one place of a machine.
enum class FaultKind : std::uint8_t {
    Missing,      ///< nothing is at its place
    Wrong,        ///< the device is there and differs
    Extra,        ///< a device beyond the script
    Moved,        ///< the device stands at another place than the script says
    Swapped,      ///< two devices stand at each other's places
    Replaced,     ///< another device stands at its place: of the same model with another serial number, or of another
    Forbidden,    ///< a device that must not be there
    Undetermined  ///< nobody can tell: see `doubt`
};

/// As programs read it: "missing", "wrong" and so on.
std::string_view nameOf(FaultKind kind) noexcept;

/// A part of a parts list.
struct PartName {
    String id;
    String name;
    String description;
};

/// The part of a kind that a script asks for several times.
struct LikeDevices {
    std::size_t asked = 0;  ///< how often; 1 when there is no other of the kind
    std::size_t present = 0;
    std::optional<DeviceIdentity> one;  ///< the first that is there
};

/// What became of the model of a part that was replaced.
enum class Replacement : std::uint8_t {
    Unknown,    ///< the script does not ask for one
    SameModel,  ///< it is another of the same
    OtherModel
};

/// What is wrong only because a device above it is.
struct FoldedFault {
    ElementPlace place;  ///< of the element that asks for it, or of the rule that says that it is too many
    Inventory::DeviceSpec spec;
    String guid;  ///< of an extra device; else empty
};

/// One thing that is wrong with a machine. Every device of the machine and every `device` element is in one fault at
/// most. Nothing is borrowed.
struct Fault {
    FaultKind kind = FaultKind::Missing;
    ElementPlace place;            ///< of the element that says so: `device`, `not`, `fail-on-extra` or `property`
    Inventory::DeviceSpec asked;   ///< what that element asks for; the name is a pattern. Of an extra device its rule's
    std::optional<PartName> part;  ///< in which the element lies

    std::optional<DeviceIdentity> device;    ///< the one that is there: wrong, extra, moved, forbidden or in its stead
    std::optional<DeviceIdentity> other;     ///< of two swapped devices the second; what stands at a moved one's place
    std::optional<ElementPlace> otherPlace;  ///< of the element that asks for the second of two swapped devices

    /// What is different about the device, in the order of the script.
    std::vector<Difference> differences;

    std::size_t candidates = 0;        ///< how many devices were tried for the element
    std::optional<TakenDevice> taken;  ///< the first device that would have done, and the element that has it
    std::optional<Doubt> doubt;        ///< of an undetermined fault why nobody can tell
    std::vector<Inventory::DeviceSpec> alternatives;  ///< what the other alternatives of an `or` ask for in its stead
    std::vector<Doubt> furtherDoubts;                 ///< of the same element

    std::vector<FoldedFault> withIt;  ///< what stands below the device and is missing, or too many, like it

    std::shared_ptr<const std::vector<AskedProperty>>
        properties;                     ///< that the element asks for, whatever else is the case
    std::optional<NearDevice> nearest;  ///< of a missing device the one that comes nearest and may be meant
    std::optional<Refusal> refusal;     ///< of a missing device why none could be tried
    std::optional<Shortage> shortage;   ///< of an element that other devices would do for, but that all are needed
    LikeDevices alike;                  ///< of a missing device
    Replacement replacement = Replacement::Unknown;
    Array<String> words;  ///< the engine's, where nobody has better ones: then all the rest is empty

    unsigned breadth = 0;           ///< how much of the machine its type sums up; 0 for a part that somebody can hold
    bool isOfOtherMachine = false;  ///< it says that this is another machine than the script is for

    /// Of those properties the one with that key; null when there is none.
    const AskedProperty* askedProperty(StringView key) const noexcept {
        const auto all = properties != nullptr ? std::span(*properties) : std::span<const AskedProperty>();
        const auto at = std::ranges::find(all, key, [](const AskedProperty& one) { return one.key.view(); });
        return at == all.end() ? nullptr : &*at;
    }
};

}  // namespace vrx
