#include <gtest/gtest.h>

#include "libCommon/logging/Logger.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using PartSpec = Inventory::PartSpec;

/// Keeps lines of the engine that begin with a text, without their source line numbers.
class LineCollector final : public LogSink {
public:
    LineCollector(LogPriority level, std::string beginning) : m_beginning(std::move(beginning)) {
        Logger::setRootPriority(level);
        Logger::addSink(*this);
    }
    ~LineCollector() override {
        Logger::removeSink(*this);
        Logger::setRootPriority(LogPriority::Warning);
    }
    void writeLine(const std::string&, LogPriority priority, StringView message) override {
        const std::string line = toUtf8(message.substr(message.find(u' ') + 1));
        if (line.starts_with(m_beginning)) {
            lines += std::to_string(static_cast<int>(priority)) + " " + line + "\n";
        }
    }
    std::string lines;

private:
    std::string m_beginning;
};

class PartsGenerationTest : public testing::Test {
protected:
    void addPart(const String& name, const String& content) {
        parts.emplace(name, u"id-" + name, u"", u"",
                      concat(u"<part name='", name, u"' id='id-", name, u"'>", content, u"</part>"));
    }

    /// Whether generation succeeded, then "name(guids)" of each generated part.
    std::string generate(const String& base = u"") {
        const bool generated =
            Inventory::generatePartsList(parts, base, found, deviceToParts, groups, extraDevices, &store);
        return std::string(generated ? "yes" : "no") + textOf(found);
    }

    static std::string textOf(const Array<PartSpec>& specs) {
        std::string all;
        for (const PartSpec& spec : specs) {
            all += " " + utf8(spec.name) + "(";
            for (const String& guid : spec.devices) {
                all += utf8(guid);
            }
            all += ")";
        }
        return all;
    }

    static String fan(const String& name) { return concat(u"<device type='Fan' name='", name, u"'/>"); }

    StateManager store;
    Array<PartSpec> parts;
    Array<PartSpec> found;
    Inventory::DeviceToPartsTable deviceToParts;
    Array<Array<PartSpec>> groups;
    Array<Inventory::DeviceSpec> extraDevices;
};

TEST_F(PartsGenerationTest, countsEveryInstanceAndLeavesAbsentPartsOut) {
    for (const char* locator : {"1", "2", "3", "4", "5"}) {
        addDevice(store, "Fan", "fan", locator);
    }
    addDevice(store, "Battery", "battery", "b");
    addPart(u"pair", fan(u"fan") + fan(u"fan"));
    addPart(u"absent", u"<device type='Cache'/>");
    addPart(u"cell", u"<device type='Battery'/>");
    const LineCollector log(LogPriority::Debug, "checkPart");
    EXPECT_EQ(generate(), "yes pair(1|2|) pair(3|4|) cell(b|)");
    EXPECT_EQ(
        log.lines,
        "1 checkPart : pair iterations: 3\n1 checkPart : absent iterations: 1\n1 checkPart : cell iterations: 2\n");
    EXPECT_EQ(utf8((*deviceToParts.find(u"b|"))[0].id), "id-cell");
    EXPECT_EQ(deviceToParts.find(u"5|"), nullptr);
}

TEST_F(PartsGenerationTest, partsThatNeedNoDeviceStopAndHaveNoInstance) {
    for (int i = 0; i < 20; ++i) {
        addDevice(store, "Fan", "fan", std::to_string(i));
    }
    addPart(u"free", u"<not><device type='Cache'/></not>");
    addPart(u"half", u"<not><device type='Fan'/><device type='Cache'/></not>");
    const LineCollector log(LogPriority::Warning, "checkPart");
    EXPECT_EQ(generate(), "yes");
    EXPECT_EQ(log.lines,
              "3 checkPart : free needs no device of the machine, so it has no instance\n"
              "3 checkPart : half needs no device of the machine, so it has no instance\n");
}

TEST_F(PartsGenerationTest, theClearlyBestPartWinsAndTheOthersAreDiscarded) {
    for (const char* locator : {"1", "2", "3"}) {
        addDevice(store, "Fan", "fan", locator);
    }
    addDevice(store, "Battery", "battery", "4");
    const String fans = fan(u"fan") + fan(u"fan") + fan(u"fan");
    addPart(u"small", fans);
    addPart(u"large", fans + u"<device type='Battery'/>");
    groups.append(Array<PartSpec>{parts[0]});
    EXPECT_EQ(generate(), "yes large(1|2|3|4|)");
    EXPECT_TRUE(groups.isEmpty());
}

