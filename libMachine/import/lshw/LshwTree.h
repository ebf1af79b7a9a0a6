#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// One node of an lshw recording. Texts are as they stand there, empty where there is none; numbers 0. Sizes are bytes,
/// for a network adapter bits per second, for a battery milliwatt-hours; clocks are Hz.
struct LshwNode {
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    std::size_t parent = NONE;  ///< place in the tree
    std::string id;
    std::string kind;  ///< lshw calls it class: "disk", "bridge"
    std::string handle;
    std::string description;
    std::string product;
    std::string vendor;
    std::string physId;
    std::string busInfo;
    std::string version;
    std::string date;
    std::string serial;
    std::string slot;
    std::vector<std::string> logicalNames;
    std::uint64_t size = 0;
    std::uint64_t capacity = 0;
    std::uint64_t width = 0;
    std::uint64_t clock = 0;
    std::vector<std::pair<std::string, std::string>> settings;
    std::vector<std::string> capabilities;
    bool isClaimed = false;  ///< by a driver
    bool isDisabled = false;

    /// Sets what lshw calls by that name ("class", "businfo", "claimed", "size"); other names are passed over.
    void set(std::string_view name, std::string value);

    /// The value of a setting ("driver"); empty when there is none.
    std::string_view setting(std::string_view name) const noexcept;

    bool can(std::string_view capability) const noexcept;

    /// The rest of the first capability that starts so: "usb-" gives "2.00". Empty when there is none.
    std::string_view capabilityBehind(std::string_view start) const noexcept;

    /// What follows in the handle or the bus address behind such a start: `behind(busInfo, "pci@")`.
    static std::string_view behind(std::string_view text, std::string_view start) noexcept;

    /// The number of the SMBIOS structure that the node stands for ("DMI:0004").
    std::optional<unsigned> smbiosHandle() const noexcept;

    /// Whether the node's id is that word, alone or with a number behind a colon ("cpu", "cpu:1").
    bool isCalled(std::string_view word) const noexcept;

    const std::string& logicalName() const noexcept;
};

/// All nodes of a recording in document order, so that parents come before what is below them.
struct LshwTree {
    std::vector<LshwNode> nodes;

    /// Adds a node and returns its place.
    std::size_t add(std::size_t parent);

    /// The recording was cut off inside that node, the last one that was begun and not ended. It is left out when
    /// nothing stands in it yet, as then its own fields are not all there; those around it are whole but for what would
    /// have followed in them.
    void cutOff(std::size_t innermost);

    /// Whether more nodes would have followed in that one.
    bool isCutOff(std::size_t place) const noexcept;

    std::size_t openAtEnd = LshwNode::NONE;  ///< the innermost node that was cut off and is kept
};

/// Fill a tree from a recording's text. They add nothing when it holds no node.
void readLshwXml(std::string_view text, LshwTree& tree, DamageList& damage);
void readLshwJson(std::string_view text, LshwTree& tree, DamageList& damage);

}  // namespace vrx
