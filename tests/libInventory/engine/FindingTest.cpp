#include "libInventory/Finding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libCommon/logging/Logger.h"
#include "libCommon/xml/XmlElement.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> all(const Array<String>& texts) {
    std::vector<std::string> out;
    for (const String& text : texts) {
        out.push_back(utf8(text));
    }
    return out;
}

/// "key: expected, expected / found"
std::string said(const Finding& finding) {
    std::string text = utf8(finding.key) + ":";
    for (const String& expected : finding.expected) {
        text += " " + utf8(expected);
    }
    return text + " / " + utf8(finding.found);
}

class FindingsTest : public testing::Test {
protected:
    FindingsTest() { inventory.setStateManager(store); }

    bool run(const std::string& body) {
        EXPECT_TRUE(inventory.loadInventoryScript(text("<inventory-check>" + body + "</inventory-check>")));
        return inventory.run();
    }

    /// The `n`th element of that name, in document order.
    const XmlElement& element(StringView name, int n = 0) {
        const XmlElement* const found = search(*inventory.script().RootElement(), name, n);
        EXPECT_NE(found, nullptr);
        return *found;
    }

    static const XmlElement* search(const XmlElement& in, StringView name, int& n) {
        if (in.Name() == name && n-- == 0) {
            return &in;
        }
        for (const XmlElement* child = in.FirstChildElement(); child; child = child->NextSiblingElement()) {
            if (const XmlElement* const found = search(*child, name, n)) {
                return found;
            }
        }
        return nullptr;
    }

    std::vector<FindingKind> kinds() {
        std::vector<FindingKind> kinds;
        for (const Finding& finding : inventory.findings()) {
            kinds.push_back(finding.kind);
        }
        return kinds;
    }

    /// Each candidate of the element: name, what it failed, and who holds it ("self", "other", nobody).
    std::vector<std::string> candidates(const XmlElement& of) {
        std::vector<std::string> out;
        for (const Candidate& candidate : inventory.outcomeOf(of).candidates) {
            std::string text = utf8(candidate.device->name());
            for (const Finding& failure : candidate.failures) {
                text += " [" + said(failure) + "]";
                EXPECT_EQ(failure.device, candidate.device);
            }
            text += candidate.holder == nullptr ? "" : candidate.holder == &of ? " self" : " other";
            out.push_back(text);
        }
        return out;
    }

    StateManager store;
    Inventory inventory;
};

void setValue(const boost::shared_ptr<IDeviceImp>& device, const char16_t* key, const char16_t* value) {
    device->property(key)->setValue(ValueImp(String(value)));
}

TEST_F(FindingsTest, CandidatesThatShareALocatorAreToldApart) {
    addDevice(store, "MemoryModule", "A", "DIMM", "", {{"Size", {"32 GB"}}, {"Speed", {"2666"}}});
    addDevice(store, "MemoryModule", "B", "DIMM", "", {{"Size", {"16 GB"}}, {"Speed", {"3200"}}});
    EXPECT_FALSE(
        run("<device type='MemoryModule' hwlocator='DIMM'>"
            "<property key='Size' value='^32 GB$'/><property key='Speed' value='^3200$'/></device>"));
    const XmlElement& device = element(u"device");
    EXPECT_THAT(inventory.missingElements(), ElementsAre(&device));
    EXPECT_THAT(candidates(device), ElementsAre("A [Speed: ^3200$ / 2666]", "B [Size: ^32 GB$ / 16 GB]"));
    EXPECT_FALSE(inventory.outcomeOf(device).isSatisfied);
    EXPECT_FALSE(inventory.outcomeOf(device).refusal);
}

TEST_F(FindingsTest, TheLoserOfACompetitionKnowsWhoHasTheDevice) {
    addDevice(store, "Fan", "fan", "f", "o1");
    EXPECT_FALSE(run("<and><device type='Fan'/></and><or><device type='Fan' hwlocator='f'/></or>"));
    const XmlElement& winner = element(u"device", 0);
    const XmlElement& loser = element(u"device", 1);
    EXPECT_THAT(inventory.missingElements(), ElementsAre(&loser));
    EXPECT_THAT(candidates(loser), ElementsAre("fan other"));
    EXPECT_THAT(candidates(winner), ElementsAre("fan self"));
    EXPECT_EQ(inventory.outcomeOf(loser).candidates[0].holder, &winner);
    EXPECT_TRUE(inventory.outcomeOf(winner).isSatisfied);
}

