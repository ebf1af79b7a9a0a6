#pragma once

#include <boost/shared_ptr.hpp>

namespace vrx {

class CapabilityImp;
class DataTypeImp;
class DeviceImp;
class IDeviceImp;
class IPropertyImp;
class InventoryTip;
class PropertyCategoryImp;
class PropertyImp;
class PropertySpecImp;
class StateManager;
class SysinfoFilter;
class TestResultImp;
class TestRunEventImp;
class TipImp;
class ValueImp;

using boost::shared_ptr;

}  // namespace vrx
