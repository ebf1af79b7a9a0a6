#pragma once

#include <algorithm>
#include <random>

#include "tests/libInventory/support/DebugLines.h"
#include "tests/libInventory/support/PlainScript.h"

/// Random small worlds: machines and scripts so narrow that elements compete for devices, alternatives cannot be met,
/// and rules overlap; and the engine with one of them.
namespace vrx::test::plain {

class RandomWorld {
public:
    explicit RandomWorld(unsigned seed) : m_random(seed + 1) { addDevices(2 + below(4)); }

    const Machine& machine() const { return m_machine; }

    void addDevices(unsigned count) {
        for (; count > 0; --count) {
            m_machine.push_back(device());
        }
    }

    /// A script with several `or` elements beside one another, most of which have several possible alternatives.
    Element scriptOfAlternatives() {
        Element root{"inventory-check", {}, {}};
        for (unsigned i = below(3); i > 0; --i) {
            root.children.push_back(below(3) == 0 ? element(2, false) : plainElement());
        }
        for (unsigned i = 2 + below(4); i > 0; --i) {
            root.children.push_back(alternatives());
        }
        if (below(3) == 0) {
            root.children.push_back(Element{oneOf({"and", "and", "not"}), {}, {alternatives(), alternatives()}});
        }
        if (below(4) == 0) {
            root.children.push_back(extraRule());
        }
        return root;
    }

    /// A script of alternatives that ask for overlapping sizes, so that many of them want the same devices.
    Element scriptOfRivals() {
        Element root{"inventory-check", {}, {}};
        for (unsigned i = below(3); i > 0; --i) {
            root.children.push_back(rival());
        }
        for (unsigned i = 2 + below(4); i > 0; --i) {
            Element group{"or", {}, {}};
            for (unsigned j = 2 + below(3); j > 0; --j) {
                group.children.push_back(rival());
            }
            const std::string around = oneOf({"", "", "", "and", "not"});
            root.children.push_back(around.empty() ? group : Element{around, {}, {group, rival()}});
        }
        if (below(3) == 0) {
            root.children.push_back(extraRule());
        }
        return root;
    }

    /// A `device` element with content only.
    Element content() {
        Element made{"device", {}, {}};
        for (unsigned i = below(4); i > 0; --i) {
            made.children.push_back(deviceTest(2));
        }
        return made;
    }

    Element script() {
        Element root{"inventory-check", {}, {}};
        for (const char* const flag : {"check-names", "check-hwLocators", "check-osLocators"}) {
            if (below(8) == 0) {
                root.attributes.push_back({flag, below(4) == 0 ? "true" : "false"});
            }
        }
        for (unsigned i = 1 + below(3); i > 0; --i) {
            root.children.push_back(element(3, false));
        }
        for (unsigned i = below(3); i > 0; --i) {
            root.children.push_back(extraRule());
        }
        return root;
    }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }
    std::string oneOf(std::initializer_list<const char*> texts) {
        return texts.begin()[below(static_cast<unsigned>(texts.size()))];
    }

    Element rival() {
        const std::string sizes =
            oneOf({"^VRXRRANGE[1-2]$", "^VRXRRANGE[2-3]$", "^VRXRRANGE[1-3]$", "^VRXRRANGE[1-3]$", "^2$"});
        const Element property{"property", {{"key", "Size"}, {"value", sizes}}, {}};
        const Element asking{"device", {{"type", oneOf({"Storage", "Storage", "Storage", "Fan"})}}, {property}};
        switch (below(10)) {
            case 0: return {"not", {}, {asking}};
            case 1: return {"part", {{"name", "P"}}, {asking, plainElement()}};
            case 2: return {"and", {}, {plainElement(), asking}};
            case 3: return {"and", {}, {asking, asking}};
            case 4: return plainElement();
            default: return asking;
        }
    }

    Device device() {
        Device made{oneOf({"Storage", "SolidStateDrive", "HardDiskDrive", "Fan"}),
                    oneOf({"red", "green", "Red 2"}),
                    oneOf({"h1", "h2", "h3", "h4"}),
                    oneOf({"", "", "o1", "o2"}),
                    {}};
        if (below(4) != 0) {
            made.properties.push_back({"Size", {oneOf({"1", "2", "3"})}});
        }
        if (below(2) == 0) {
            std::vector<std::string> ports;
            for (unsigned i = below(3); i > 0; --i) {
                ports.push_back(oneOf({"xy", "xz"}));
            }
            made.properties.push_back({"Ports", ports});
        }
        return made;
    }

    Element element(int depth, bool insidePart) {
        const unsigned kind = depth == 0 ? 0 : below(12);
        if (kind < 5) {
            return deviceElement();
        }
        if (kind == 5 && below(3) == 0) {
            return below(3) == 0 ? extraRule() : Element{oneOf({"testset", "wheel"}), {}, {deviceElement()}};
        }
        Element group{groupTag(insidePart), {}, {}};
        const bool isPart = group.tag == "part";
        if (isPart && below(5) != 0) {
            group.attributes.push_back({"name", oneOf({"P", "Q"})});
        }
        for (unsigned i = below(12) == 0 ? 0 : 1 + below(3); i > 0; --i) {
            group.children.push_back(element(depth - 1, insidePart || isPart));
        }
        return group;
    }

    std::string groupTag(bool insidePart) {
        static const char* const tags[] = {"and", "AND", "not", "not", "and", "part", "part", "or", "or", "or", "Or"};
        return tags[below(insidePart ? 6 : 11)];
    }

