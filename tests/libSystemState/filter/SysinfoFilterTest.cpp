#include "libSystemState/filter/SysinfoFilter.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "libCommon/text/NumberText.h"
#include "tests/libSystemState/TestDevices.h"

namespace vrx {
namespace {

using test::keysOf;
using test::makeDevice;
using test::makeProperty;

class SysinfoFilterTest : public testing::Test {
protected:
    ~SysinfoFilterTest() override { std::remove(m_path.c_str()); }

    SysinfoFilter::PARSE_RET load(const std::string& xml) {
        std::ofstream(m_path, std::ios::binary) << xml;
        return m_filter.loadFile(String::UTF8Decode(m_path));
    }
    SysinfoFilter::PARSE_RET loadRules(const std::string& rules) {
        return load("<system-information-filter>" + rules + "</system-information-filter>");
    }

    /// The selected keys in order; "-" when the device is not included.
    std::string selected(StringView type, std::initializer_list<const char16_t*> keys) {
        const auto device = makeDevice(type);
        for (const char16_t* key : keys) {
            device->addProperty(makeProperty(key, u""));
        }
        Array<boost::shared_ptr<IPropertyImp>> properties = {makeProperty(u"stale", u"")};
        return m_filter.includeDevice(*device, properties) ? keysOf(properties) : "-";
    }

    /// The tolerance; -1 when there is none.
    double tolerance(StringView type, const String& key) {
        double percent = -1;
        return m_filter.inventoryTolerance(CapabilityImp(type), key, percent) ? percent : -1;
    }

    SysinfoFilter m_filter;
    std::string m_path = testing::TempDir() + "vrx-filter-" + std::to_string(getpid()) + ".xml";
};

TEST_F(SysinfoFilterTest, letsTheFirstFittingRuleDecide) {
    ASSERT_EQ(loadRules(R"(<Device type="Generic"/><comment/>
        <device type="ssd" extra="1"><property key="Model"/><property key="Size" tolerance=" 1.5 "/><other key="x"/></device>
        <device type="Storage"/>
        <device type="SSD"><property key="Model" tolerance="9"/></device>
        <device type="Network"><property/></device>)"),
              SysinfoFilter::PARSE_SUCCESS);
    EXPECT_EQ(m_filter.errorText(), u"");
    EXPECT_EQ(selected(u"SolidStateDrive", {u"x", u"Size", u"model", u"Model", u"Size"}), "Size Model Size");
    EXPECT_EQ(selected(u"SolidStateDrive", {}), "");
    EXPECT_EQ(selected(u"HDD", {u"b", u"a"}), "b a");
    EXPECT_EQ(selected(u"WiFi", {u"b", u"a"}), "");
    EXPECT_EQ(selected(u"Generic", {u"a"}), "-");
    EXPECT_EQ(selected(u"nonsense", {u"a"}), "-");

    EXPECT_EQ(tolerance(u"SSD", u"Size"), 1.5);
    EXPECT_EQ(tolerance(u"SSD", u"Model"), -1);
    EXPECT_EQ(tolerance(u"SSD", u"size"), -1);
    EXPECT_EQ(tolerance(u"HDD", u"Size"), -1);
    EXPECT_EQ(tolerance(u"Fan", u"Size"), -1);
}

TEST_F(SysinfoFilterTest, decidesForEverySetOfTypesAnew) {
    ASSERT_EQ(loadRules(R"(<device type="Fan"><property key="K" tolerance="1"/></device>
        <device type="Network"><property key="K" tolerance="2"/></device>)"),
              SysinfoFilter::PARSE_SUCCESS);
    const auto ofSet = [this](const char16_t* first, const char16_t* second) {
        double percent = -1;
        m_filter.inventoryTolerance(CapabilityImp(StringView(first)) | CapabilityImp(StringView(second)), u"K",
                                    percent);
        return percent;
    };
    EXPECT_EQ(ofSet(u"Fan", u"Clock"), 1);
    EXPECT_EQ(ofSet(u"Network", u"Clock"), 2);
    EXPECT_EQ(ofSet(u"Printer", u"Clock"), -1);
    EXPECT_EQ(tolerance(u"Fan", u"K"), 1);
    EXPECT_EQ(tolerance(u"Clock", u"K"), -1);
}

TEST_F(SysinfoFilterTest, anAllButLeavesOutWhatItHoldsInTheExtendedLanguageOnly) {
    const std::string rules = R"(<device type="SSD" check-names="no" check-osLocators="FALSE">
            <property key="Size" tolerance="2"/><all-but><property key="Serial"/></all-but></device>
        <all-but><device type="Sensor"/><device type="Storage"><property key="Serial"/></device></all-but>
        <device type="Fan"><property key="Size"/></device>)";
    ASSERT_EQ(loadRules(rules), SysinfoFilter::PARSE_SUCCESS);
    EXPECT_EQ(selected(u"SSD", {u"Serial", u"Size", u"Model"}), "Size");
    EXPECT_TRUE(m_filter.checks(CapabilityImp(u"SSD")).names);
    EXPECT_EQ(selected(u"Network", {u"a"}), "-");
    EXPECT_EQ(selected(u"Fan", {u"a", u"Size"}), "Size");

