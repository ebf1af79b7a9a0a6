#pragma once

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// Something that could not be read when a machine was recorded, and what is not known of the machine for it. The store
/// keeps these beside the devices, a recording carries them.
///
///     store.addUnread({u"/sys/firmware/dmi/tables/DMI", CapabilityImp(u"MemoryModule"), u"needs root", {}});
struct UnreadSource {
    String source;        ///< what could not be read: a path, or the words of a reader for it
    CapabilityImp types;  ///< of devices that may be there all the same; `ALL()` when nobody can tell which
    String reason;        ///< why: "needs root"

    /// When there are any: the devices of these types are all there, only properties of these keys may be missing.
    Array<String> properties;

    /// As a key: properties of any key.
    static constexpr StringView ANY_PROPERTY = u"*";

    /// As a key: those that no device of the type has. Some program wrote the recording that may not tell of them.
    static constexpr StringView UNTOLD_PROPERTY = u"?";

    /// Whether whole devices that a script describes by that type may be missing.
    bool mayHide(const CapabilityImp& type) const noexcept {
        return properties.isEmpty() && (types.isAll() || types.intersect(type));
    }

    /// Whether a device of that type may have a property of that key which is not known.
    bool mayHide(const CapabilityImp& type, StringView key) const noexcept {
        for (const String& property : properties) {
            if (property == key || property == ANY_PROPERTY) {
                return types.isAll() || types.intersect(type);
            }
        }
        return false;
    }

    /// Whether a device of that type may have properties that the recording has of no such device.
    bool leavesUntold(const CapabilityImp& type) const noexcept {
        return properties.size() == 1 && properties[0] == UNTOLD_PROPERTY && (types.isAll() || types.intersect(type));
    }

    bool operator==(const UnreadSource& other) const = default;
};

}  // namespace vrx