TEST_F(FindingsTest, OnlyFailuresThatMadeADifferenceAreACandidates) {
    addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}, {"y", {"1"}}});
    addDevice(store, "Fan", "b", "2", "", {{"x", {"2"}}, {"y", {"2"}}});
    addDevice(store, "Fan", "c", "3", "", {{"x", {"3"}}});
    const std::string x1 = "<property key='x' value='1'/>";
    const std::string y1 = "<property key='y' value='1'/>";
    const std::vector<std::pair<std::string, std::vector<std::string>>> table = {
        {"<or>" + x1 + y1 + "</or>", {"a", "b [x: 1 / 2] [y: 1 / 2]", "c [x: 1 / 3] [y: 1 / ]"}},
        {"<or><property key='x' value='3'/>" + y1 + "</or>", {"a", "b [x: 3 / 2] [y: 1 / 2]", "c"}},
        {"<not>" + x1 + "</not>", {"a [: / ]", "b", "c"}},
        {"<not><property key='x'/></not>", {"a [: / ]", "b [: / ]", "c [: / ]"}},
        {"<and>" + x1 + "</and><not>" + y1 + "</not>", {"a [: / ]", "b [x: 1 / 2]", "c [x: 1 / 3]"}},
        {"<or/>", {"a [: / ]", "b [: / ]", "c [: / ]"}},
        {"<not><spoke/></not>", {"a [: / ]", "b [: / ]", "c [: / ]"}},
    };
    for (const auto& [content, expected] : table) {
        run("<device type='Fan'>" + content + "</device><device type='Fan' name='nobody'/>");
        std::vector<std::string> told = candidates(element(u"device"));
        for (std::string& text : told) {
            text = text.substr(0, text.find(" self"));
        }
        EXPECT_EQ(told, expected) << content;
    }
}

TEST_F(FindingsTest, EachKindSaysWhatItIsMadeOf) {
    addDevice(store, "Fan", "fan", "f", "o", {{"Ports", {"a", "b"}}});
    struct Case {
        std::string body;
        FindingKind kind;
        std::string said;
        std::size_t texts;
    };
    const std::vector<Case> table = {
        {"<device type='Wheel'/>", FindingKind::InvalidDeviceType, ": Wheel / ", 1},
        {"<device type='Storage'/>", FindingKind::NoDeviceOfType, ": Storage / ", 1},
        {"<device type='Fan' Name='x%u0041'/>", FindingKind::NoDeviceWithName, "Name: x%u0041 / ", 1},
        {"<device type='Fan' oslocator='x'/>", FindingKind::NoDeviceWithOsLocator, "oslocator: x / ", 1},
        {"<device type='Fan' hwlocator='x'/>", FindingKind::NoDeviceWithHwLocator, "hwlocator: x / ", 1},
        {"<device type='Fan' slot='1'/>", FindingKind::InvalidAttribute, "slot: / ", 1},
        {"<device type='Fan'><property key='k' value='v'/></device>", FindingKind::PropertyMissing, "k: v / ", 1},
        {"<device type='Fan'><property key='Ports' value='v'/></device>", FindingKind::PropertyMismatch,
         "Ports: v / a, b", 3},
        {"<device type='Fan'><property key='Ports' value='v'><value value='x'/><value value='y'/></property></device>",
         FindingKind::PropertyMismatch, "Ports: x y / a, b", 3},
        {"<fail-on-extra type='a' capability='b'/><device type='Wheel'/>", FindingKind::InvalidExtraRule, ": a b / ",
         1},
        {"<not><device type='Fan'/></not>", FindingKind::UnsatisfiedNot, ": / ", 1},
        {"<part id='7'><device type='Wheel'/></part>", FindingKind::UnsatisfiedPart, ": / ", 1},
    };
    for (const auto& [body, kind, words, texts] : table) {
        EXPECT_FALSE(run(body)) << body;
        const Array<Finding> findings = inventory.findings();
        const auto at =
            std::find_if(findings.begin(), findings.end(), [k = kind](const Finding& one) { return one.kind == k; });
        ASSERT_NE(at, findings.end()) << body;
        EXPECT_EQ(said(*at), words) << body;
        EXPECT_EQ(at->texts.size(), texts) << body;
        EXPECT_EQ(at->device != nullptr, kind == FindingKind::PropertyMissing || kind == FindingKind::PropertyMismatch);
    }
    EXPECT_EQ(all(inventory.findings()[1].texts), std::vector<std::string>{"Invalid device type: Wheel Please refer "
                                                                           "to Valid Device Types in Documentation"});
    EXPECT_EQ(inventory.findings()[1].part, &element(u"part"));
    EXPECT_EQ(inventory.outcomeOf(element(u"device")).refusal->kind, FindingKind::InvalidDeviceType);
}

