/// Random small scripts on random small machines: the engine against the plain rules, in everything that a host can
/// see. The worlds are narrow, so that elements compete for devices, alternatives cannot be met, and rules overlap.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/libInventory/support/DebugLines.h"
#include "tests/libInventory/support/PlainRun.h"

namespace vrx::test::plain {
namespace {

class RandomWorld {
public:
    explicit RandomWorld(unsigned seed) : m_random(seed + 1) {
        for (unsigned i = 2 + below(4); i > 0; --i) {
            m_machine.push_back(device());
        }
    }

    const Machine& machine() const { return m_machine; }

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

std::string specText(const Inventory::DeviceSpec& spec) {
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

TEST(RandomRunTest, theEngineSaysWhatThePlainRulesSay) {
    int passed = 0;
    int withExtra = 0;
    int withParts = 0;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        RandomWorld world(seed);
        const Element script = world.script();
        const bool withPartsTable = seed % 3 != 0;
        const Outcome expected = runPlainly(script, world.machine(), withPartsTable);
        Engine engine(world.machine(), withPartsTable);
        engine.load(script);
        ASSERT_EQ(engine.run(), expected) << "seed " << seed << "\n" << script.toXml();
        passed += expected.passed ? 1 : 0;
        withExtra += expected.extra.empty() ? 0 : 1;
        withParts += expected.parts.empty() ? 0 : 1;
    }
    EXPECT_GT(passed, 200);
    EXPECT_GT(withExtra, 300);
    EXPECT_GT(withParts, 50);
}

TEST(RandomRunTest, debugLinesAndEarlierRunsChangeNothing) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        RandomWorld world(seed);
        const Element script = world.script();
        Engine quiet(world.machine(), true);
        Engine logged(world.machine(), true);
        Engine mixed(world.machine(), true);
        for (Engine* const engine : {&quiet, &logged, &mixed}) {
            engine->load(script);
        }
        const std::string what = "seed " + std::to_string(seed) + "\n" + script.toXml();
        const Outcome first = quiet.run();
        ASSERT_EQ(logged.runWithDebugLines(), first) << what;
        ASSERT_EQ(mixed.run(), first) << what;
        const Outcome second = quiet.run();
        ASSERT_EQ(logged.runWithDebugLines(), second) << what;
        ASSERT_EQ(mixed.runWithDebugLines(), second) << what;
        quiet.load(script);
        ASSERT_EQ(quiet.run(), first) << what;
    }
}

}  // namespace
}  // namespace vrx::test::plain
