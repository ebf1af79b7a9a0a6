#pragma once

#include <cstdint>
#include <vector>

#include "libInventory/Finding.h"
#include "libInventory/engine/findings/FiledFindings.h"

namespace vrx {

class KeptLinks;
struct InventoryState;

/// Makes the public record of how one `device` element fared in the last run.
class DeviceOutcomes {
public:
    DeviceOutcomes(const InventoryState& state, const XmlElement& element);

    /// For one call.
    DeviceOutcome make(const KeptLinks& links);

private:
    using DevicePointer = boost::shared_ptr<IDeviceImp>;

    /// The failed tests of one property element, in the order of candidates, and how far they were read.
    struct Failures {
        const XmlElement* property;
        const FiledFindings* filed;
        std::size_t next;
    };

    /// A candidate that left traces of failure, and its position among all.
    struct Tried {
        Candidate candidate;
        std::uint32_t position;
    };

    void collect(const XmlElement& element);
    std::vector<Tried> failed();
    bool evaluate(const XmlElement& element, std::uint32_t position, Candidate& candidate);
    bool evaluateProperty(const XmlElement& element, std::uint32_t position, Candidate& candidate);
    bool evaluateAll(const XmlElement& element, std::uint32_t position, Candidate& candidate);
    bool evaluateAny(const XmlElement& element, std::uint32_t position, Candidate& candidate);
    bool evaluateNot(const XmlElement& element, std::uint32_t position, Candidate& candidate);
    std::vector<DevicePointer> linked(const std::vector<Tried>& failed) const;
    std::optional<Finding> refusal() const;

    const InventoryState& m_state;
    const XmlElement& m_element;
    std::vector<Failures> m_failures;
};

}  // namespace vrx
