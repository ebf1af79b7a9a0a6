#include "libInventory/InventoryDeviceAssociations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>

#include "libCommon/error/StructuredException.h"
#include "libCommon/logging/Logger.h"
#include "libCommon/xml/XmlDocument.h"
#include "tests/libInventory/support/PlainReduction.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using Associations = Inventory::InventoryDeviceAssociations;
using DevicePointer = boost::shared_ptr<IDeviceImp>;

struct Graph {
    explicit Graph(int elementCount = 4, int deviceCount = 4) {
        for (int i = 0; i < elementCount; ++i) {
            elements.push_back(document.NewElement(u"device"));
        }
        for (int i = 0; i < deviceCount; ++i) {
            devices.push_back(addDevice(store, "Storage", "d" + std::to_string(i), "hw" + std::to_string(i)));
        }
    }

    /// A list of so many devices that links to it are shared.
    Associations::SharedDevices someDevices(std::mt19937& random) const {
        Array<DevicePointer> some;
        for (const DevicePointer& device : devices) {
            if (random() % 4 != 0) {
                random() % 2 != 0 ? some.prepend(device) : static_cast<void>(some.append(device));
            }
        }
        return std::make_shared<const Array<DevicePointer>>(std::move(some));
    }

    int indexOf(const DevicePointer& device) const {
        return static_cast<int>(std::find(devices.begin(), devices.end(), device) - devices.begin());
    }

    void link(int element, int device) { graph.associate(elements[element], devices[device]); }

    std::vector<int> partners(const Associations& of, int element) const {
        Array<DevicePointer> found;
        of.getMatchedDevices(elements[element], found);
        std::vector<int> indices;
        for (const auto& device : found) {
            indices.push_back(indexOf(device));
        }
        return indices;
    }
    std::vector<int> partners(int element) const { return partners(graph, element); }

    XmlDocument document;
    StateManager store;
    std::vector<XmlElement*> elements;
    std::vector<DevicePointer> devices;
    Associations graph;
};

TEST(InventoryDeviceAssociationsTest, KnowsElementsWithoutDevices) {
    Graph g;
    g.graph.associate(g.elements[0], DevicePointer());
    EXPECT_FALSE(g.graph.isSatisfied(g.elements[0]));
    EXPECT_FALSE(g.graph.hasEverMatched(g.elements[0]));
    EXPECT_THROW(g.graph.hasEverMatched(g.elements[1]), StructuredException);
    EXPECT_THROW(g.graph.associate(nullptr, g.devices[0]), StructuredException);
    try {
        g.graph.isSatisfied(g.elements[1]);
        FAIL() << "an unknown element was answered for";
    } catch (const StructuredException& unknown) {
        EXPECT_TRUE(utf8(unknown.text()).starts_with("Assertion failed: found at ")) << utf8(unknown.text());
    }
}

TEST(InventoryDeviceAssociationsTest, TellsUnknownFromUnlinkedDevices) {
    Graph g;
    g.link(0, 0);
    g.link(0, 1);
    g.graph.removeExtraLinks();
    bool found = false;
    EXPECT_FALSE(g.graph.isExtra(g.devices[2], found));
    EXPECT_FALSE(found);
    EXPECT_TRUE(g.graph.isExtra(g.devices[1], found));
    EXPECT_TRUE(found);
    EXPECT_FALSE(g.graph.isExtra(g.devices[0], found));
}

TEST(InventoryDeviceAssociationsTest, KeepsTheMostConstrainedPartner) {
    Graph g;
    g.link(1, 0);  // element 1 has two candidates,
    g.link(1, 1);
    g.link(0, 0);  // element 0 only one: device 0 must go to it
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(0), std::vector<int>{0});
    EXPECT_EQ(g.partners(1), std::vector<int>{1});
}

TEST(InventoryDeviceAssociationsTest, AmongEqualsTheFirstLinkStays) {
    Graph g;
    g.link(2, 0);
    g.link(0, 0);
    g.link(1, 0);
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(2), std::vector<int>{0});
    EXPECT_TRUE(g.graph.hasEverMatched(g.elements[0]));
    EXPECT_FALSE(g.graph.isSatisfied(g.elements[0]));
}

TEST(InventoryDeviceAssociationsTest, APairLinkedTwiceKeepsOneLink) {
    Graph g;
    g.link(0, 0);
    g.link(0, 0);
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(0), std::vector<int>{0});
    bool found = false;
    EXPECT_FALSE(g.graph.isExtra(g.devices[0], found));
}

TEST(InventoryDeviceAssociationsTest, AssignmentMergesAndForgetsWhatHadMatched) {
    Graph g;
    g.link(0, 0);
    g.link(1, 0);
    g.graph.removeExtraLinks();  // element 1 has lost its device
    Associations other;
    other.associate(g.elements[2], g.devices[2]);
    other = g.graph;
    EXPECT_EQ(g.partners(other, 2), std::vector<int>{2});
    EXPECT_EQ(g.partners(other, 0), std::vector<int>{0});
    EXPECT_FALSE(other.hasEverMatched(g.elements[1]));
    other = g.graph;
    EXPECT_EQ(g.partners(other, 0), (std::vector<int>{0, 0}));
}

