#include <gtest/gtest.h>

#include "tests/libInventory/support/RandomWorld.h"

/// What several threads find out ahead of the first pass changes nothing that a host can see of a run. The machines are
/// recordings, of which threads read the texts, and most elements can mean one device only.
namespace vrx::test::plain {
namespace {

class Recording {
public:
    explicit Recording(unsigned seed) : m_random(seed + 1), m_isFaulty(below(2) == 0) {
        for (unsigned i = 2 + below(seed % 4 == 0 ? 200 : 12); i > 0; --i) {
            Element device{"Device", {{"type", oneOf({"Storage", "HardDiskDrive", "Fan"})}}, {}};
            device.attributes.push_back({"name", "n" + std::to_string(i / 2)});
            device.attributes.push_back({"hwLocator", below(20) == 0 ? "shared" : "h" + std::to_string(i)});
            device.attributes.push_back({"osLocator", oneOf({"", "o"}) + std::to_string(i)});
            for (const char* const key : {"A", "B", "C"}) {
                device.children.push_back({"property", {{"key", key}, {"value", oneOf({"1", "2", "x y"})}}, {}});
            }
            m_machine.children.push_back(device);
        }
    }

    const Element& machine() const { return m_machine; }

    Element script() {
        Element root{"inventory-check", {}, {}};
        for (const Element& device : m_machine.children) {
            const unsigned around = below(30);
            if (around == 0 && root.children.size() < 20) {
                root.children.push_back({"or", {}, {asking(device), asking(m_machine.children.front())}});
            } else if (around < 5) {
                const std::string tag = around == 1 && m_isFaulty ? "not" : around == 2 ? "and" : "part";
                root.children.push_back({tag, {{"name", "P"}}, {asking(device)}});
            } else {
                root.children.push_back(asking(device));
            }
        }
        return root;
    }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }
    std::string oneOf(std::initializer_list<const char*> texts) {
        return texts.begin()[below(static_cast<unsigned>(texts.size()))];
    }
    bool isWrong() { return m_isFaulty && below(40) == 0; }

    Element asking(const Element& device) {
        Element made{"device", device.attributes, {}};
        made.attributes[1].second = oneOf({"^", ""}) + made.attributes[1].second + "$";
        made.attributes.erase(made.attributes.begin() + 1 + below(3));
        if (below(5) == 0) {
            made.attributes.erase(made.attributes.begin() + 2);
        }
        if (isWrong()) {
            made.attributes[below(2)].second = oneOf({"Fan", "Warp", "n1", "h1"});
        }
        for (const Element& recorded : device.children) {
            if (below(3) != 0) {
                Element property = recorded;
                property.attributes[0].second = isWrong() ? "D" : property.attributes[0].second;
                property.attributes[1].second = isWrong() ? "^2$" : "^" + property.attributes[1].second;
                made.children.push_back(below(25) == 0 ? Element{oneOf({"and", "not"}), {}, {property}} : property);
            }
        }
        return made;
    }

    std::minstd_rand m_random;
    bool m_isFaulty;
    Element m_machine{"SysInfo", {}, {}};
};

TEST(MatchesAheadRandomTest, threadsChangeNothing) {
    int passed = 0;
    for (unsigned seed = 0; seed < 150; ++seed) {
        Recording recording(seed);
        const Element script = recording.script();
        const auto outcomeWith = [&](unsigned threads) {
            Engine engine({}, true);
            StateManager store;
            EXPECT_TRUE(Inventory::importStateFromXmlString(text(recording.machine().toXml()), store));
            engine.inventory().setStateManager(store);
            engine.inventory().setThreads(threads);
            engine.load(script);
            return engine.run();
        };
        const Outcome alone = outcomeWith(1);
        ASSERT_EQ(outcomeWith(3), alone) << "seed " << seed << "\n" << script.toXml();
        passed += alone.passed ? 1 : 0;
    }
    EXPECT_TRUE(passed > 30 && passed < 120) << passed;
}

}  // namespace
}  // namespace vrx::test::plain
