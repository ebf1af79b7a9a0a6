#pragma once

#include <memory>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/Finding.h"
#include "libSystemState/Forward.h"

namespace vrx {

class ContentTest;

/// The content of a `device` element, to be tried on many devices: `Inventory::checkDevice` without observer says the
/// same of each, but makes an engine and parses the content for it.
///
///     const DeviceContent content(u"<property key=\"Size\" value=\"32 GB\"/>");
///     for (const auto& device : devices) {
///         if (content.isMetBy(*device)) { ... }
///     }
class VRX_EXPORT DeviceContent {
public:
    /// How a device stands to contents, whatever these are.
    enum class Askable {
        Yes,
        OfInvalidType,  ///< meets none
        Oddly,          ///< its type's name is no name for that type: only a run of its own can tell
        No              ///< see Inventory::canCheckDevice
    };
    static Askable askableOf(const IDeviceImp& device);

    /// Inner XML.
    explicit DeviceContent(String content);
    ~DeviceContent();
    DeviceContent(const DeviceContent&) = delete;
    DeviceContent& operator=(const DeviceContent&) = delete;

    const String& text() const noexcept { return m_content; }

    /// Whether the device satisfies the content; not when that does not parse.
    bool isMetBy(const IDeviceImp& device) const;

    /// What the device fails of the content, as the outcome of that check has it, without words; nothing when it cannot
    /// be asked. The findings are about elements below `element()`.
    Array<Finding> failuresOf(const IDeviceImp& device) const;

    /// The element around the content as it was parsed; null when it does not parse.
    const XmlElement* element() const;

private:
    const ContentTest& test() const;

    String m_content;
    mutable std::unique_ptr<const ContentTest> m_test;  ///< made when somebody asks
};

}  // namespace vrx
