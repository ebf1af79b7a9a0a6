#pragma once

#include <vector>

#include "libDiagnosis/certainty/Doubt.h"
#include "libDiagnosis/certainty/Unknowns.h"
#include "libInventory/Finding.h"

namespace vrx {

/// What hangs on properties of a device that are not known.
class ContentDoubts {
public:
    struct Found {
        const XmlElement* property;  ///< the element that asks for it
        Doubt doubt;
    };
    using List = std::vector<Found>;

    /// Borrowed.
    explicit ContentDoubts(const Unknowns& unknowns) : m_unknowns(unknowns) {}

    /// Whether the device may be what the element asks for, although the candidate failed it. Adds why.
    bool mayMeet(const XmlElement& element, const Candidate& candidate, const IDeviceImp& device, List& found) const;

    /// Whether a device that has what the element asks for might not have it. Adds why.
    bool hangsOnUnknown(const XmlElement& element, const IDeviceImp& device, List& found) const;

private:
    enum class Seen { Wanting, Having };
    bool looksForUnknown(const XmlElement& element, const IDeviceImp& device, Seen seen, List& found) const;

    const Unknowns& m_unknowns;
};

}  // namespace vrx
