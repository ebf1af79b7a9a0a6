#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

/// What a golden script asks for of a device, and why, as data.
namespace vrx {

/// A value that some of the machines have.
struct ValueVariant {
    Array<String> texts;  ///< one, or the entries of a list
    bool isList = false;
    std::vector<std::size_t> machines;  ///< who has it, by their places in the draft
};

/// What becomes of one thing of a device.
struct GoldenDecision {
    enum class Subject : std::uint8_t { Name, HwLocator, OsLocator, Property };
    enum class Choice : std::uint8_t { Exact, Range, Alternatives, LeftOut };
    enum class Reason : std::uint8_t {
        None,
        Identity,         ///< such a property tells one piece from its sisters
        Unique,           ///< every machine has another text
        Place,            ///< places vary
        TooManyValues,    ///< too many texts, or numbers too far apart
        NotEverywhere,    ///< some have it, some do not
        Unread,           ///< somebody's recording may lack it
        ChangesByItself,  ///< of the categories Volatile, Internal and Group
        NotWritable,      ///< with characters that XML has no room for, or blanks at its ends
        NotNeeded,        ///< the hardware locator tells the device apart
        NotWanted,        ///< by an option or the filter
    };

    Subject subject = Subject::Property;
    String key;  ///< of a property
    Choice choice = Choice::Exact;
    Reason reason = Reason::None;
    std::vector<ValueVariant> variants;  ///< in the order of the machines
    double low = 0;                      ///< of a range
    double high = 0;
    String units;  ///< of a range; empty for none

    bool isAsked() const noexcept { return choice != Choice::LeftOut; }
};

/// One device of the machines that are alike: the same place in each, or else the same content.
struct GoldenDevice {
    enum class Presence : std::uint8_t {
        Everywhere,
        NotEverywhere,
        Unread,  ///< not everywhere, and a recording without it cannot tell
    };

    std::vector<const IDeviceImp*> devices;  ///< by machine; null where it is not
    Presence presence = Presence::Everywhere;
    std::vector<GoldenDecision> decisions;

    /// Of the first machine that has it.
    const IDeviceImp& first() const;

    /// The machines that have it, or have it not.
    std::vector<std::size_t> holders() const;
    std::vector<std::size_t> others() const;
};

}  // namespace vrx
