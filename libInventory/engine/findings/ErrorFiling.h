#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"
#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/support/SharedLists.h"

namespace vrx {

class CandidateRanges;
class PropertyExpectation;
struct InventoryState;

/// Puts findings down against script elements in one of the error slots, counts them there, and forgets them again.
/// Nothing is written into the script.
class ErrorFiling {
public:
    explicit ErrorFiling(InventoryState& state) noexcept : m_state(state) {}

    /// The element is itself unsatisfied.
    void fileUnsatisfied(XmlElement* element, unsigned slot);

    /// A finding about the element; `text` is what FiledFindings::Entry keeps for the kind.
    void file(XmlElement* element, FindingKind kind, unsigned slot, const String& text = String::EMPTY);

    /// A property test that the device failed, for the matching slot. Requires: kind is PropertyMissing or
    /// PropertyMismatch.
    void fileFailure(XmlElement* property, FindingKind kind, const boost::shared_ptr<IDeviceImp>& device,
                     std::uint32_t candidate, const PropertyExpectation& expectation);

    /// The same, of one of many candidates.
    void fileFailure(XmlElement* property, FindingKind kind, std::uint32_t candidate,
                     const SharedLists::Pointer& candidates, const PropertyExpectation& expectation);

    /// The same, of all that failed, among them those without such a property.
    void fileFailures(XmlElement* property, const CandidateRanges& failed, const CandidateRanges& missing,
                      const SharedLists::Pointer& candidates, const PropertyExpectation& expectation);

    /// A property test that the device passed, for the matching slot.
    void fileMatch(XmlElement* property, const boost::shared_ptr<IDeviceImp>& device, const String& value,
                   const PropertyExpectation& expectation);

    /// A device beyond the script; with `isFailure` the element receives a text that says so.
    void fileExtra(XmlElement* element, const ExtraDevice& extra, bool isFailure, unsigned slot);

    /// Forgets what is filed against the element and everything below it in one slot, extra devices aside.
    void clear(XmlElement* element, unsigned slot);

    /// Makes what is filed against the element and everything below it hidden where it would have been shown, and the
    /// other way round, so many times.
    void flipErrorsVisible(XmlElement* element, std::size_t times);

    /// Adds what is filed against the element and everything below it in one slot.
    void count(XmlElement* element, unsigned slot, Inventory::ErrorSpec& spec) const;

private:
    void clearDownwards(XmlElement* element, unsigned slot);
    void clearOne(XmlElement* element, unsigned slot);
    void countDownwards(XmlElement* element, unsigned slot, Inventory::ErrorSpec& spec) const;
    void countOne(XmlElement* element, unsigned slot, Inventory::ErrorSpec& spec) const;
    void countUpwards(const XmlElement& root, const std::vector<XmlElement*>& filed, unsigned slot,
                      Inventory::ErrorSpec& spec) const;

    InventoryState& m_state;
};

}  // namespace vrx
