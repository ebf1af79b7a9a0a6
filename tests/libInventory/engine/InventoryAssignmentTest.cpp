/// Exact assignment: whether it passes what any assignment can, what follows it, and which elements compete when none
/// can. The random worlds are tried in greater number with VRX_TRIALS=100000.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>

#include "libInventory/Finding.h"
#include "libInventory/script/ScriptWalk.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "tests/libInventory/support/PlainRun.h"

namespace vrx::test::plain {
namespace {

using Assignment = Inventory::Assignment;
using testing::ElementsAre;

class Engine {
public:
    Engine(const Machine& machine, Assignment assignment) {
        for (const Device& device : machine) {
            addDevice(m_store, device.type, device.name, device.hwLocator, device.osLocator, device.properties);
        }
        m_inventory.setStateManager(m_store);
        m_inventory.setAssignment(assignment);
    }

    void fillPartsTable() { m_inventory.setDeviceToPartsTable(&m_table); }

    bool run(const Element& script) {
        m_inventory.loadInventoryScript(text(script.toXml()));
        return m_inventory.run(&m_satisfied);
    }

    const Inventory& inventory() const { return m_inventory; }
    bool isSatisfied() const { return m_satisfied; }

    /// The `device` elements, in order.
    std::vector<const XmlElement*> elements() const {
        std::vector<const XmlElement*> found;
        for (ScriptWalk walk(*m_inventory.script().RootElement()); walk; ++walk) {
            if (walk->kind == vocabulary::ElementKind::Device) {
                found.push_back(walk->element);
            }
        }
        return found;
    }

    /// The hardware locator of the device that each element has.
    Texts places() const {
        Texts found;
        for (const XmlElement* const element : elements()) {
            const IDeviceImp* const device = m_inventory.deviceOf(*element);
            found.push_back(device != nullptr ? utf8(device->hwLocator()) : "");
        }
        return found;
    }