TEST_F(PartsGenerationTest, aTieIsRecordedOnceAndNothingIsDiscarded) {
    addDevice(store, "Fan", "fan", "1");
    addDevice(store, "Fan", "fan", "2");
    addPart(u"A", u"<device type='Fan'/>");
    addPart(u"B", fan(u"fan"));
    EXPECT_EQ(generate(), "no");
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(textOf(groups[0]), " A(1|) B(1|)");
}

TEST_F(PartsGenerationTest, oneCopyIsDiscardedForEachEntryOfTheDiscardList) {
    // Two copies of "one" compete with "two", which holds both of their devices, so each copy is an entry of its own.
    addDevice(store, "Fan", "fan", "1");
    addDevice(store, "Fan", "fan", "2");
    addDevice(store, "Battery", "battery", "b");
    addPart(u"one", fan(u"fan"));
    addPart(u"two", fan(u"fan") + fan(u"fan") + u"<device type='Battery'/>");
    const LineCollector log(LogPriority::Debug, "2nd Try");
    EXPECT_EQ(generate(), "no");
    EXPECT_EQ(log.lines, "1 2nd Try Discarding part name: one xml: " + utf8(parts[0].xml) + "\n");
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(textOf(groups[0]), " one(1|) two(1|2|b|)");
}

TEST_F(PartsGenerationTest, everyCopyOfAnAmbiguousPartHasItsLines) {
    addDevice(store, "Fan", "fan", "1");
    addDevice(store, "Fan", "fan", "2");
    addDevice(store, "Battery", "battery", "b");
    addPart(u"one", fan(u"fan"));
    addPart(u"two", fan(u"fan") + fan(u"fan") + u"<device type='Battery'/>");
    const LineCollector log(LogPriority::Debug, " ");
    EXPECT_EQ(generate(), "no");
    const std::string names = "1  matching ambiguous name: one\n1  matching ambiguous name: two\n";
    const std::string best = "1  Least ambiguous (best match) part: two matched: 3 devices\n";
    const std::string first = names + best + "1  part to discard: one\n";
    const std::string ofThreeParts = first + names + best + names + best;
    EXPECT_NE(log.lines.find(ofThreeParts), std::string::npos) << log.lines;
}

TEST_F(PartsGenerationTest, failsWithoutGroupsWhenTheBaseScriptIsNotMet) {
    addDevice(store, "Fan", "fan", "1");
    addPart(u"A", u"<device type='Fan'/>");
    const LineCollector log(LogPriority::Debug, "findAmbiguousParts() ");
    EXPECT_EQ(generate(u"<device type='Cache'/>"), "no");
    EXPECT_TRUE(groups.isEmpty());
    parts.clear();
    EXPECT_EQ(generate(u"<device type='Cache'/>"), "no");
    EXPECT_NE(log.lines.find("4 findAmbiguousParts() Parts check failed. Unknown Logic error"), std::string::npos);
}

TEST_F(PartsGenerationTest, reportsOfTheFourResults) {
    addDevice(store, "Fan", "fan", "1");
    addDevice(store, "Fan", "other", "2");
    addPart(u"A", fan(u"fan"));
    const auto report = [this](const String& base) {
        return utf8(Inventory::generatePartsListXml(parts, base, &store).toString());
    };
    const std::string device = R"(<device type="Fan" name="fan" hwlocator="1" oslocator=""/>)";
    const std::string partA = R"(<part id="id-A" name="A" description="">)" + device + "</part>";
    EXPECT_EQ(report(u""), R"(<part-generation-report result="Passed">)" + partA + "</part-generation-report>");
    EXPECT_EQ(report(u"<fail-on-extra type='Fan'/>"),
              R"(<part-generation-report result="Passed with extra devices">)" + partA +
                  R"(<extra-devices><device type="Fan" name="other" hwlocator="2" oslocator=""/></extra-devices>)"
                  "</part-generation-report>");
    EXPECT_EQ(report(u"<device type='Cache'/>"), R"(<part-generation-report result="Failed"/>)");
    addPart(u"B", fan(u"fan"));
    EXPECT_EQ(report(u""), R"(<part-generation-report result="Failed: ambiguous parts"><ambigous-parts-group>)" +
                               partA + R"(<part id="id-B" name="B" description="">)" + device +
                               "</part></ambigous-parts-group></part-generation-report>");

    XmlDocument document;
    const TestResultImp result = Inventory::generatePartsListDataAndXml(parts, u"", found, deviceToParts, groups,
                                                                        extraDevices, document, &store);
    EXPECT_EQ(result.code(), TestResultImp::FailedAmbiguousParts);
    EXPECT_EQ(groups.size(), 1U);
}

}  // namespace
}  // namespace vrx::test