TEST_F(FindingsTest, SpeakOfTheBestCombinationNotTheLast) {
    addDevice(store, "Fan", "a", "1");
    addDevice(store, "Fan", "b", "2");
    // The second of three alternatives fails on nothing but x; the others compete for the first fan as well.
    const std::string rival = "<and><device type='Fan' hwlocator='1'/><device type='Fan' hwlocator='1'/></and>";
    EXPECT_FALSE(run("<device type='Fan' hwlocator='1'/><device type='Fan' name='x'/><or>" + rival +
                     "<device type='Fan'/>" + rival + "</or>"));
    EXPECT_EQ(inventory.summary().combinationsTried, 3U);
    EXPECT_EQ(inventory.summary().combinations, 3U);
    EXPECT_THAT(inventory.missingElements(), ElementsAre(&element(u"device", 1)));
    ASSERT_EQ(inventory.chosenAlternatives().size(), 1U);
    EXPECT_EQ(inventory.chosenAlternatives()[0].alternative, &element(u"device", 4));
    EXPECT_TRUE(inventory.chosenAlternatives()[0].isPossible);
    EXPECT_THAT(candidates(element(u"device", 4)), ElementsAre("a other", "b self"));
    EXPECT_THAT(kinds(), ElementsAre(FindingKind::UnsatisfiedDevice, FindingKind::NoDeviceWithName));
}

TEST_F(FindingsTest, ExtraDevicesComeWithTheirRule) {
    addDevice(store, "Fan", "fan", "f");
    const auto disk = addDevice(store, "Storage", "disk", "d");
    EXPECT_FALSE(run("<fail-on-extra type='Processor'/><fail-on-extra type='Storage'/><device type='Fan'/>"));
    ASSERT_EQ(inventory.extraDevicesWithRules().size(), 1U);
    EXPECT_EQ(inventory.extraDevicesWithRules()[0].device, disk);
    EXPECT_EQ(inventory.extraDevicesWithRules()[0].rule, &element(u"fail-on-extra", 1));
    const Array<Finding> findings = inventory.findings();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].kind, FindingKind::ExtraDevice);
    EXPECT_EQ(findings[0].device, disk);
    EXPECT_EQ(findings[0].rule, &element(u"fail-on-extra", 1));
    EXPECT_TRUE(run("<device type='Fan'/>"));
    EXPECT_TRUE(inventory.findings().isEmpty());
    EXPECT_TRUE(inventory.missingElements().isEmpty());
    EXPECT_TRUE(inventory.extraDevicesWithRules().isEmpty());
}

TEST_F(FindingsTest, AHostSeesHowFarARunIsAndCanStopIt) {
    addDevice(store, "Fan", "a", "1");
    std::string ors;
    for (int i = 0; i < 64; ++i) {
        ors += "<or><device type='Fan'/><device type='Fan'/><testset/></or>";
    }
    std::vector<std::uint64_t> seen;
    inventory.setProgress([&seen](const RunProgress& progress) {
        seen.push_back(progress.combination);
        EXPECT_EQ(progress.combinations, 0xFFFFFFFFFFFFFFFFU);
        return progress.combination < 3;
    });
    EXPECT_FALSE(run(ors + "<device type='Storage'/>"));
    EXPECT_THAT(seen, ElementsAre(1U, 2U, 3U));
    EXPECT_TRUE(inventory.summary().wasStopped);
    EXPECT_EQ(inventory.summary().combinationsTried, 2U);
    EXPECT_EQ(inventory.missingElements().back(), &element(u"device", 128));
}

TEST_F(FindingsTest, MistakesInTheScriptAreNotices) {
    addDevice(store, "Fan", "a", "1");
    addDevice(store, "Fan", "b", "2");
    EXPECT_TRUE(run("<wheel/><not><not><device type='Fan'/></not></not><device type='Fan'><spoke/></device>"));
    const Array<Finding> notices = inventory.notices();
    ASSERT_EQ(notices.size(), 3U);
    EXPECT_EQ(notices[0].element, &element(u"wheel"));
    EXPECT_EQ(notices[1].kind, FindingKind::NotUnderNot);
    EXPECT_EQ(notices[2].element, &element(u"spoke"));
}

