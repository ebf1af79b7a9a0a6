#pragma once

#include "libCommon/Export.h"
#include "libSystemState/Forward.h"

namespace vrx {

class XmlDocument;
class XmlElement;

namespace diaglog {

/// The identifying header of a device, `<device type="" name="" hwlocator="" oslocator=""/>` with the device's texts.
/// The element is made in `document`, which owns it, and has no parent yet. Requires: device is not null.
///
///     document.RootElement()->LinkEndChild(diaglog::deviceToXmlHeader(document, &device));
VRX_EXPORT XmlElement* deviceToXmlHeader(XmlDocument& document, const IDeviceImp* device);

}  // namespace diaglog

}  // namespace vrx
