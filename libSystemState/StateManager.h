#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/DeviceRange.h"
#include "libSystemState/Forward.h"

namespace vrx {

struct MergeChanges;
struct UnreadSource;

/// The store: every device once, as a tree under one root, and the registered property specifications.
///
/// Look-ups by type, guid, locator and name are answered from indexes, which are made on the first question that needs
/// them. Used from one thread at a time, save for groups of devices and for the specifications: every import registers
/// those of its properties in the process-wide store, so they are locked.
///
///     StateManager store;
///     const CapabilityImp type(u"Fan");
///     store.addDevice(DeviceImp::createGeneric(type, CapabilityImp(), 0, u"Fan 1", u"", u"", u"fan:1"), nullptr);
///     store.devicesCapableOf(type).size();               // 1
///     store.devicesByHwLocator(u"fan:1")[0]->name();     // "Fan 1"
class VRX_EXPORT StateManager {
public:
    using DevicePointer = boost::shared_ptr<IDeviceImp>;
    using DeviceArray = Array<DevicePointer>;

    /// The process-wide store.
    static StateManager& instance();

    /// An empty, independent store.
    StateManager();
    ~StateManager();
    StateManager(const StateManager&) = delete;
    StateManager& operator=(const StateManager&) = delete;

    /// The first device that was added; an empty pointer in an empty store.
    DevicePointer rootDevice() const;

    /// The device whose guid that is (the one added first, when several share it); an empty pointer when there is none.
    DevicePointer deviceByGuid(const String& guid) const;

    std::uint32_t deviceCount() const noexcept;

    /// Every device whose type satisfies the filter, in order of adding; with `CapabilityImp::ALL()` every device. The
    /// second argument is reserved (callers pass false).
    DeviceArray getDevices(const CapabilityImp& filter, bool reserved) const;

    /// The same list without a copy; valid until a device is added.
    const DeviceArray& devicesCapableOf(const CapabilityImp& filter) const;

    /// Devices with exactly that locator, or whose name equals the text without letter case, in order of adding; valid
    /// until a device is added.
    const DeviceArray& devicesByHwLocator(StringView hwLocator) const;
    const DeviceArray& devicesByOsLocator(StringView osLocator) const;
    const DeviceArray& devicesByName(StringView name) const;

    /// All devices, and those with that locator or name, without an array of them: for questions that are asked for
    /// every element of a script. Several threads may ask these at once, as long as nobody adds a device.
    DeviceRange devices() const noexcept;
    DeviceRange withHwLocator(StringView hwLocator) const;
    DeviceRange withOsLocator(StringView osLocator) const;
    DeviceRange named(StringView name) const;

    /// Adds a device and returns the stored one. The first becomes the root; every later one becomes a child of
    /// `parent`, or of the root when none is given. Adding the same object again changes nothing; another object with
    /// the same guid is a device of its own. `changes` is reserved (callers pass null). Requires: device is not empty;
    /// parent is empty or in this store.
    DevicePointer addDevice(const DevicePointer& device, MergeChanges* changes,
                            const DevicePointer& parent = DevicePointer());

    /// Registers a specification under its guid; one that is registered already stays.
    void addPropertySpec(const boost::shared_ptr<PropertySpecImp>& spec);

    /// The property specification of that guid; an empty pointer when there is none.
    boost::shared_ptr<PropertySpecImp> propertySpec(const String& guid) const;

    /// What could not be read of the machine, in order of adding. Nothing that looks devices up asks for it; whoever
    /// says that a device is not there does.
    const Array<UnreadSource>& unread() const noexcept;

    /// Adds something that could not be read. One of the same source, reason and properties takes its types in.
    void addUnread(UnreadSource unread);

    /// Removes every device and specification, and what could not be read.
    void clear();

private:
    struct Content;
    std::unique_ptr<Content> m_content;
};

}  // namespace vrx