TEST(InventoryDeviceAssociationsTest, ForgottenDevicesKeepTheLinksOfOthers) {
    Graph g;
    g.link(0, 0);
    g.link(1, 0);
    g.graph.removeDeviceAssociations(g.elements[0]);
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(0), std::vector<int>{0});
    EXPECT_EQ(g.partners(1), std::vector<int>{0});
    g.link(0, 1);
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(0), std::vector<int>{1});  // the other candidate has two elements
    EXPECT_EQ(g.partners(1), std::vector<int>{0});
}

TEST(InventoryDeviceAssociationsTest, AssignmentFromATemporaryMergesAndAMovedGraphIsEmpty) {
    Graph g;
    g.link(0, 0);
    Associations moved(std::move(g.graph));
    EXPECT_TRUE(g.partners(0).empty());
    g.link(1, 1);
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(1), std::vector<int>{1});
    g.graph = Associations(moved);
    EXPECT_EQ(g.partners(1), std::vector<int>{1});
    EXPECT_EQ(g.partners(0), std::vector<int>{0});
}

TEST(InventoryDeviceAssociationsTest, GoesBackToItsMarkAsIfItWereBuiltAnew) {
    std::mt19937 random(7);
    Graph g(12, 12);
    const Associations::SharedDevices lists[] = {g.someDevices(random), g.someDevices(random)};
    const auto linkSome = [&](Associations& graph, int firstElement, int lastElement) {
        for (int element = firstElement; element <= lastElement; ++element) {
            graph.associate(g.elements[static_cast<std::size_t>(element)], DevicePointer());
            if (random() % 3 == 0) {
                graph.associateAgain(g.elements[static_cast<std::size_t>(element)], lists[random() % 2]);
                continue;
            }
            for (unsigned i = random() % 4; i > 0; --i) {
                graph.associate(g.elements[static_cast<std::size_t>(element)], g.devices[random() % 12]);
            }
        }
    };
    EXPECT_FALSE(g.graph.rewind());
    for (int world = 0; world < 100; ++world) {
        Associations common;
        linkSome(common, 0, 7);
        g.graph.clear();
        g.graph.append(common);
        g.graph.mark();
        for (int combination = 0; combination < 4; ++combination) {
            Associations chosen;
            linkSome(chosen, 8, 8 + combination);
            Associations anew(common);
            for (Associations* const graph : {&g.graph, &anew}) {
                graph->append(chosen);
                graph->removeExtraLinks();
            }
            EXPECT_EQ(g.graph.toString(), anew.toString());
            g.graph.removeDeviceAssociations(g.elements[random() % 8]);
            g.graph.associate(g.elements[0], g.devices[0]);
            EXPECT_TRUE(g.graph.rewind());
            EXPECT_EQ(g.graph.toString(), Associations(common).toString());
        }
    }
}

TEST(InventoryDeviceAssociationsTest, KnowsWhatWasReducedAway) {
    Graph g;
    g.link(0, 0);
    g.link(1, 0);
    g.link(1, 1);
    g.link(1, 2);
    g.graph.removeExtraLinks();
    Array<DevicePointer> all;
    g.graph.getAssociatedDevices(g.elements[1], all);
    EXPECT_EQ(all.size(), 3U);
    std::vector<std::pair<const XmlElement*, const IDeviceImp*>> links;
    g.graph.getLinks(links);
    EXPECT_EQ(links, (std::vector<std::pair<const XmlElement*, const IDeviceImp*>>{
                         {g.elements[0], g.devices[0].get()}, {g.elements[1], g.devices[1].get()}}));

    // What is linked again is linked once, and a mark now remembers no more than that.
    g.link(1, 2);
    g.graph.mark();
    g.link(0, 2);
    g.graph.removeExtraLinks();
    EXPECT_TRUE(g.graph.rewind());
    all.clear();
    g.graph.getAssociatedDevices(g.elements[1], all);
    EXPECT_EQ(all.size(), 2U);
}

TEST(InventoryDeviceAssociationsTest, RemovedAssociationsLeaveTheElementSatisfied) {
    Graph g;
    g.link(0, 0);
    g.link(1, 0);
    g.graph.removeDeviceAssociations(g.elements[0]);
    EXPECT_TRUE(g.graph.isSatisfied(g.elements[0]));
    EXPECT_EQ(g.partners(0), std::vector<int>{0});
    bool found = false;
    EXPECT_FALSE(g.graph.isExtra(g.devices[0], found));
    EXPECT_FALSE(found);
    g.link(2, 0);  // a fresh node; the old one still serves the old links
    g.graph.removeExtraLinks();
    EXPECT_EQ(g.partners(2), std::vector<int>{0});
    g.graph.clear();
    EXPECT_TRUE(g.partners(0).empty());
}

