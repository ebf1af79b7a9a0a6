#pragma once

#include <map>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "libDiagnosis/certainty/Doubt.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// What is not known of a machine, by what a script may ask.
class Unknowns {
public:
    /// Requires: both outlive this object.
    Unknowns(const StateManager& machine, const ImportReport* import);

    bool isEmpty() const noexcept;

    /// Whether some property of some device is not known.
    bool hasProperties() const noexcept { return m_hidesProperties || !m_properties.empty(); }

    /// Whether some property that is there may have another value.
    bool hasWrongValues() const noexcept { return !m_properties.empty(); }

    /// Why a device of that type may be there unseen; nothing when there is none for sure. A strict look takes a device
    /// of an unknown type for any, another only for one whose type is spelled nearly so.
    std::optional<Doubt> hidden(const CapabilityImp& type, bool isStrict) const;

    /// Whether one device of that type, and no second, is known to stand there: what is asked for at that place is not
    /// there unseen. Where several share a place one more may.
    bool isPlaceTaken(const String& hwLocator, const CapabilityImp& type) const;

    /// Why devices may be there unseen of which nobody knows what they are.
    std::optional<Doubt> hiddenOfAnyType() const;

    /// Why that property of the device is not known; nothing when it is.
    std::optional<Doubt> property(const IDeviceImp& device, StringView key) const;

    /// Why that property of some device of that type or capability is not known; nothing when it is of all.
    std::optional<Doubt> property(const CapabilityImp& covered, StringView key) const;

private:
    /// Something of an unknown or unseen type.
    struct Unseen {
        Doubt::Cause cause;
        String text;
        String type;
    };
    struct Property {
        String key;
        String text;
    };

    bool isUntold(const CapabilityImp& type, StringView key) const;
    std::optional<Doubt> unseen(const CapabilityImp& type, bool isStrict) const;

    const StateManager& m_machine;
    std::vector<Unseen> m_unseen;
    std::unordered_map<const IDeviceImp*, std::vector<Property>> m_properties;
    bool m_hidesProperties = false;
    mutable std::map<std::pair<String, String>, bool> m_untold;  // by type and key, as far as somebody asked
};

}  // namespace vrx
