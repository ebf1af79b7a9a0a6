#include "libSystemState/diaglog/DeviceHeader.h"

#include "libCommon/Assertion.h"
#include "libCommon/xml/XmlDocument.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx::diaglog {

XmlElement* deviceToXmlHeader(XmlDocument& document, const IDeviceImp* device) {
    VRX_ASSERT(device != nullptr);
    XmlElement* header = document.NewElement(u"device");
    header->SetAttribute(u"type", device->type().toString(0, false));
    header->SetAttribute(u"name", device->name());
    header->SetAttribute(u"hwlocator", device->hwLocator());
    header->SetAttribute(u"oslocator", device->osLocator());
    return header;
}

}  // namespace vrx::diaglog
