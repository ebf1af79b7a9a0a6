/// A golden script passes on every machine that it was made of, and fails where a part that all have is another one:
/// for random sisters, whatever they differ in. What is decided on single values.

#include "libGolden/GoldenScript.h"

#include <gtest/gtest.h>

#include <random>

#include "libGolden/DecisionText.h"
#include "libGolden/Outliers.h"
#include "libLint/Lint.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

struct Part {
    std::string type;
    std::string name;
    std::string place;
    Properties properties;
};
using Parts = std::vector<Part>;

class Sisters {
public:
    explicit Sisters(const std::vector<Parts>& machines) {
        for (std::size_t i = 0; i < machines.size(); ++i) {
            m_stores.push_back(std::make_unique<StateManager>());
            for (const Part& part : machines[i]) {
                addDevice(*m_stores[i], part.type, part.name, part.place, "", part.properties);
            }
            m_machines.push_back({m_stores[i].get(), "m" + std::to_string(i)});
        }
    }

    GoldenDraft draft(const GoldenOptions& options = GoldenOptions()) const { return goldenDraft(m_machines, options); }
    StateManager& store(std::size_t i) { return *m_stores[i]; }
    const GoldenMachine& machine(std::size_t i) const { return m_machines[i]; }
    std::size_t size() const { return m_stores.size(); }

private:
    std::vector<std::unique_ptr<StateManager>> m_stores;
    std::vector<GoldenMachine> m_machines;
};

bool passes(const String& script, StateManager& store) {
    Inventory inventory;
    inventory.setStateManager(store);
    return inventory.loadInventoryScript(script) && inventory.run(nullptr);
}

/// Parts of all sorts; `random` decides what a sister has of its own.
Parts sister(std::mt19937& random) {
    const auto chance = [&random](unsigned percent) {
        return random() % 100 < percent;
    };
    const auto serial = [&random] {
        return std::to_string(1000000 + random() % 9000000);
    };
    Parts parts{{"System", "Box (R)|1", "system", {{"Model", {"B|1"}}, {"SerialNumber", {serial()}}}},
                {"BIOS", "BIOS", "bios", {{"FirmwareVersion", {chance(30) ? "2.1" : "2.2"}}}}};
    for (int cpu = 0; cpu < 2; ++cpu) {
        parts.push_back(
            {"Processor",
             "X9",
             "cpu:" + std::to_string(cpu),
             {{"Clock", {std::to_string(2900 + random() % 20) + " MHz"}},
              {"Modes", chance(20) ? std::vector<std::string>{"a", "b", "c"} : std::vector<std::string>{"b", "a"}},
              {"Cores", {chance(20) ? "16" : "8"}}}});
    }
    for (int module = 0; module < 4; ++module) {
        const int slot = module + (chance(20) ? 4 : 0);
        if (chance(90)) {
            parts.push_back({"MemoryModule",
                             chance(80) ? "Flint 16" : "Heron 16",
                             "dimm:" + std::to_string(slot),
                             {{"Size", {chance(90) ? "16 GB" : "32 GB"}},
                              {"Slot", {"DIMM " + std::to_string(slot)}},
                              {"SerialNumber", {serial()}}}});
        }
    }
    for (int fan = 0; fan < 2; ++fan) {
        parts.push_back({"Fan", "Fan", "", {{"Size", {"80 mm"}}}});
    }
    return parts;
}

TEST(GoldenScriptTest, randomSistersPassAndAWrongPartFails) {
    std::size_t wrongParts = 0;
    for (unsigned seed = 0; seed < 50 && !testing::Test::HasFailure(); ++seed) {
        std::mt19937 random(seed);
        std::vector<Parts> machines(1 + random() % 6);
        std::ranges::generate(machines, [&random] { return sister(random); });
        Sisters sisters(machines);
        const GoldenDraft draft = sisters.draft({.failsOnExtra = seed % 2 == 0});
        for (const auto optional : {GoldenForm::Optional::Comments, GoldenForm::Optional::Alternatives}) {
            const String script = goldenScript(draft, {seed % 3 != 0, optional});
            Lint lint;
            ASSERT_EQ(lint.run(script.toUtf8()), Lint::Result::Done);
            for (const LintFinding& finding : lint.findings().list()) {
                EXPECT_EQ(finding.severity, Severity::Note) << finding.message() << "\n" << utf8(script);
            }
            for (std::size_t i = 0; i < sisters.size(); ++i) {
                EXPECT_TRUE(passes(script, sisters.store(i))) << "seed " << seed << " machine " << i << "\n"
                                                              << utf8(script);
            }
            Parts changed = machines[0];
            Part& part = changed[random() % 4];  // what every machine has at its place
            part.properties[0].second = {"quite another"};
            Sisters wrong({changed});
            EXPECT_FALSE(passes(script, wrong.store(0))) << "seed " << seed << "\n" << utf8(script);
            ++wrongParts;
        }
    }
    EXPECT_EQ(wrongParts, 100U);
}