    Texts parts() const {
        Texts lines;
        for (const auto& entry : m_table) {
            for (const auto& part : entry.value) {
                lines.push_back(utf8(entry.key) + " " + utf8(part.name));
            }
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

private:
    StateManager m_store;
    Inventory::DeviceToPartsTable m_table;
    Inventory m_inventory;
    bool m_satisfied = false;
};

Device module(const std::string& place, const std::string& size) {
    return {"Storage", "module", place, "", {{"Size", {size}}}};
}

Element asking(const std::string& sizes) {
    return {"device",
            {{"type", "Storage"}},
            {{"property", {{"key", "Size"}, {"value", "^VRXRRANGE[" + sizes + "]$"}}, {}}}};
}

Element script(std::vector<Element> children) { return {"inventory-check", {}, std::move(children)}; }

const Machine THREE_MODULES{module("a", "16"), module("b", "8"), module("c", "64")};
const std::vector<Element> THREE_RANGES{asking("8-32"), asking("16-64"), asking("16-64")};

TEST(AssignmentTest, AnElementThatTheReductionLeavesWithoutIsServedExactly) {
    Engine greedy(THREE_MODULES, Assignment::Greedy);
    EXPECT_FALSE(greedy.run(script(THREE_RANGES)));
    EXPECT_FALSE(greedy.inventory().summary().isAssignedExactly);
    EXPECT_TRUE(greedy.inventory().competitionFor(*greedy.inventory().missingElements()[0]).elements.isEmpty());
    for (const Assignment assignment : {Assignment::Exact, Assignment::Auto}) {
        Engine engine(THREE_MODULES, assignment);
        EXPECT_TRUE(engine.run(script(THREE_RANGES)));
        EXPECT_TRUE(engine.inventory().summary().isAssignedExactly);
        EXPECT_EQ(engine.inventory().summary().exactlyAssigned.size(), 1U);
        EXPECT_EQ(engine.places()[0], "b");
    }
    Engine easy(THREE_MODULES, Assignment::Exact);
    EXPECT_TRUE(easy.run(script({asking("8-8"), asking("16-64")})));
    EXPECT_FALSE(easy.inventory().summary().isAssignedExactly);
}

TEST(AssignmentTest, PartsAndExtraDevicesFollowTheAssignment) {
    std::vector<Element> parts;
    for (const Element& one : THREE_RANGES) {
        parts.push_back({"part", {{"name", "P" + std::to_string(parts.size())}}, {one}});
    }
    Engine engine(THREE_MODULES, Assignment::Auto);
    engine.fillPartsTable();
    EXPECT_TRUE(engine.run(script(parts)));
    EXPECT_THAT(engine.parts(), ElementsAre("a| P2", "b| P0", "c| P1"));
    const Element rule{"fail-on-extra", {{"type", "Storage"}}, {asking("64-64").children[0]}};
    Engine watched({module("a", "16"), module("c", "64")}, Assignment::Auto);
    EXPECT_TRUE(watched.run(script({asking("8-64"), rule})));
    EXPECT_THAT(watched.places(), ElementsAre("c"));
    EXPECT_TRUE(watched.inventory().summary().exactlyAssigned.isEmpty());
}

TEST(AssignmentTest, ElementsThatCompeteForTooFewDevicesAreNamed) {
    Engine engine({module("a", "16"), module("b", "32"), module("c", "64")}, Assignment::Auto);
    EXPECT_FALSE(engine.run(script({asking("8-32"), asking("64-64"), asking("16-16"), asking("8-32"), asking("1-1")})));
    const Inventory& inventory = engine.inventory();
    const Array<const XmlElement*> missing = inventory.missingElements();
    ASSERT_EQ(missing.size(), 2U);
    const Competition competition = inventory.competitionFor(*missing[0]);
    const std::vector<const XmlElement*> elements = engine.elements();
    EXPECT_THAT(competition.elements, ElementsAre(elements[0], elements[2], elements[3]));
    EXPECT_EQ(competition.devices.size(), 2U);
    EXPECT_TRUE(inventory.competitionFor(*missing[1]).elements.isEmpty());
    EXPECT_TRUE(inventory.competitionFor(*elements[1]).elements.isEmpty());
}

/// Scripts whose elements overlap, in groups of every kind.
class CompetingWorld {
public:
    explicit CompetingWorld(unsigned seed) : m_random(seed + 1) {
        for (unsigned i = 2 + below(4); i > 0; --i) {
            m_machine.push_back(module(std::to_string(i), number(1 + below(4))));
            m_machine.back().type = below(3) == 0 ? "Fan" : "SolidStateDrive";
        }
        m_script = script({});
        const auto most = static_cast<unsigned>(m_machine.size());
        for (unsigned i = most - below(std::min(most, 3U)); i > 0; --i) {
            m_script.children.push_back(element(2, false));
        }
        for (unsigned i = below(3); i > 0; --i) {
            m_script.children.push_back({"fail-on-extra", {{"type", below(4) == 0 ? "Fan" : "Storage"}}, {}});
            if (below(2) == 0) {
                m_script.children.back().children.push_back(range().children[0]);
            }
        }
    }

    const Machine& machine() const { return m_machine; }
    const Element& content() const { return m_script; }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }
    static std::string number(unsigned value) { return std::to_string(value); }

    Element range() {
        const unsigned from = 1 + below(4);
        Element made = asking(number(from) + "-" + number(from + below(5 - from)));
        if (below(4) == 0) {
            made.attributes[0].second = below(4) == 0 ? "Fan" : "SolidStateDrive";
        }
        return made;
    }

    Element element(unsigned depth, bool isInPart) {
        static const char* const groups[] = {"and", "not", "not", "part", "or", "or"};
        if (depth == 0 || below(3) != 0) {
            return range();
        }
        Element group{groups[below(isInPart ? 3 : 6)], {}, {}};
        if (group.tag == "part") {
            group.attributes.push_back({"name", "P"});
        }
        for (unsigned i = 1 + below(2); i > 0; --i) {
            group.children.push_back(element(depth - 1, isInPart || group.tag == "part"));
        }
        return group;
    }

    std::minstd_rand m_random;
    Machine m_machine;
    Element m_script;
};

unsigned trials() {
    const char* const asked = std::getenv("VRX_TRIALS");
    return asked != nullptr ? static_cast<unsigned>(std::stoul(asked)) : 700;
}

/// Whether each of the elements can have one of the devices, when those before `at` have theirs.
bool canAllBeServed(const Inventory& inventory, const std::vector<const XmlElement*>& elements, std::size_t at,
                    std::set<const IDeviceImp*>& used) {
    if (at == elements.size()) {
        return true;
    }
    for (const Candidate& candidate : inventory.outcomeOf(*elements[at]).candidates) {
        if (candidate.failures.isEmpty() && used.insert(candidate.device.get()).second) {
            if (canAllBeServed(inventory, elements, at + 1, used)) {
                return true;
            }
            used.erase(candidate.device.get());
        }
    }
    return false;
}

void expectSmallest(const Inventory& inventory, const XmlElement& missing) {
    const Competition competition = inventory.competitionFor(missing);
    if (competition.elements.isEmpty()) {
        for (const Candidate& candidate : inventory.outcomeOf(missing).candidates) {
            EXPECT_FALSE(candidate.failures.isEmpty());
        }
        return;
    }
    EXPECT_EQ(competition.elements.size(), competition.devices.size() + 1);
    std::vector<const XmlElement*> all(competition.elements.begin(), competition.elements.end());
    EXPECT_NE(std::find(all.begin(), all.end(), &missing), all.end());
    std::set<const IDeviceImp*> used;
    EXPECT_FALSE(canAllBeServed(inventory, all, 0, used));
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::vector<const XmlElement*> others = all;
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
        used.clear();
        EXPECT_TRUE(canAllBeServed(inventory, others, 0, used));
    }
}

TEST(AssignmentTest, DevicesThatAFailingPartForgetsAreGivenToOthers) {
    const Element forgets{"not", {}, {{"part", {{"name", "P"}}, {asking("64-64"), asking("1-1")}}}};
    const Element rule{"fail-on-extra", {{"type", "Storage"}}, {asking("64-64").children[0]}};
    Engine engine({module("a", "16"), module("c", "64")}, Assignment::Exact);
    engine.fillPartsTable();
    EXPECT_TRUE(engine.run(script({forgets, asking("16-64"), rule})));
    EXPECT_THAT(engine.places(), ElementsAre("", "", "c"));
}

TEST(AssignmentTest, ExactlyPassesWhateverAnyAssignmentPasses) {
    unsigned onlyExactly = 0;
    unsigned competing = 0;
    for (unsigned seed = 0; seed < trials(); ++seed) {
        const CompetingWorld world(seed);
        const bool withParts = seed % 2 == 0;
        SCOPED_TRACE("seed " + std::to_string(seed) + "\n" + world.content().toXml());
        const bool passesGreedily = runPlainly(world.content(), world.machine(), withParts).passed;
        const bool passes = passesByAnyAssignment(world.content(), world.machine(), withParts);
        Engine greedy(world.machine(), Assignment::Greedy);
        for (const Assignment assignment : {Assignment::Exact, Assignment::Auto}) {
            Engine engine(world.machine(), assignment);
            if (withParts) {
                engine.fillPartsTable();
                greedy.fillPartsTable();
            }
            ASSERT_EQ(engine.run(world.content()), passes);
            const bool isExact = engine.inventory().summary().isAssignedExactly;
            if (assignment == Assignment::Auto && passes) {
                ASSERT_EQ(isExact, !passesGreedily);
                ASSERT_EQ(greedy.run(world.content()), passesGreedily);
                onlyExactly += isExact ? 1 : 0;
            }
            if (assignment == Assignment::Auto && passesGreedily) {
                ASSERT_EQ(engine.places(), greedy.places());
                ASSERT_EQ(engine.parts(), greedy.parts());
            }
            for (const XmlElement* const element : engine.elements()) {
                const IDeviceImp* const device = engine.inventory().deviceOf(*element);
                ASSERT_TRUE(device == nullptr || engine.inventory().holderOf(*device) == element);
            }
            for (const XmlElement* const missing : engine.inventory().missingElements()) {
                expectSmallest(engine.inventory(), *missing);
                competing += engine.inventory().competitionFor(*missing).elements.size() > 2 ? 1 : 0;
            }
        }
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(onlyExactly, trials() / 200);
    EXPECT_GT(competing, trials() / 100);
}

}  // namespace
}  // namespace vrx::test::plain
