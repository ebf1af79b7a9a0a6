#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "libCommon/text/TextHash.h"
#include "libMachine/record/DeviceRecord.h"
#include "libSystemState/Forward.h"
#include "libSystemState/UnreadSource.h"

namespace vrx {

/// The devices of a machine while it is being recorded. The first is the root.
///
/// A device's parent is the one that it names, else the device whose sysfs folder is the nearest above its own, else
/// the root. So sources need not run in the order of the tree.
class Recording {
public:
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    /// Adds a device and returns its place. Requires: it has a parent or a sysfs folder, not both (the root
    /// has neither), and a parent that it names is there already.
    std::size_t add(DeviceRecord device);

    std::size_t size() const noexcept { return m_devices.size(); }

    /// Requires: the place was given by `add`. Valid until the next `add`; type, locators and properties may be
    /// changed, the sysfs folder may not.
    DeviceRecord& at(std::size_t place) { return m_devices[place]; }
    const DeviceRecord& at(std::size_t place) const { return m_devices[place]; }

    /// From here on devices are added and amended by the source of that number (at most 63).
    void setSource(unsigned number) noexcept { m_source = std::uint64_t{1} << number; }

    /// The device at a place, for a source that says more of what another one found.
    DeviceRecord& amend(std::size_t place) {
        m_devices[place].sources |= m_source;
        return m_devices[place];
    }

    /// Leaves a device out of what is stored; what is below it moves up. Requires: it is not the root.
    void leaveOut(std::size_t place);

    /// The device of that sysfs folder or of the nearest folder above it; NONE when there is none.
    std::size_t nearest(std::string_view sysPath) const;

    /// Notes what could not be read, for the store.
    void addUnread(UnreadSource unread) { m_unread.append(std::move(unread)); }
    const Array<UnreadSource>& unread() const noexcept { return m_unread; }

    /// Adds all devices, and what could not be read, to an empty store, each parent directly followed by what is below
    /// it. Of several devices with one hardware locator the second gets "#2" behind it, and so on. Requires: there is a
    /// root.
    void storeIn(StateManager& store);

private:
    std::size_t parentOf(std::size_t place) const;
    std::size_t keptParentOf(std::size_t place) const;
    std::vector<std::vector<std::size_t>> childrenOfAll() const;

    std::vector<DeviceRecord> m_devices;
    std::unordered_map<std::string, std::size_t, TextHash> m_byPath;
    std::unordered_set<std::size_t> m_leftOut;
    std::uint64_t m_source = 1;
    Array<UnreadSource> m_unread;
};

}  // namespace vrx
