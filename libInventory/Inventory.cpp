#include "libInventory/Inventory.h"

#include "libSystemState/devices/DeviceImp.h"

namespace vrx {

const char* const Inventory::KSC_ERROR_FLAG = "KSC_ERROR:";

Inventory::DeviceSpec::DeviceSpec(String deviceName, String deviceType, String deviceHwLocator, String deviceOsLocator)
    : name(std::move(deviceName)),
      type(std::move(deviceType)),
      hwLocator(std::move(deviceHwLocator)),
      osLocator(std::move(deviceOsLocator)) {}

String Inventory::DeviceSpec::guid() const { return DeviceImp::guid(hwLocator, osLocator); }

// Contract: the fourth argument becomes the free text and the fifth the XML, crossing the order of the members.
Inventory::PartSpec::PartSpec(String partName, String partId, String partDescription, String partText, String partXml)
    : name(std::move(partName)),
      id(std::move(partId)),
      description(std::move(partDescription)),
      xml(std::move(partXml)),
      text(std::move(partText)) {}

}  // namespace vrx