TEST(InventoryDeviceAssociationsTest, TextShowsEveryNodeWithItsPartners) {
    Graph g(1, 1);
    g.link(0, 0);
    EXPECT_EQ(utf8(g.graph.toString()),
              "Inventory Elements to Devices: \n"
              "InventoryNode xml element (1:1) :\n    <device/>\n\n    DeviceNode device:hw0|\n\n"
              "Devices to Inventory Elements: \n"
              "DeviceNode device:hw0|\n    InventoryNode xml element (1:1) :\n        <device/>\n\n\n");
}

/// The lines of a reduction, without their source line numbers.
std::string linesOfReduction(Associations& graph) {
    struct Collector : LogSink {
        void writeLine(const std::string&, LogPriority, StringView message) override {
            lines += toUtf8(message.substr(message.find(u' '))) + "\n";
        }
        std::string lines;
    } collector;
    Logger::addSink(collector);
    Logger::setRootPriority(LogPriority::Debug);
    graph.removeExtraLinks();
    Logger::setRootPriority(LogPriority::Warning);
    Logger::removeSink(collector);
    return collector.lines;
}

TEST(InventoryDeviceAssociationsTest, SharedListsAreReducedAsIfEachLinkWereMadeByItself) {
    std::mt19937 random(1122);
    for (int round = 0; round < 600; ++round) {
        Graph g(2 + static_cast<int>(random() % 12), 5 + static_cast<int>(random() % 6));
        Graph oneByOne(static_cast<int>(g.elements.size()), static_cast<int>(g.devices.size()));
        PlainReduction plain(g.elements.size(), g.devices.size());
        const Associations::SharedDevices lists[] = {g.someDevices(random), g.someDevices(random),
                                                     g.someDevices(random)};
        for (std::size_t element = 0; element < g.elements.size(); ++element) {
            const Associations::SharedDevices list = random() % 4 != 0 ? lists[random() % 3] : g.someDevices(random);
            oneByOne.graph.associate(oneByOne.elements[element], DevicePointer());
            for (const DevicePointer& device : *list) {
                plain.link(static_cast<int>(element), g.indexOf(device));
                oneByOne.link(static_cast<int>(element), g.indexOf(device));
            }
            g.graph.associateAgain(g.elements[element], list);
        }
        ASSERT_EQ(g.graph.toString(), oneByOne.graph.toString()) << "round " << round;
        g.graph.mark();
        oneByOne.graph.mark();
        plain.run();
        for (const bool isForgetful : {false, true}) {
            if (isForgetful) {
                g.graph.removeDeviceAssociations(g.elements[0]);
                oneByOne.graph.removeDeviceAssociations(oneByOne.elements[0]);
            }
            ASSERT_EQ(linesOfReduction(g.graph), linesOfReduction(oneByOne.graph)) << "round " << round;
            ASSERT_EQ(g.graph.toString(), oneByOne.graph.toString()) << "round " << round;
            for (std::size_t element = 0; element < g.elements.size() && !isForgetful; ++element) {
                const int index = static_cast<int>(element);
                ASSERT_EQ(g.partners(index), plain.partners(index)) << "round " << round << " element " << element;
                ASSERT_EQ(g.graph.isSatisfied(g.elements[element]), !plain.partners(index).empty());
            }
            ASSERT_TRUE(g.graph.rewind());
            ASSERT_TRUE(oneByOne.graph.rewind());
        }
    }
}

TEST(InventoryDeviceAssociationsTest, ReductionEqualsThePlainRulesOnRandomGraphs) {
    std::mt19937 random(20261121);
    for (int round = 0; round < 600; ++round) {
        const int size = 1 + static_cast<int>(random() % 7);
        Graph g(size, size);
        PlainReduction plain(g.elements.size(), g.devices.size());
        for (const bool isAgain : {false, true}) {
            const int links = static_cast<int>(random() % 30);
            for (int i = 0; i < links; ++i) {
                const int element = static_cast<int>(random() % g.elements.size());
                const int device = static_cast<int>(random() % g.devices.size());
                const bool parallel = round % 3 == 0 || (isAgain && round % 3 == 1);
                const auto known = g.partners(element);
                if (parallel || std::find(known.begin(), known.end(), device) == known.end()) {
                    g.link(element, device);
                    plain.link(element, device);
                }
            }
            std::vector<bool> linked(g.elements.size());
            for (int i = 0; i < size; ++i) {
                linked[i] = !g.partners(i).empty();
            }
            g.graph.removeExtraLinks();
            plain.run();
            std::vector<bool> taken(g.devices.size());
            for (int i = 0; i < size; ++i) {
                const auto partners = g.partners(i);
                ASSERT_EQ(partners, plain.partners(i)) << "round " << round << " element " << i;
                ASSERT_LE(partners.size(), 1U);
                for (const int device : partners) {
                    ASSERT_FALSE(taken[device]) << "a device was given to two elements";
                    taken[device] = true;
                }
                if (linked[i]) {
                    ASSERT_TRUE(g.graph.hasEverMatched(g.elements[i]));
                }
            }
        }
    }
}

}  // namespace
}  // namespace vrx::test
