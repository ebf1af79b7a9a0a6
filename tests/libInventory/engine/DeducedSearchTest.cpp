#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "libInventory/Finding.h"
#include "libInventory/script/ScriptWalk.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "tests/libInventory/support/RandomWorld.h"

/// A search that deduces which combinations count, against the loop that tries all of them; and what only the search
/// can decide.
namespace vrx::test {
namespace {

using plain::Element;
using plain::Outcome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// All that a host can ask for, as texts.
std::vector<std::string> factsOf(const Inventory& inventory) {
    std::vector<std::string> facts;
    const auto place = [](const XmlElement* element) {
        return element == nullptr ? "-" : std::to_string(element->Row()) + ":" + std::to_string(element->Column());
    };
    for (const Finding& finding : inventory.findings()) {
        facts.push_back("finding " + std::to_string(static_cast<int>(finding.kind)) + " " + place(finding.element) +
                        " " + (finding.device ? utf8(finding.device->guid()) : "") + " " + utf8(finding.key) + " " +
                        utf8(finding.found) + " " + place(finding.rule) + " " + place(finding.part));
    }
    for (const XmlElement* const missing : inventory.missingElements()) {
        facts.push_back("missing " + place(missing));
    }
    for (const ChosenAlternative& choice : inventory.chosenAlternatives()) {
        facts.push_back("choice " + place(choice.orElement) + " " + place(choice.alternative) + " " +
                        std::to_string(choice.isPossible));
    }
    for (const ExtraDevice& extra : inventory.extraDevicesWithRules()) {
        facts.push_back("extra " + utf8(extra.device->guid()) + " " + place(extra.rule));
    }
    for (ScriptWalk walk(*inventory.script().RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        if (walk->kind == vocabulary::ElementKind::Device && walk->holder == walk->element) {
            const IDeviceImp* const device = inventory.deviceOf(*walk->element);
            facts.push_back("link " + place(walk->element) + " " + (device != nullptr ? utf8(device->guid()) : "-"));
        }
    }
    const RunSummary& summary = inventory.summary();
    facts.push_back(std::to_string(summary.combinations) + " " + std::to_string(summary.hasUntried) + " " +
                    std::to_string(summary.undecidedExtras.size()) + " " + std::to_string(summary.isAssignedExactly));
    for (const XmlElement* const element : summary.exactlyAssigned) {
        facts.push_back("exactly " + place(element));
    }
    return facts;
}

unsigned numberFrom(const char* variable, unsigned otherwise) {
    const char* const asked = std::getenv(variable);
    return asked != nullptr ? static_cast<unsigned>(std::atoi(asked)) : otherwise;
}

/// VRX_RANDOM_WORLDS has more worlds tried than always are, from seed VRX_RANDOM_FIRST on.
unsigned worldCount() { return numberFrom("VRX_RANDOM_WORLDS", 3000); }
unsigned firstWorld() { return numberFrom("VRX_RANDOM_FIRST", 0); }

TEST(DeducedSearchTest, findsWhatTryingAllCombinationsFinds) {
    unsigned deduced = 0;
    unsigned passed = 0;
    unsigned passedExactly = 0;
    unsigned exactly = 0;
    unsigned large = 0;
    for (unsigned seed = firstWorld(); seed < firstWorld() + worldCount(); ++seed) {
        plain::RandomWorld world(seed);
        world.addDevices(seed % 5);
        const Element script = seed % 3 == 0   ? world.script()
                               : seed % 3 == 1 ? world.scriptOfAlternatives()
                                               : world.scriptOfRivals();
        plain::Engine loop(world.machine(), false);
        plain::Engine search(world.machine(), false);
        search.inventory().setSearch(Inventory::Search::Deduced);
        const auto assignment = static_cast<Inventory::Assignment>(seed / 3 % 3);
        loop.inventory().setAssignment(assignment);
        search.inventory().setAssignment(assignment);
        loop.load(script);
        search.load(script);
        const Outcome expected = loop.run();
        ASSERT_EQ(search.run(), expected) << "seed " << seed << "\n" << script.toXml();
        ASSERT_EQ(factsOf(search.inventory()), factsOf(loop.inventory())) << "seed " << seed << "\n" << script.toXml();
        const std::uint64_t tried = loop.inventory().summary().combinationsTried;
        deduced += search.inventory().summary().combinationsTried != tried ? 1 : 0;
        passed += expected.passed && tried > 1 ? 1 : 0;
        const bool isExact = loop.inventory().summary().isAssignedExactly;
        exactly += isExact && tried > 1 ? 1 : 0;
        passedExactly += isExact && expected.passed && tried > 1 ? 1 : 0;
        large += tried > 64 ? 1 : 0;
    }
    RecordProperty("deduced", static_cast<int>(deduced));
    RecordProperty("passed", static_cast<int>(passed));
    RecordProperty("exactly", static_cast<int>(exactly));
    RecordProperty("passedExactly", static_cast<int>(passedExactly));
    RecordProperty("large", static_cast<int>(large));
    EXPECT_GT(deduced, worldCount() / 10);
    EXPECT_GT(passed, worldCount() / 100);
    EXPECT_GT(exactly, worldCount() / 50);
    EXPECT_GT(passedExactly, worldCount() / 500);
    EXPECT_GT(large, worldCount() / 100);
}

class LargeSearchTest : public testing::Test {
protected:
    void addFans(unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            const std::string number = std::to_string(i);
            addDevice(store, "Fan", "fan " + number, "fan:" + number, "");
        }
    }
    static std::string fan(unsigned number) {
        return R"(<device type="Fan" hwlocator="fan:)" + std::to_string(number) + R"("/>)";
    }
    bool run(const std::string& body) {
        inventory.setStateManager(store);
        inventory.setSearch(Inventory::Search::Deduced);
        inventory.loadInventoryScript(text("<inventory-check>" + body + "</inventory-check>"));
        return inventory.run();
    }
    std::vector<std::string> missing() const {
        std::vector<std::string> locators;
        for (const XmlElement* const element : inventory.missingElements()) {
            locators.push_back(utf8(element->Attribute(u"hwlocator")));
        }
        return locators;
    }

    StateManager store;
    Inventory inventory;
};

TEST_F(LargeSearchTest, AlternativesThatShareNoDeviceAreDecidedApart) {
    addFans(80);
    std::string alternatives;
    for (unsigned i = 0; i < 80; i += 4) {
        alternatives += "<or>" + fan(i) + fan(i + 1) + fan(i + 2) + "<and>" + fan(i + 3) + fan(i) + "</and></or>";
    }
    EXPECT_FALSE(run(alternatives + fan(99)));
    EXPECT_EQ(inventory.summary().combinations, std::uint64_t{1} << 40);
    EXPECT_FALSE(inventory.summary().hasUntried);
    EXPECT_THAT(missing(), ElementsAre("fan:99"));
    EXPECT_LT(inventory.summary().combinationsTried, 1000U);
    std::string inUse;
    for (unsigned i = 0; i < 80; i += 4) {
        inUse += fan(i) + fan(i + 1);
    }
    EXPECT_TRUE(run(alternatives + inUse));
}

TEST_F(LargeSearchTest, AChainOfSharedDevicesIsDecidedLinkByLink) {
    addFans(101);
    std::string chain;
    for (unsigned i = 0; i < 100; ++i) {
        chain += "<or>" + fan(i + 1) + fan(i) + "</or>";
    }
    EXPECT_TRUE(run(chain + fan(100)));
    EXPECT_FALSE(run(fan(50) + chain + fan(100)));
    EXPECT_THAT(inventory.missingElements(), SizeIs(1));
    EXPECT_EQ(inventory.summary().combinations, ~std::uint64_t{0});
    EXPECT_FALSE(inventory.summary().hasUntried);
}

TEST_F(LargeSearchTest, TooFewDevicesAreNoticedWithoutTryingAllThatWantThem) {
    addFans(41);
    std::string body;
    for (unsigned i = 0; i < 41; ++i) {
        body += R"(<or><device type="Fan"/>)" + fan(i * 7 % 41) + "</or>";
    }
    inventory.setAssignment(Inventory::Assignment::Auto);
    EXPECT_TRUE(run(body));
    for (const std::string& unneeded : {std::string(), "<not>" + fan(1) + fan(99) + "</not>"}) {
        EXPECT_FALSE(run(body + R"(<or><device type="Fan"/>)" + fan(0) + "</or>" + unneeded));
        EXPECT_FALSE(inventory.summary().hasUntried);
        EXPECT_THAT(inventory.missingElements(), SizeIs(1));
        EXPECT_LT(inventory.summary().combinationsTried, 20000U);
    }
}

TEST_F(LargeSearchTest, AStoppedSearchShowsTheBestCombinationThatItKnows) {
    addFans(12);
    std::string body = fan(0) + fan(0);
    for (unsigned i = 0; i < 13; ++i) {
        body += "<or>" + fan(i % 12) + fan((i + 5) % 12) + fan((i + 7) % 12) + "</or>";
    }
    std::uint64_t asked = 0;
    inventory.setProgress([&asked](const RunProgress& progress) {
        EXPECT_EQ(progress.combinations, 1594323U);
        return ++asked < 20;
    });
    EXPECT_FALSE(run(body));
    EXPECT_EQ(asked, 20U);
    EXPECT_TRUE(inventory.summary().wasStopped);
    EXPECT_TRUE(inventory.summary().hasUntried);
    EXPECT_FALSE(inventory.missingElements().isEmpty());
    inventory.setProgress({});
    EXPECT_FALSE(run(body));
    EXPECT_FALSE(inventory.summary().hasUntried);
    EXPECT_THAT(missing(), SizeIs(3));
}

}  // namespace
}  // namespace vrx::test