    SysinfoFilter extended(SysinfoFilter::Language::Extended);
    ASSERT_EQ(extended.load("<system-information-filter>" + rules + "</system-information-filter>"),
              SysinfoFilter::PARSE_SUCCESS);
    const auto selectedOf = [&extended](StringView type) {
        const auto device = makeDevice(type);
        for (const char16_t* const key : {u"Serial", u"Size", u"Model"}) {
            device->addProperty(makeProperty(key, u""));
        }
        Array<boost::shared_ptr<IPropertyImp>> properties;
        return extended.includeDevice(*device, properties) ? keysOf(properties) : "-";
    };
    EXPECT_EQ(selectedOf(u"SSD"), "Size Model");
    EXPECT_EQ(selectedOf(u"HDD"), "Size Model");
    EXPECT_EQ(selectedOf(u"TemperatureSensor"), "-");
    EXPECT_EQ(selectedOf(u"Fan"), "Serial Size Model");
    double percent = 0;
    EXPECT_TRUE(extended.inventoryTolerance(CapabilityImp(u"SSD"), u"Size", percent));
    EXPECT_FALSE(extended.checks(CapabilityImp(u"SSD")).names);
    EXPECT_TRUE(extended.checks(CapabilityImp(u"SSD")).hwLocators);
    EXPECT_FALSE(extended.checks(CapabilityImp(u"SSD")).osLocators);
    EXPECT_TRUE(extended.checks(CapabilityImp(u"HDD")).names);

    EXPECT_EQ(
        extended.load("<system-information-filter><device type='Fan' check-names='ture'/></system-information-filter>"),
        SysinfoFilter::PARSE_BAD_SWITCH);
    EXPECT_EQ(extended.errorText(), u"check-names is neither true nor false: \"ture\" (1:28)");
    EXPECT_EQ(
        extended.load("<system-information-filter><all-but><device type='fna'/></all-but></system-information-filter>"),
        SysinfoFilter::PARSE_UNKNOWN_TYPE);
}

TEST_F(SysinfoFilterTest, reportsWhatKeepsAFileFromLoading) {
    const std::tuple<const char*, SysinfoFilter::PARSE_RET, const char*> cases[] = {
        {"<system-information-filter>\n <device>", SysinfoFilter::PARSE_XML_ERROR, "(2:10)"},
        {"", SysinfoFilter::PARSE_XML_ERROR, "("},
        {"<System-Information-Filter/>", SysinfoFilter::PARSE_WRONG_ROOT, "\"System-Information-Filter\" (1:1)"},
        {"<system-information-filter>\n<device type='Fan'/><device type='fna'/></system-information-filter>",
         SysinfoFilter::PARSE_UNKNOWN_TYPE, "unknown device type: \"fna\" (2:21)"},
        {"<system-information-filter><device/></system-information-filter>", SysinfoFilter::PARSE_UNKNOWN_TYPE,
         "type: \"\" (1:28)"},
        {"<system-information-filter><device type='Fan'><property key='k' tolerance='5%'/></device>"
         "</system-information-filter>",
         SysinfoFilter::PARSE_BAD_TOLERANCE, "tolerance is not a number: \"5%\" (1:47)"},
        {"<system-information-filter><device type='Fan'><property key='k' tolerance=''/></device>"
         "</system-information-filter>",
         SysinfoFilter::PARSE_BAD_TOLERANCE, "(1:47)"}};
    for (const auto& [xml, result, text] : cases) {
        SCOPED_TRACE(xml);
        ASSERT_EQ(loadRules("<device type='Fan'/>"), SysinfoFilter::PARSE_SUCCESS);
        ASSERT_EQ(selected(u"Fan", {u"a"}), "a");
        EXPECT_EQ(load(xml), result);
        EXPECT_NE(m_filter.errorText().toUtf8().find(text), std::string::npos) << m_filter.errorText().toUtf8();
        EXPECT_EQ(m_filter.errorText(), concat(m_filter.errorReason(), u" (", toText(m_filter.errorRow()), u":",
                                               toText(m_filter.errorColumn()), u")"));
        EXPECT_EQ(selected(u"Fan", {u"a"}), "-");
    }
    EXPECT_EQ(m_filter.errorReason(), u"tolerance is not a number: \"\"");
    EXPECT_EQ(m_filter.errorRow(), 1U);
    EXPECT_EQ(m_filter.errorColumn(), 47U);
    EXPECT_EQ(m_filter.loadFile(u"/nowhere/filter.xml"), SysinfoFilter::PARSE_UNREADABLE);
    EXPECT_EQ(m_filter.errorText(), u"No such file or directory");
    EXPECT_EQ(m_filter.errorReason(), u"No such file or directory");
    EXPECT_EQ(m_filter.errorRow(), 0U);
}

}  // namespace
}  // namespace vrx