TEST_F(FindingsTest, QuoteTheValuesOfTheirRun) {
    const auto a = addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}});
    const std::string script = "<device type='Fan'><property key='x' value='2'/></device>";
    EXPECT_FALSE(run(script));
    setValue(a, u"x", u"7");
    EXPECT_THAT(candidates(element(u"device")), ElementsAre("a [x: 2 / 1]"));
    EXPECT_EQ(said(inventory.findings()[1]), "x: 2 / 1");

    EXPECT_FALSE(inventory.run());
    const Array<Finding> findings = inventory.findings();
    std::vector<std::string> texts;
    for (const Finding& finding : findings) {
        for (const std::string& one : all(finding.texts)) {
            texts.push_back(one);
        }
    }
    // The tips of the first run come first, as they were; the second run reads its `error` elements as entries.
    EXPECT_THAT(texts, ElementsAre("Unsatisfied device of type: Fan", "1 - x", " Expected (regular expression): 2",
                                   " did not match sysinfo value  : 1", "1 - x",
                                   " Expected (regular expression): 2, , ", " did not match sysinfo value  : 7"));
    EXPECT_EQ(candidates(element(u"device")).size(), 1U);
}

TEST_F(FindingsTest, QuoteTheValuesOfTheirRunAlsoWhereNothingWasWritten) {
    const auto a = addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}});
    addDevice(store, "Fan", "b", "2", "", {{"x", {"2"}}});
    for (const char* const rest : {"<device type='Storage'/>", ""}) {
        setValue(a, u"x", u"1");
        EXPECT_EQ(run("<device type='Fan'><property key='x' value='2'/></device>" + std::string(rest)), *rest == '\0');
        setValue(a, u"x", u"7");
        setValue(a, u"x", u"8");
        EXPECT_THAT(candidates(element(u"device")), ElementsAre("a [x: 2 / 1]", "b self"));
    }
}

TEST_F(FindingsTest, OfARunThatPassedKeepTheirValuesInTheTipsOfALaterOne) {
    const auto a = addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}});
    const auto b = addDevice(store, "Fan", "b", "2", "", {{"x", {"2"}}});
    EXPECT_TRUE(run("<or><device type='Fan'><property key='x' value='2'/></device></or>"));
    setValue(a, u"x", u"7");
    setValue(b, u"x", u"8");
    EXPECT_FALSE(inventory.run());
    std::string found;
    for (const Finding& finding : inventory.findings()) {
        found += finding.found.isEmpty() ? "" : utf8(finding.found) + " ";
    }
    EXPECT_EQ(found, "1 7 8 ");
}

TEST_F(FindingsTest, ARunAgainStillHasTheLinksOfTheFirst) {
    const auto a = addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}});
    for (const LogPriority priority : {LogPriority::Warning, LogPriority::Debug}) {
        Logger::setRootPriority(priority);
        setValue(a, u"x", u"1");
        EXPECT_TRUE(run("<fail-on-extra type='Fan'/><device type='Fan'><property key='x' value='1'/></device>"));
        setValue(a, u"x", u"2");
        EXPECT_TRUE(inventory.run()) << "the first run's link is in the base set until the next load";
        EXPECT_TRUE(inventory.extraDevices().isEmpty());
    }
    Logger::setRootPriority(LogPriority::Warning);
}

TEST_F(FindingsTest, WhatAnObserverChangesCountsFromThenOnForEqualElementsToo) {
    struct Changer : RecordingObserver {
        void handleEvent(const TestRunEventImp&) override {
            for (const auto& device : devices) {
                setValue(device, u"x", u"2");
            }
        }
        std::vector<boost::shared_ptr<IDeviceImp>> devices;
    } changer;
    changer.devices = {addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}}),
                       addDevice(store, "Fan", "b", "2", "", {{"x", {"1"}}})};
    inventory.registerInventoryObserver(changer);
    const std::string fan = "<device type='Fan'><property key='x' value='1'/></device>";
    EXPECT_TRUE(run(fan + fan));
    EXPECT_FALSE(run(fan + "<wheel/>" + fan));
}

