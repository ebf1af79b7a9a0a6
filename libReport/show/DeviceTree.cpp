/// What stands below what.
///
/// A machine that was read live has a tree of its own. Reading a recording hangs every device directly below the root,
/// so there the hardware locators tell: "cpu:0/core:1" stands below "cpu:0", "usb:1-2.3" below "usb:1-2". Such a parent
/// is looked for only between devices that hang directly below the root, and its locator is shorter, so no circle can
/// come about.

#include "libReport/show/DeviceTree.h"

#include <unordered_map>

#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using Parents = std::unordered_map<const IDeviceImp*, const IDeviceImp*>;

/// The device among `flat` whose locator is the longest beginning of this one's; the root when there is none.
const IDeviceImp* parentByLocator(const IDeviceImp& device, const IDeviceImp* root, const StateManager& store,
                                  const Parents& parents) {
    const StringView locator = device.hwLocator();
    for (std::size_t end = locator.find_last_of(u"/."); end != StringView::npos && end > 0;
         end = locator.find_last_of(u"/.", end - 1)) {
        for (const auto& above : store.devicesByHwLocator(locator.substr(0, end))) {
            const auto at = parents.find(above.get());
            if (at != parents.end() && at->second == root) {
                return above.get();
            }
        }
    }
    return root;
}

/// The parent of every device but the root, as the store has it.
Parents parentsInStore(const StateManager& store) {
    Parents parents;
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        for (const auto& child : device->children()) {
            parents.emplace(child.get(), device.get());
        }
    }
    return parents;
}

Parents parentsOf(const StateManager& store) {
    const Parents stored = parentsInStore(store);
    const IDeviceImp* const root = store.rootDevice().get();
    Parents parents = stored;
    for (auto& [device, parent] : parents) {
        if (parent == root) {
            parent = parentByLocator(*device, root, store, stored);
        }
    }
    return parents;
}

using Children = std::unordered_map<const IDeviceImp*, std::vector<const IDeviceImp*>>;

/// A tree in text that is deeper than this serves nobody, and walks over it are recursive.
constexpr unsigned DEEPEST = 256;

const std::vector<const IDeviceImp*>& childrenOf(const IDeviceImp* device, const Children& children) {
    static const std::vector<const IDeviceImp*> none;
    const auto at = children.find(device);
    return at == children.end() ? none : at->second;
}

/// Adds everything below a device without nesting it, each device before those below it.
void addFlat(const IDeviceImp* device, const Children& children, std::vector<DeviceTreeNode>& out) {
    std::vector<const IDeviceImp*> pending{device};
    while (!pending.empty()) {
        const std::vector<const IDeviceImp*>& below = childrenOf(pending.back(), children);
        pending.pop_back();
        pending.insert(pending.end(), below.rbegin(), below.rend());
        if (!pending.empty()) {
            out.push_back({pending.back(), {}});
        }
    }
}

DeviceTreeNode nodeOf(const IDeviceImp* device, const Children& children, unsigned depth) {
    DeviceTreeNode node{device, {}};
    if (depth == DEEPEST) {
        addFlat(device, children, node.children);
        return node;
    }
    const std::vector<const IDeviceImp*>& below = childrenOf(device, children);
    node.children.reserve(below.size());
    for (const IDeviceImp* const child : below) {
        node.children.push_back(nodeOf(child, children, depth + 1));
    }
    return node;
}

}  // namespace

DeviceTreeNode deviceTree(const StateManager& store, const std::vector<const IDeviceImp*>& devices) {
    const Parents parents = parentsOf(store);
    Children children;
    for (const IDeviceImp* const device : devices) {
        children.try_emplace(device);
    }
    for (const IDeviceImp* const device : devices) {
        const IDeviceImp* above = nullptr;
        for (auto at = parents.find(device); at != parents.end(); at = parents.find(at->second)) {
            if (children.contains(at->second)) {
                above = at->second;
                break;
            }
        }
        children[above].push_back(device);
    }
    return nodeOf(nullptr, children, 0);
}

}  // namespace vrx
