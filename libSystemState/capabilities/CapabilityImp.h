#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <span>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"

namespace vrx {

/// A device type, or a set of capabilities: nodes of the tree of device types (capabilities/CapabilityTree.h has the
/// table). Names are looked up without letter case, an alias gives the same capability. Copies are cheap.
///
///     CapabilityImp(u"Storage").isCapable(CapabilityImp(u"NvmeDrive"));     // true: an NVMe drive is a storage device
///     CapabilityImp(u"Fann").isInvalid();                                   // true
class VRX_EXPORT CapabilityImp {
public:
    /// The empty set.
    CapabilityImp() noexcept = default;

    /// The capability of that name or alias. A name that is in neither gives a value that equals `INVALID()` but keeps
    /// its text for `toString`.
    explicit CapabilityImp(const String& name);
    explicit CapabilityImp(StringView name);
    explicit CapabilityImp(const char16_t* name) : CapabilityImp(StringView(name)) {}

    /// What unknown names equal; prints "INVALID".
    static const CapabilityImp& INVALID();

    /// Every capability: satisfied by every device, also by one of an invalid type.
    static const CapabilityImp& ALL();

    /// Adds a name of the host's own below an existing one, before anything is loaded. False, changing nothing, when
    /// the name is taken or empty or the parent is unknown; "ALL" and "INVALID" count as taken.
    static bool define(const String& name, const String& parentName);

    /// Whether a device of that type satisfies this capability: the type is this node or stands below it. `ALL()` is
    /// satisfied by everything, an invalid or empty capability by nothing; a type that is no node of the tree (an
    /// invalid or empty one, or `ALL()`) satisfies only `ALL()`. A set is satisfied by what satisfies any of its nodes.
    bool isCapable(const CapabilityImp& deviceType) const noexcept;

    /// Whether some node of one set equals, or lies below or above, some node of the other.
    bool intersect(const CapabilityImp& other) const noexcept;

    /// The union; an invalid capability contributes nothing.
    CapabilityImp operator|(const CapabilityImp& other) const;

    /// Equal sets. Every unknown name equals every other and `INVALID()`.
    bool operator==(const CapabilityImp& other) const noexcept;

    bool isInvalid() const noexcept { return m_node == INVALID_NODE; }
    bool isAll() const noexcept { return m_node == ALL_NODE; }
    bool isEmpty() const noexcept { return m_node == NO_NODE && !m_more; }

    /// The canonical name; a set's names in table order, joined with ", "; the text as written of an unknown name.
    /// Both arguments (indent, verbosity) change nothing.
    String toString(unsigned indent = 0, bool verbose = false) const;

    /// Canonical names of the set's nodes in table order; none for an invalid capability; "ALL" for `ALL()`.
    Array<String> names() const;

    /// The node in the tree of a capability that is exactly one; 0 otherwise. An index for tables by type.
    std::uint16_t node() const noexcept { return m_node < FIRST_SPECIAL_NODE ? m_node : NO_NODE; }

    /// The nodes in the tree, in table order; none for an invalid or empty capability and for `ALL()`. Valid as long as
    /// this object is unchanged.
    std::span<const std::uint16_t> nodes() const noexcept;

private:
    static constexpr std::uint16_t NO_NODE = 0;
    static constexpr std::uint16_t FIRST_SPECIAL_NODE = 0xFFFE;
    static constexpr std::uint16_t ALL_NODE = 0xFFFE;
    static constexpr std::uint16_t INVALID_NODE = 0xFFFF;
    struct More;  ///< text of an unknown name, or the nodes of a set of two or more

    std::uint16_t m_node = NO_NODE;
    boost::shared_ptr<const More> m_more;
};

}  // namespace vrx