/// Adds devices and registers observers while it is told.
class Meddler : public RecordingObserver {
public:
    Meddler(Inventory& inventory, StateManager& store) : m_inventory(inventory), m_store(store) {}
    void handleEvent(const TestRunEventImp& event) override {
        RecordingObserver::handleEvent(event);
        for (int i = 0; i < 100; ++i) {
            addDevice(m_store, "Fan", "late", "late" + std::to_string(i));
            m_inventory.registerInventoryObserver(m_other);
        }
    }
    std::size_t heardByOthers() const { return m_other.events.size(); }

private:
    Inventory& m_inventory;
    StateManager& m_store;
    RecordingObserver m_other;
};

TEST_F(FindingsTest, AnObserverMayAddDevicesAndObserversWhileItIsTold) {
    addDevice(store, "Fan", "a", "1");
    addDevice(store, "Fan", "b", "2");
    Meddler meddler(inventory, store);
    inventory.registerInventoryObserver(meddler);
    EXPECT_TRUE(run("<device type='Fan'><spoke/></device>"));
    EXPECT_THAT(candidates(element(u"device")), ElementsAre("a self", "b")) << "what was there when the trying began";
    EXPECT_EQ(meddler.events.size(), 1U);
    EXPECT_EQ(meddler.heardByOthers(), 0U);
}

struct HastyObserver : RecordingObserver {
    bool readsAnnotatedScript() const override { return false; }
};

TEST_F(FindingsTest, TheAnnotatedScriptIsWrittenForWhoReadsIt) {
    HastyObserver hasty;
    RecordingObserver reader;
    inventory.registerInventoryObserver(hasty);
    EXPECT_FALSE(run("<device type='Fan'/>"));
    inventory.registerInventoryObserver(reader);
    EXPECT_FALSE(run("<device type='Fan'/>"));
    ASSERT_EQ(hasty.events.size(), 2U);
    ASSERT_EQ(reader.events.size(), 1U);
    EXPECT_EQ(hasty.events[0].tips().size(), 0U);
    EXPECT_EQ(reader.events[0].tips().size(), 1U);
}

TEST_F(FindingsTest, OfOneDevice) {
    const auto fan = addDevice(store, "Fan", "a", "1", "", {{"x", {"1"}}, {"y", {"2"}}});
    Inventory engine;
    EXPECT_FALSE(Inventory::checkDevice(*fan, u"<property key='x' value='2'/><property key='y' value='2'/>", nullptr,
                                        true, engine));
    const Array<Finding> findings = engine.findings();
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(said(findings[0]), "x: 2 / 1");
    EXPECT_EQ(findings[1].kind, FindingKind::PropertyMatched);
    EXPECT_EQ(said(findings[1]), "y: 2 / 2");
    EXPECT_EQ(all(findings[1].texts), (std::vector<std::string>{"1 - y\n", "Found value: 2"}));
}

struct WarningCounter : LogSink {
    WarningCounter() { Logger::addSink(*this); }
    ~WarningCounter() override { Logger::removeSink(*this); }
    void writeLine(const std::string&, LogPriority priority, StringView) override {
        count += priority == LogPriority::Warning ? 1 : 0;
    }
    int count = 0;
};

TEST_F(FindingsTest, ATypeThatCannotStandInAScriptIsToldOf) {
    EXPECT_TRUE(CapabilityImp::define(u"Fan \"&\"", u"Fan"));
    const auto odd = addDevice(store, "Fan \"&\"", "odd", "1", "", {{"x", {"1"}}});
    EXPECT_FALSE(Inventory::canCheckDevice(*odd));
    EXPECT_TRUE(Inventory::canCheckDevice(*addDevice(store, "Storage", "disk", "2")));
    EXPECT_FALSE(Inventory::checkDevice(*odd, u"<property key='x'/>", nullptr, false));
    const std::string rule = "<fail-on-extra type='Fan'><property key='x'/></fail-on-extra>";
    EXPECT_TRUE(run(rule));
    EXPECT_THAT(inventory.summary().undecidedExtras, ElementsAre(odd));
    // The constraints are asked of a device that is not extra as well; the log tells that they could not be.
    WarningCounter warnings;
    EXPECT_TRUE(run(rule + "<device type='Fan'/>"));
    EXPECT_EQ(warnings.count, 1);
    EXPECT_TRUE(inventory.summary().undecidedExtras.isEmpty());
}

}  // namespace
}  // namespace vrx::test
