#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/containers/OrderedHashTable.h"
#include "libCommon/text/String.h"
#include "libInventory/Inventory.h"
#include "libInventory/InventoryDeviceAssociationsLinks.h"
#include "libSystemState/Forward.h"

namespace vrx {

class XmlElement;

/// Which script elements were matched by which devices: a bipartite graph with one node per element, one node per
/// device, and links that both ends know.
///
/// Matching adds links, `removeExtraLinks` leaves at most one per node, the second pass asks for elements without one,
/// extra-device detection for devices without one. Elements and devices are told apart by identity, not by content.
///
///     graph.associate(element, device);
///     graph.removeExtraLinks();
///     graph.isSatisfied(element);              // a device is left for the element
///     graph.isExtra(device, isKnown);          // no element is left for the device
///
/// Contract: assignment merges, as `append` does; it does not replace.
class VRX_EXPORT Inventory::InventoryDeviceAssociations {
public:
    class GraphNode;
    class InventoryNode;
    class DeviceNode;
    class Bundle;
    class LinkReduction;
    using SharedDevices = std::shared_ptr<const Array<boost::shared_ptr<IDeviceImp>>>;

    InventoryDeviceAssociations();
    InventoryDeviceAssociations(const InventoryDeviceAssociations& other);
    /// Merges, whether `other` is a temporary or not.
    InventoryDeviceAssociations& operator=(const InventoryDeviceAssociations& other);

    /// Takes the other's content; the other is empty afterwards.
    InventoryDeviceAssociations(InventoryDeviceAssociations&& other) noexcept;
    ~InventoryDeviceAssociations();

    /// Makes room for so many elements with a device each.
    void reserve(std::size_t elements);

    /// Links the two, making their nodes when needed; the same pair associated twice has two links. An empty device
    /// only makes the element known. Requires: element is not null.
    void associate(const XmlElement* element, const boost::shared_ptr<IDeviceImp>& device);

    /// Links an element with devices that the log has been told of already. Elements that are given the very same list
    /// one after the other share its links, so that many equal elements on many equal devices cost no more than the
    /// ones and the others. Requires: nothing is null, and no device stands twice.
    void associateAgain(const XmlElement* element, const SharedDevices& devices);

    /// Tells the log of a link that `associateAgain` is to make.
    static void logLink(const XmlElement* element, const IDeviceImp& device);

    /// Whether the device is known and has no links left; `found` becomes true when it is known and is left as it was
    /// otherwise.
    bool isExtra(const boost::shared_ptr<IDeviceImp>& device, bool& found) const;

    /// Whether a device was ever linked to the element, also when the link is gone. Requires: the element is known.
    bool hasEverMatched(const XmlElement* element) const;

    /// Whether the element has a link. Requires: the element is known.
    bool isSatisfied(const XmlElement* element) const;

    /// Leaves every node at most one link; see InventoryDeviceAssociationsReduction.cpp.
    void removeExtraLinks();

    /// All links, also those that were reduced away, unless pairs were linked twice: then what is left.
    NamedLinks links();

    /// Leaves each of these elements that device and all others none, whatever a reduction has chosen. Requires: they
    /// are pairs of the present links, and nothing stands in two of them.
    void assign(const std::vector<AssociationLinks::Pair>& pairs);

    /// Appends the nodes of elements without links, in order.
    void getUnsatisfiedInventories(Array<const InventoryNode*>& out) const;

    /// Appends the devices linked to the element, in link order; nothing when the element is unknown.
    void getMatchedDevices(const XmlElement* element, Array<boost::shared_ptr<IDeviceImp>>& out) const;

    /// The same with the devices whose links were reduced away.
    void getAssociatedDevices(const XmlElement* element, Array<boost::shared_ptr<IDeviceImp>>& out) const;

    /// The same for elements that share one list of links, and for no others; null when the element is unknown.
    const void* linksOf(const XmlElement* element) const;

    /// An element and the index of the list of its devices.
    struct ListedElement {
        const XmlElement* element;
        std::size_t list;
    };

    struct DeviceList {
        std::vector<const IDeviceImp*> devices;
        const void* shared = nullptr;  ///< the same for lists that elements share, wherever they are; null for others
    };

    /// Appends every element in order, and the lists of devices that they were linked to, also where the links were
    /// reduced away. Elements that share their links share a list.
    void getLists(std::vector<ListedElement>& elements, std::vector<DeviceList>& lists) const;

    /// Whether elements that are appended share links when they did so where they come from.
    bool keepsShares() const noexcept;

    /// Appends every link, in the order of the elements. The devices live as long as the graph holds them.
    void getLinks(std::vector<std::pair<const XmlElement*, const IDeviceImp*>>& out) const;

    /// Makes the graph forget the devices linked to the element. The element keeps its links: it stays satisfied.
    void removeDeviceAssociations(const XmlElement* element);

    /// Every node with its direct partners.
    String toString() const;

    void clear();

    /// Exchanges the content of two graphs.
    void swap(InventoryDeviceAssociations& other) noexcept;

    /// Remembers the elements and links that the graph has now, for `rewind`.
    void mark();

    /// Makes the graph what it was at the last `mark`, which costs less than building it once more. False, changing
    /// nothing, when there is no mark.
    bool rewind();

    /// Writes the log lines of associating everything that is associated.
    void logLinks() const;

    /// Adds another graph's elements and links to this one. Devices without links are not taken over.
    void append(const InventoryDeviceAssociations& other);

private:
    const InventoryNode* findNode(const XmlElement* element) const;
    InventoryNode& nodeOf(const XmlElement* element);
    DeviceNode& nodeOf(const boost::shared_ptr<IDeviceImp>& device);
    void link(InventoryNode& inventoryNode, const boost::shared_ptr<IDeviceImp>& device);
    void connect(InventoryNode& inventoryNode, const boost::shared_ptr<IDeviceImp>& device);
    void keepInOrder(const InventoryNode& inventoryNode);
    Bundle& bundleOf(const SharedDevices& devices);
    void dissolveBundles();
    void rememberDevices();
    static void logLinks(const InventoryNode& node);

    OrderedHashTable<const XmlElement*, InventoryNode*> m_inventoryNodes;
    OrderedHashTable<const IDeviceImp*, DeviceNode*> m_deviceNodes;
    struct Storage;
    std::unique_ptr<Storage> m_storage;
};

}  // namespace vrx