/// Of the one device of the machines whose property "What" has these values; an empty one is not there.
std::string decided(const std::vector<std::string>& values, const std::string& key = "What",
                    GoldenOptions options = {}) {
    std::vector<Parts> machines;
    for (const std::string& value : values) {
        machines.push_back({{"Fan", "Fan", "fan:1", value.empty() ? Properties() : Properties{{key, {value}}}}});
    }
    const Sisters sisters(machines);
    const GoldenDraft draft = sisters.draft(options);
    const GoldenDecision& last = draft.devices.at(0).decisions.back();
    const std::string script = utf8(goldenScript(draft, {false, GoldenForm::Optional::Comments}));
    const std::size_t at = script.find("value=\"");
    return last.isAsked() ? script.substr(at + 7, script.find('"', at + 7) - at - 7)
                          : std::string(reasonText(last.reason));
}

TEST(GoldenScriptTest, whatIsAskedForHangsOnTheValues) {
    EXPECT_EQ(decided({"a.b|c", "a.b|c"}), "^a\\.b\\|c$");
    EXPECT_EQ(decided({"2900 MHz", "2901.5 MHz", "2890 MHz"}), "^VRXRRANGE[2890-2901.5] MHz$");
    EXPECT_EQ(decided({"-5", "-5.1"}), "^VRXRRANGE[-5.1--5]$");
    EXPECT_EQ(decided({"8 GB", "16 GB"}), "^(8 GB|16 GB)$");
    EXPECT_EQ(decided({"100 GB", "100 GiB"}), "^(100 GB|100 GiB)$");  // equal, but no range has one number
    EXPECT_EQ(decided({"8 GB", "16 GB", "8 GB"}, "What", {.mostSpread = 50}), "^VRXRRANGE[8-16] GB$");
    EXPECT_EQ(decided({"100", "101"}, "FirmwareVersion"), "^(100|101)$");  // digits that are no amount
    EXPECT_EQ(decided({"red", "blue", "red"}), "^(red|blue)$");
    EXPECT_EQ(decided({"red blue", "red", "red blue"}), "^(red blue|red)$");
    EXPECT_EQ(decided({"red", "blue", "green"}), "every machine has another");
    EXPECT_EQ(decided({"v1", "v2", "v3"}, "Version"), "^(v1|v2|v3)$");
    EXPECT_EQ(decided({"1", "2", "4", "8", "16"}), "too different");
    EXPECT_EQ(decided({"same", "same"}, "SerialNumber"), "each piece has its own");
    EXPECT_EQ(decided({"x"}, "ChassisAssetTag"), "each piece has its own");
    EXPECT_EQ(decided({"A1", "A2"}, "Slot"), "places vary");
    EXPECT_EQ(decided({"36 degC", "36 degC"}, "Temperature"), "changes by itself or belongs to the software");
    EXPECT_EQ(decided({"36 degC", "36 degC"}, "Temperature", {.hasAllCategories = true}), "^36 degC$");
    EXPECT_EQ(decided({"red", ""}), "not on all");
    const std::string longText(20000, 'x');
    EXPECT_EQ(decided({longText, longText}), "^" + longText + "$");
    EXPECT_EQ(decided({longText, longText + "y"}), "too different");
}

