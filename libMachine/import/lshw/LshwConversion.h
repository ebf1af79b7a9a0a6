#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "libCommon/text/TextHash.h"
#include "libMachine/import/lshw/LshwTree.h"
#include "libMachine/record/Recording.h"
#include "libMachine/smbios/SmbiosFacts.h"

/// The parts of the conversion of lshw recordings, one for each kind of node.
namespace vrx {

/// What they share.
struct LshwConversion {
    LshwConversion(const LshwTree& lshw, Recording& devices)
        : tree(lshw), recording(devices), deviceOf(lshw.nodes.size(), 0) {}

    const LshwNode& node(std::size_t place) const { return tree.nodes[place]; }

    /// The device that the nearest node above stands for; the root when there is none.
    std::size_t deviceAbove(std::size_t place) const {
        const std::size_t parent = tree.nodes[place].parent;
        return parent == LshwNode::NONE ? 0 : deviceOf[parent];
    }

    const LshwTree& tree;
    Recording& recording;

    /// By node: the device that it is, else that of the nearest node above that is one.
    std::vector<std::size_t> deviceOf;

    struct Function {
        std::size_t device;
        unsigned ports;
    };
    std::unordered_map<std::string, Function, TextHash> functions;  ///< PCI functions by address

    /// The one controller of the machine whose ports may be host adapters that lshw could not place; 0 when there are
    /// none or several.
    std::size_t onlyHostController = 0;
};

/// A text as it stands in the recording; empty for what lshw writes where it was told to hide the value.
std::string_view lshwText(std::string_view text) noexcept;

/// Whether a text says something: it is neither hidden nor a vendor's placeholder.
bool lshwTells(std::string_view text);

/// What lshw took from SMBIOS, or would have: system, board, firmware, processors, caches, memory, power.
SmbiosFacts lshwSmbiosFacts(const LshwTree& tree, DamageList& damage);
SystemFacts lshwSystem(const LshwNode& node);
std::vector<ProcessorFacts> lshwProcessors(const LshwTree& tree);
std::vector<CacheFacts> lshwCaches(const LshwTree& tree, DamageList& damage);
MemoryFacts lshwMemory(const LshwTree& tree, DamageList& damage);

/// Bytes of all memory as the kernel or the firmware sums it up; 0 where the recording does not say.
std::uint64_t lshwMemorySize(const LshwTree& tree);

/// Each adds the device that a node is, and returns its place in the recording; none when the node is no such device or
/// stands for nothing of its own.
std::optional<std::size_t> addLshwPciFunction(LshwConversion& conversion, std::size_t place);
std::optional<std::size_t> addLshwUsbDevice(LshwConversion& conversion, std::size_t place);
std::optional<std::size_t> addLshwInterface(LshwConversion& conversion, std::size_t place);
std::optional<std::size_t> addLshwDisk(LshwConversion& conversion, std::size_t place);
std::optional<std::size_t> addLshwVolume(LshwConversion& conversion, std::size_t place);

/// Finds the conversion's onlyHostController. Requires: all PCI functions are there.
void findHostController(LshwConversion& conversion);

/// The type of a network adapter, as far as the node tells; `otherwise` where it does not.
StringView lshwNetworkType(const LshwNode& node, StringView otherwise);

/// Adds a port of an adapter that is a device already, below that.
std::size_t addLshwPort(LshwConversion& conversion, const LshwNode& node, std::size_t adapter, unsigned number);

/// What lshw knows of an adapter's interface: its name, address, link.
void addLshwLink(DeviceRecord& adapter, const LshwNode& node);

}  // namespace vrx
