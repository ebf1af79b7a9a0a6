#pragma once

#include <cstddef>
#include <set>
#include <span>
#include <string_view>

#include "libMachine/import/redfish/RedfishTree.h"
#include "libMachine/import/redfish/RedfishValues.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

/// A kind of part: what becomes of it, and of its place when it is empty.
struct RedfishKind {
    StringView type;
    std::string_view locator;  ///< before the part's id: "psu"
    std::string_view name;     ///< where the part says none
    std::string_view place;    ///< the name of an empty place
    std::span<const RedfishField> fields = {};
};

/// The link of what is on the PCI bus.
inline constexpr RedfishField REDFISH_PCIE[] = {
    {"PCIeInterface/MaxPCIeType", property::MAX_LINK_SPEED, RedfishValue::PcieSpeed, u"GT/s"},
    {"PCIeInterface/MaxLanes", property::MAX_LINK_WIDTH, RedfishValue::Number},
    {"PCIeInterface/PCIeType", property::LINK_SPEED, RedfishValue::VolatilePcieSpeed, u"GT/s"},
    {"PCIeInterface/LanesInUse", property::LINK_WIDTH, RedfishValue::Number},
};

/// Puts the parts of a service into a recording. A part that several resources refer to is recorded once.
class RedfishParts {
public:
    RedfishParts(RedfishTree& tree, Recording& recording, DamageList& damage)
        : m_tree(tree), m_recording(recording), m_damage(damage) {}

    RedfishTree& tree() noexcept { return m_tree; }
    Recording& recording() noexcept { return m_recording; }

    /// Adds the part below a device. One that is absent or disabled is a Slot. Returns its place; Recording::NONE when
    /// it is there already.
    std::size_t add(const RedfishKind& kind, const RedfishPart& part, std::size_t parent);
    void addAll(const RedfishKind& kind, const std::vector<RedfishPart>& parts, std::size_t parent);

    /// Whether nobody took the part before.
    bool take(const boost::json::object& part) { return m_taken.insert(&part).second; }

    /// Notes a health other than OK.
    void noteHealth(const boost::json::object& part, const DeviceRecord& device);

    /// Puts a text before the locators of all devices from a place on.
    void prefixLocators(std::size_t from, const std::string& prefix);

private:
    RedfishTree& m_tree;
    Recording& m_recording;
    DamageList& m_damage;
    std::set<const boost::json::object*> m_taken;
};

/// Whether the part is there and in use.
bool isRedfishPresent(const boost::json::object& part);

/// Why a slot is empty, "Absent" or "Disabled": a word of the service's own, which in other places means nothing.
void addRedfishUsage(DeviceRecord& slot, const boost::json::object& part);

/// What a service tells of a computer, of a chassis and of a controller that manages them.
void addRedfishSystem(RedfishParts& parts, const boost::json::object& system, std::size_t root);
void addRedfishStorage(RedfishParts& parts, const boost::json::object& system, std::size_t root);
/// The PCI devices that a computer or a chassis lists.
void addRedfishPcie(RedfishParts& parts, const boost::json::object& owner, std::size_t root);

void addRedfishChassis(RedfishParts& parts, const RedfishPart& chassis, bool isFirst, std::size_t root);
void addRedfishManager(RedfishParts& parts, const RedfishPart& manager, bool isFirst, std::size_t root);

}  // namespace vrx
