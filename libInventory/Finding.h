#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <optional>

#include "libCommon/Export.h"
#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

/// What a run found, as data.
///
/// A run that fails writes `error` elements into its script. Each of them comes from a finding; a finding knows what
/// the words are made of: the kind, the script's element, the device, what was asked for and what was there. Beside the
/// findings stands how each `device` element fared: which devices were tried, what each of them failed, and who got the
/// one that would have done.
///
///     Inventory inventory;
///     ...
///     if (!inventory.run()) {
///         for (const XmlElement* element : inventory.missingElements()) {
///             for (const Candidate& candidate : inventory.outcomeOf(*element).candidates) {
///                 for (const Finding& failure : candidate.failures) {
///                     report(*element, candidate.device, failure.key, failure.expected, failure.found);
///                 }
///             }
///         }
///     }
///
/// Everything here is a value that may be kept. Devices are kept alive by it; elements are those of the inventory's
/// script, which live until another script is loaded or the inventory goes.
namespace vrx {

/// What was found. Beside each stands the element it is about, and what `expected`, `found` and `key` hold, where they
/// hold anything.
enum class FindingKind : std::uint8_t {
    // About a `device` element that no device could be tried for.
    InvalidDeviceType,      ///< expected: the text that is no device type
    NoDeviceOfType,         ///< expected: the type
    NoDeviceWithName,       ///< expected: the pattern of the name; key: the attribute
    NoDeviceWithOsLocator,  ///< expected: the locator; key: the attribute
    NoDeviceWithHwLocator,  ///< expected: the locator; key: the attribute
    InvalidAttribute,       ///< key: the attribute that devices do not have
    NoAvailableDevice,      ///< expected: the type

    // About a `property` element and one device that was tried.
    PropertyOutsideDevice,  ///< key: the property's; there is no device
    PropertyMissing,        ///< key; expected: the patterns; the device has no such property
    PropertyMismatch,       ///< key; expected: the patterns; found: the device's value
    PropertyMatched,        ///< the same of a property that matched; only a single-device check tells of these

    // About an element that is not satisfied in the combination that the findings speak of.
    UnsatisfiedDevice,  ///< no device was left for it
    UnsatisfiedPart,
    UnsatisfiedAnd,
    UnsatisfiedOr,
    UnsatisfiedNot,  ///< all that it forbids is there; inside a `device` element, in the device
    UnsatisfiedOther,

    // About the root element.
    ExtraDevice,          ///< the device is beyond the script; `rule` is the `fail-on-extra` element that says so
    UnexpectedException,  ///< found: the exception's text

    // About mistakes in the script.
    InvalidExtraRule,  ///< a `fail-on-extra` element; expected: its type and its capability, neither of which is one
    NestedPart,        ///< a `part` inside a part
    UnknownElement,    ///< told by an event; not written into the script
    NotUnderNot        ///< the same
};

/// One thing that a run found.
struct VRX_EXPORT Finding {
    FindingKind kind = FindingKind::UnsatisfiedOther;

    /// What it is about; never null. Its `Row()` and `Column()`, from 0, are its place in the script.
    const XmlElement* element = nullptr;

    /// The device that it is about; empty where it is about none.
    boost::shared_ptr<IDeviceImp> device;

    /// The key of the property, or the name of the attribute, as the script writes it.
    String key;

    /// What the script asks for, decoded: for a property one pattern for each entry, or one for its `value`, or none
    /// when it need only be there.
    Array<String> expected;

    /// What was there instead, as it was when the run ended, whatever the host has set since; of properties of a host's
    /// own class, which do not tell what they were, that holds for what stands in the script.
    String found;

    /// The `part` element that the element is or lies in; null when it is in none. Its attributes `id`, `name` and
    /// `description` say which part that is.
    const XmlElement* part = nullptr;

    /// The `fail-on-extra` element that made the device extra; null for every other kind.
    const XmlElement* rule = nullptr;

    /// The engine's words for it, one for each `error` element that stands for it in the script. A property that does
    /// not match has three; what is told by events, and what is not written, has none.
    Array<String> texts;
};

/// A device that had a `device` element's type, name and locators, and so was tried against its content.
struct VRX_EXPORT Candidate {
    boost::shared_ptr<IDeviceImp> device;

    /// What the device failed of the element's content; empty when it met everything. Tests whose failure made no
    /// difference are left out: those in an alternative of a satisfied `or`, or below a satisfied `not`.
    Array<Finding> failures;

    /// The `device` element that holds the device in the combination that the findings speak of: the element itself,
    /// another that it was given to instead, or null when nobody holds it.
    const XmlElement* holder = nullptr;
};

/// How one `device` element fared.
struct VRX_EXPORT DeviceOutcome {
    const XmlElement* element = nullptr;

    /// Whether the element has a device in the combination that the findings speak of. An element in an alternative
    /// that is not part of that combination has none.
    bool isSatisfied = false;

    /// All that were tried, in the order of the store.
    Array<Candidate> candidates;

    /// Why there was nothing to try: at the type, or at which attribute the last candidates were lost. None when
    /// something was tried.
    std::optional<Finding> refusal;
};

/// Elements that ask for fewer devices than they are. None of them can be left out: without any one, the others could
/// all be served.
struct VRX_EXPORT Competition {
    Array<const XmlElement*> elements;             ///< in document order
    Array<boost::shared_ptr<IDeviceImp>> devices;  ///< all that any of them would take; one fewer than elements
};

/// Which alternative an `or` element stands for in the combination that the findings speak of.
struct VRX_EXPORT ChosenAlternative {
    const XmlElement* orElement = nullptr;
    const XmlElement* alternative = nullptr;

    /// False when none of the alternatives can be met; this one came nearest.
    bool isPossible = false;
};

/// A device beyond the script and the `fail-on-extra` element that covers it.
struct VRX_EXPORT ExtraDevice {
    boost::shared_ptr<IDeviceImp> device;
    const XmlElement* rule = nullptr;
};

/// How far a run is, told before each combination of alternatives that it tries. A search that deduces tries few of
/// them, so that it ends long before the last.
struct VRX_EXPORT RunProgress {
    std::uint64_t combination = 1;   ///< the one that is about to be tried, from 1
    std::uint64_t combinations = 1;  ///< how many there are; the largest number when there are more than it can tell
    bool isDeduced = false;          ///< the run need not try them all
};

/// What a run did.
struct VRX_EXPORT RunSummary {
    /// How many were tried; of a search that deduces, trials of components count as well.
    std::uint64_t combinationsTried = 0;
    std::uint64_t combinations = 0;  ///< how many there are; the largest number when there are more than it can tell

    /// Tests of patterns that were given up because they took too much work, and counted as not met. With none the
    /// result is certain.
    std::uint64_t patternsGivenUp = 0;

    /// Whether the host had the run stopped before it had tried all combinations.
    bool wasStopped = false;

    /// Whether the combination that the findings speak of is assigned otherwise than greedily, because that leaves less
    /// undone. A run that passes so would not have passed with that combination otherwise; with Assignment::Auto, with
    /// none.
    bool isAssignedExactly = false;

    /// The `device` elements of it that have a device only because of that, in document order.
    Array<const XmlElement*> exactlyAssigned;

    /// Whether a run that did not pass has left combinations that were neither tried nor decided without: it was
    /// stopped, or there are more than the loop counts.
    bool hasUntried = false;

    /// Devices that a `fail-on-extra` element covers but whose type cannot stand in the script of a single-device
    /// check, so that the element's constraints could not be asked of them. They count as not meeting these.
    Array<boost::shared_ptr<IDeviceImp>> undecidedExtras;
};

}  // namespace vrx
