#pragma once

#include <optional>
#include <vector>

#include "libDiagnosis/Difference.h"
#include "libDiagnosis/WantedDevices.h"
#include "libInventory/DeviceContent.h"
#include "libInventory/Finding.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// Tries the content of elements that ask for the same on a device that the run did not try it on, because it has
/// another name or stands at another place.
///
///     const DeviceTrial& trial = asked.trialOf(element);
///     if (trial.isMetBy(device)) { ... }
class DeviceTrial {
public:
    /// The content is inner XML.
    DeviceTrial(const WantedDevice& asked, String content);

    /// Whether the device has the name and meets the content that the element asks for, wherever it stands.
    bool isMetBy(const IDeviceImp& device) const;

    /// What the device has not of what the element, one of them, asks for, locators aside: the type, the name, then
    /// the content.
    std::vector<Difference> differencesOf(const XmlElement& element, const IDeviceImp& device) const;

private:
    void addContentDifferences(const XmlElement& element, const IDeviceImp& device,
                               std::vector<Difference>& differences) const;

    CapabilityImp m_type;
    String m_typeText;
    String m_name;  ///< a pattern; empty for any
    DeviceContent m_content;
};

/// What a device failed, when the run tried it.
std::vector<Difference> differencesOf(const Candidate& candidate);

}  // namespace vrx
