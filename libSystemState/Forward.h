#pragma once

namespace boost {

template <class T>
class shared_ptr;

}  // namespace boost

/// The classes of the store, for whoever only names them. <boost/shared_ptr.hpp> is for those who hold one.
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
class RecordedProperties;
class StateManager;
class SysinfoFilter;
class TestResultImp;
class TestRunEventImp;
class TipImp;
class ValueImp;

using boost::shared_ptr;

}  // namespace vrx
