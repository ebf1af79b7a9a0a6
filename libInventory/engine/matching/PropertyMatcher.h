#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <optional>

#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libInventory/Finding.h"
#include "libSystemState/Forward.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/RecordedTexts.h"

namespace vrx {

class CandidateTrial;
class PropertyExpectation;
struct InventoryState;

/// Matches the content of a `device` element against one device.
class PropertyMatcher {
public:
    /// `candidate` is the device's position among those that are tried for the element. An empty device fails every
    /// property. `trial` is what it shares with the other candidates; null where there is no other.
    PropertyMatcher(InventoryState& state, const boost::shared_ptr<IDeviceImp>& device, std::uint32_t candidate,
                    CandidateTrial* trial) noexcept
        : m_state(state),
          m_device(device),
          m_candidate(candidate),
          m_trial(trial),
          m_texts(device == nullptr ? nullptr : device->recordedProperties()) {}

    /// Whether the device satisfies an element of the content; false when it is null.
    bool matches(XmlElement* element, bool underNot);

    /// Whether some property test failed, so that there is a finding about the device.
    bool hasFiled() const noexcept { return m_hasFiled; }

private:
    bool matchesAll(XmlElement* element, bool underNot);
    bool matchesAny(XmlElement* element, bool underNot);
    bool matchesNot(XmlElement* element, bool underNot);
    bool matchesProperty(XmlElement* element);
    std::optional<bool> matchesRecord(const PropertyExpectation& expectation);
    void fileFailure(XmlElement* element, FindingKind kind, const PropertyExpectation& expectation);
    void tellMatch(XmlElement* element, const IPropertyImp& property, const PropertyExpectation& expectation);

    /// Mistakes in the script are told once, while the first candidate is tried.
    bool tellsMistakes() const noexcept { return m_candidate == 0; }

    InventoryState& m_state;
    const boost::shared_ptr<IDeviceImp>& m_device;
    std::uint32_t m_candidate;
    CandidateTrial* m_trial;
    RecordedTexts m_texts;
    bool m_hasFiled = false;
};

}  // namespace vrx