    Element alternatives() {
        Element group{"or", {}, {}};
        for (unsigned i = 1 + below(3); i > 0; --i) {
            group.children.push_back(below(6) == 0 ? element(2, false) : plainElement());
        }
        return group;
    }

    /// A device that is mostly there.
    Element plainElement() {
        Element made{"device", {{"type", oneOf({"Storage", "Storage", "SolidStateDrive", "Fan"})}}, {}};
        if (below(2) == 0) {
            made.attributes.push_back({"hwlocator", oneOf({"h1", "h2", "h3", "h4"})});
        }
        if (below(6) == 0) {
            made.attributes.push_back({"name", oneOf({"red", "green"})});
        }
        return made;
    }

    Element deviceElement() {
        Element made{oneOf({"device", "device", "device", "DEVICE"}), {}, {}};
        if (below(40) != 0) {
            made.attributes.push_back({"type", below(40) == 0  ? "Warp"
                                               : below(3) == 0 ? oneOf({"SolidStateDrive", "HardDiskDrive", "Fan"})
                                                               : "Storage"});
        }
        if (below(4) == 0) {
            made.attributes.push_back({"name", oneOf({"^red$", "red", "green", "^RED$", "blue"})});
        }
        if (below(3) == 0) {
            made.attributes.push_back({"hwlocator", oneOf({"h1", "h2", "h3", "h5"})});
        }
        if (below(12) == 0) {
            made.attributes.push_back({"oslocator", oneOf({"o1", ""})});
        }
        if (below(40) == 0) {
            made.attributes.push_back({"colour", "red"});
        }
        for (unsigned i = below(3) == 0 ? 1 + below(2) : 0; i > 0; --i) {
            made.children.push_back(deviceTest(2));
        }
        return made;
    }

    Element deviceTest(int depth) {
        if (depth > 0 && below(3) == 0) {
            Element group{oneOf({"and", "or", "not", "or", "not", below(5) == 0 ? "wheel" : "and"}), {}, {}};
            for (unsigned i = below(10) == 0 ? 0 : 1 + below(2); i > 0; --i) {
                group.children.push_back(deviceTest(depth - 1));
            }
            return group;
        }
        Element property{"property", {{"key", oneOf({"Size", "Size", "Size", "Ports", "None"})}}, {}};
        if (below(8) != 0) {
            property.attributes.push_back(
                {"value", property.attributes[0].second == "Ports"
                              ? oneOf({"xy", "xy, xz", "^xz$"})
                              : oneOf({"^1$", "^2$", "3", "^VRXRRANGE[1-2]$", "^VRXRRANGE[2-3]$"})});
        }
        if (property.attributes[0].second == "Ports" || below(10) == 0) {
            for (unsigned i = below(3); i > 0; --i) {
                property.children.push_back({"value", {{"value", oneOf({"xy", "x.*", "^xz$", "1"})}}, {}});
            }
        }
        return property;
    }

    Element extraRule() {
        Element rule{"fail-on-extra", {}, {}};
        if (below(3) != 0) {
            rule.attributes.push_back({"type", oneOf({"Storage", "Storage", "Fan", "SolidStateDrive", "Warp"})});
        }
        if (below(3) == 0) {
            rule.attributes.push_back({"capability", oneOf({"Storage", "HardDiskDrive", "Warp", "Fan"})});
        }
        if (below(3) == 0) {
            rule.children.push_back(deviceTest(1));
        }
        return rule;
    }

    std::minstd_rand m_random;
    Machine m_machine;
};

inline std::string specText(const Inventory::DeviceSpec& spec) {
    return utf8(concat(spec.name, u"/", spec.type, u"/", spec.hwLocator, u"/", spec.osLocator));
}

/// The engine with one machine; runs may follow one another.
class Engine {
public:
    Engine(const Machine& machine, bool withPartsTable) {
        for (const Device& device : machine) {
            addDevice(m_store, device.type, device.name, device.hwLocator, device.osLocator, device.properties);
        }
        m_inventory.setStateManager(m_store);
        m_inventory.registerInventoryObserver(m_observer);
        m_inventory.setDeviceToPartsTable(withPartsTable ? &m_table : nullptr);
    }

    void load(const Element& script) {
        m_table = Inventory::DeviceToPartsTable();
        m_inventory.loadInventoryScript(text(script.toXml()));
    }

    Inventory& inventory() { return m_inventory; }

    Outcome run() {
        Outcome outcome;
        m_observer.events.clear();
        outcome.passed = m_inventory.run(&outcome.satisfied);
        for (const auto& spec : m_inventory.unsatisfiedDevices()) {
            outcome.unsatisfied.push_back(specText(spec));
        }
        for (const auto& spec : m_inventory.extraDevices()) {
            outcome.extra.push_back(specText(spec));
        }
        for (const auto& event : m_observer.events) {
            outcome.events.push_back(utf8(event.name()));
        }
        outcome.parts = partLines();
        outcome.annotated = utf8(m_inventory.script().toString());
        return outcome;
    }

    Outcome runWithDebugLines() {
        const DebugLines lines;
        return run();
    }

private:
    Texts partLines() const {
        Texts lines;
        for (const auto& entry : m_table) {
            std::string line = utf8(entry.key) + ":";
            for (const auto& part : entry.value) {
                Texts guids;
                for (const String& guid : part.devices) {
                    guids.push_back(utf8(guid));
                }
                line += " " + utf8(part.name) + "[" + joined(guids) + "]";
            }
            lines.push_back(line);
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    StateManager m_store;
    RecordingObserver m_observer;
    Inventory::DeviceToPartsTable m_table;
    Inventory m_inventory;
};

}  // namespace vrx::test::plain