/// Lint, and whoever reads the script, must not take a text for a range.
TEST(GoldenScriptTest, textsThatLookLikePatternsAreTexts) {
    const std::vector<std::string> texts{
        "VRXRRANGE[1-5]", "VRXRANGE[1-5]", "range[2-3]", "Orange", "VRXRRANGE", "",     " =1",
        ">= 16",          "a[b]|*(c)$",    "--> <!--",   "\\E\\Q", "\\x{41}",   "1e400"};
    for (const std::string& text : texts) {
        Sisters sisters({{{"Fan", text, "fan:1", {{"What", {text}}}}},
                         {{"Fan", text, "fan:1", {{"What", {text + "z"}}}}},
                         {{"Fan", text, "fan:1", {{"What", {text}}}}},
                         {{"Fan", text, "fan:1", {{"What", {"3"}}}}},
                         {{"Fan", text + "y", "fan:1", {{"What", {text}}}}}});
        const GoldenDraft draft = goldenDraft({sisters.machine(0), sisters.machine(1), sisters.machine(2)}, {});
        const String script = goldenScript(draft, GoldenForm());
        Lint lint;
        ASSERT_EQ(lint.run(script.toUtf8()), Lint::Result::Done);
        EXPECT_TRUE(lint.findings().list().empty()) << text << "\n" << utf8(script);
        for (std::size_t i = 0; i < sisters.size(); ++i) {
            EXPECT_EQ(passes(script, sisters.store(i)), i < 3) << text << " on " << i;
        }
    }
}

TEST(GoldenScriptTest, devicesArePairedByPlaceThenByWhatTheyAre) {
    const auto module = [](const std::string& place, const std::string& size) {
        return Part{"MemoryModule", "Flint", place, {{"Size", {size}}, {"SerialNumber", {place + size}}}};
    };
    const Sisters sisters({{module("dimm:1", "16 GB"), module("dimm:2", "8 GB")},
                           {module("dimm:3", "8 GB"), module("dimm:1", "16 GB")},
                           {module("dimm:4", "8 GB"), module("dimm:1", "16 GB"), module("dimm:2", "32 GB")}});
    const GoldenDraft draft = sisters.draft();
    ASSERT_EQ(draft.devices.size(), 3U);
    EXPECT_EQ(utf8(goldenScript(draft, {false, GoldenForm::Optional::Comments})),
              "<inventory-check>\n"
              "    <device type=\"MemoryModule\" name=\"^Flint$\" hwlocator=\"dimm:1\">\n"
              "        <property key=\"Size\" value=\"^16 GB$\"/>\n"
              "    </device>\n"
              "</inventory-check>\n");
}

TEST(GoldenScriptTest, oneOfManyThatDiffersIsAnOutlier) {
    std::vector<Parts> machines(
        5, Parts{{"BIOS", "BIOS", "bios", {{"FirmwareVersion", {"2"}}}}, {"Fan", "Fan", "fan:1", {}}});
    machines[3][0].properties[0].second = {"1"};
    machines[3].pop_back();
    const Sisters sisters(machines);
    const GoldenDraft draft = sisters.draft();
    const std::vector<Outlier> outliers = outliersOf(draft);
    ASSERT_EQ(outliers.size(), 1U);
    EXPECT_EQ(outliers[0].machine, 3U);
    EXPECT_EQ(deviationTexts(draft, outliers[0]),
              (std::vector<std::string>{"BIOS \"BIOS\" (bios): FirmwareVersion is 1, most have 2",
                                        "Fan \"Fan\" (fan:1) is missing"}));
    EXPECT_TRUE(outliersOf(goldenDraft({sisters.machine(2), sisters.machine(3)}, {})).empty());
}

TEST(GoldenScriptTest, whatARecordingCannotTellIsNotAskedFor) {
    Sisters sisters({{{"Fan", "Fan", "fan:1", {{"Size", {"80 mm"}}}}},
                     {{"Fan", "Fan", "fan:1", {}}},
                     {{"System", "Box", "system", {}}}});
    sisters.store(1).addUnread({u"fans", CapabilityImp(u"Fan"), u"needs root", {u"Size"}});
    sisters.store(2).addUnread({u"fans", CapabilityImp(u"Fan"), u"needs root", {}});
    const GoldenDraft draft = sisters.draft();
    EXPECT_EQ(draft.devices.at(0).presence, GoldenDevice::Presence::Unread);
    EXPECT_EQ(draft.devices.at(0).decisions.back().reason, GoldenDecision::Reason::Unread);
    EXPECT_EQ(optionalProblem(draft), OptionalProblem::None);  // with the system, and without
}

}  // namespace
}  // namespace vrx::test
