#pragma once

#include <optional>
#include <vector>

#include "libDiagnosis/Difference.h"
#include "libInventory/DeviceContent.h"
#include "libInventory/Finding.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// Tries an element's content on a device that the run did not try it on, because it has another name or stands at
/// another place.
///
///     const DeviceTrial trial(element);
///     if (trial.isMetBy(device)) { ... }
class DeviceTrial {
public:
    /// Requires: the element is a `device`, and outlives the trial.
    explicit DeviceTrial(const XmlElement& element);

    /// Whether the device has the name and meets the content that the element asks for, wherever it stands.
    bool isMetBy(const IDeviceImp& device) const;

    /// What the device has not of it, locators aside: the type, the name, then the content.
    std::vector<Difference> differencesOf(const IDeviceImp& device) const;

private:
    void addContentDifferences(const IDeviceImp& device, std::vector<Difference>& differences) const;

    const XmlElement& m_element;
    CapabilityImp m_type;
    String m_name;  ///< a pattern; empty for any
    DeviceContent m_content;
};

/// What a device failed, when the run tried it.
std::vector<Difference> differencesOf(const Candidate& candidate);

}  // namespace vrx
