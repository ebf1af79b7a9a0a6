#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <tuple>

#include "libCommon/logging/Logger.h"
#include "libInventory/ImportReport.h"
#include "libInventory/Inventory.h"
#include "libInventory/recording/SysInfoReader.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertySpecImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {
namespace {

/// Collects lines without the source line that each begins with.
struct CollectedLines : LogSink {
    CollectedLines() { Logger::addSink(*this); }
    ~CollectedLines() override { Logger::removeSink(*this); }
    void writeLine(const std::string&, LogPriority priority, StringView message) override {
        text += toUtf8(message.substr(message.find(u' ') + 1)) + "\n";
        warnings += priority == LogPriority::Debug ? 0 : 1;
    }
    std::string text;
    int warnings = 0;
};

struct DebugLogging {
    DebugLogging() { log.setPriority(LogPriority::Debug); }
    ~DebugLogging() { log.inheritPriority(); }
    Logger& log = Logger::get("libInventory.Inventory");
};

/// One line a device: type [capabilities] name @hwLocator @osLocator key=value ...
std::string machineText(const StateManager& store) {
    String text;
    for (const auto& device : store.getDevices(CapabilityImp::ALL(), false)) {
        text += concat(device->type().toString(), u" [", device->capabilities().toString(), u"] ", device->name(),
                       u" @", device->hwLocator(), u" @", device->osLocator());
        for (const auto& property : device->properties(PropertyCategoryImp::ALL())) {
            const ValueImp& value = property->value();
            text += concat(u" ", property->key(), u"=", value.isArray() ? u"array:" : u"", value.toString(false));
        }
        text += u"\n";
    }
    return text.toUtf8();
}

struct ImportCase {
    const char16_t* xml;
    const char* machine;
    const char* lines = "";
};

const ImportCase CASES[] = {
    // Attributes or children; a child wins, also an empty one.
    {u"<s><Device type='Fan' name='F' hwLocator='h' osLocator='o'/><Device><DeviceType>Fan</DeviceType><Name>F</Name>"
     u"<HW_Locator>h</HW_Locator><OS_Locator>o</OS_Locator><Capability> Sensor </Capability></Device>"
     u"<Device type='Fan' name='F' hwLocator='h'><DeviceType>LED</DeviceType><Name/><OS_Locator> </OS_Locator></Device>"
     u"<Device type='' name='' hwLocator='' osLocator=''><DeviceType>LED</DeviceType></Device><Device/></s>",
     "Fan [Fan] F @h @o\nFan [Fan, Sensor] F @h @o\nFan [Fan]  @h @\nIndicator [Indicator]  @ @\n"
     " []  @gen-name4 @gen-os-loc4\n"},
    // Counters restart in nested lists; nested lower-case devices are not read; a missing name replaces the locator.
    {u"<s><device name='A'/><other/><device name='B'><device/><Device name='C'/></device><device hwLocator='h'/></s>",
     " [] A @gen-hw-loc0 @gen-os-loc0\n [] B @gen-hw-loc1 @gen-os-loc1\n [] C @gen-hw-loc0 @gen-os-loc0\n"
     " []  @gen-name2 @gen-os-loc2\n"},
    {u"<s><Device/><SysInfo/><SysInfo><Device name='A' hwLocator='h' osLocator='o'/></SysInfo></s>", " [] A @h @o\n"},
    {u"<s><device/><Device name='A' hwLocator='h' osLocator='o'/></s>", " [] A @h @o\n"},
    // Properties beside nested devices, and a list in a list; a device in a property is none.
    {u"<s><Device name='A' hwLocator='h' osLocator='o'><property key='K' value='1'><Device name='X' hwLocator='h' "
     u"osLocator='o'/></property><Device name='B' hwLocator='i' osLocator='o'><property key='L' value='2'/></Device>"
     u"<property key='M' value='3'/><SysInfo><Device name='C' hwLocator='j' osLocator='o'/></SysInfo></Device></s>",
     " [] A @h @o K=1 M=3\n [] C @j @o\n"},
    {u"<s><Device name='A' hwLocator='h' osLocator='o'><Device name='B' hwLocator='i' osLocator='o'/></Device>"
     u"<Device name='C' hwLocator='j' osLocator='o'><SysInfo/></Device></s>",
     " [] A @h @o\n [] B @i @o\n [] C @j @o\n"},
    // Values; properties before the first lower-case one are skipped; nested ones follow their parent.
    {u"<s><Device name='A' hwLocator='h' osLocator='o'><Property/><property key='A' "
     u"value='x'><Value>y</Value></property>"
     u"<Property/><property><Key>B</Key><value value='c'/><Value>a</Value><Value/><value/></property>"
     u"<property key='C' value=''><Value>a</Value><property key='D' value='d'/></property></Device></s>",
     " [] A @h @o A=x = B=array:a, c,  C=a D=d\n"},
    {u"<s><Device name='A' hwLocator='h' osLocator='o'><property key='A' value='3.5' units='GHz'><property key='B' "
     u"units='GHz'><Value>7</Value></property><property key='C' units='ells'/><property/></property>"
     u"<property key='D' value='fast' units='MHz'/><property key='E' units='cubits'/><property key='F'/></Device></s>",
     " [] A @h @o A=3.5 GHz B=0 GHz D=0 MHz\n",
     "Could not find UnitType for string: ells\nCould not find UnitType for string: cubits\n"},
};

TEST(InventoryStateImportTest, lenientForms) {
    for (const ImportCase& test : CASES) {
        StateManager store;
        CollectedLines lines;
        EXPECT_TRUE(Inventory::importStateFromXmlString(test.xml, store)) << toUtf8(test.xml);
        EXPECT_EQ(machineText(store), test.machine);
        EXPECT_EQ(lines.text, test.lines);

        XmlDocument whole;
        ASSERT_TRUE(whole.Parse(test.xml));
        StateManager later;
        ImportReport report;
        EXPECT_TRUE(SysInfoReader(later, report).readDevices(*whole.RootElement()));
        EXPECT_EQ(machineText(later), test.machine);
    }
}

TEST(InventoryStateImportTest, devicesOfADocumentThatTurnsOutBrokenAreNotEvenKnown) {
    StateManager store;
    EXPECT_FALSE(Inventory::importStateFromXmlString(
        u"<s><Device name='A' hwLocator='h' osLocator='o'><property key='K-broken' value='1'/></Device>", store));
    EXPECT_EQ(store.deviceCount(), 0U);
    const PropertySpecImp spec(u"K-broken", PropertyCategoryImp::SysInfo(), DataTypeImp::STRING, CapabilityImp::ALL());
    EXPECT_FALSE(StateManager::instance().propertySpec(spec.guid()));
}

TEST(InventoryStateImportTest, failuresSayWhy) {
    using Failure = ImportReport::Failure;
    StateManager store;
    CollectedLines lines;
    ImportReport report;
    std::string reported;
    const auto outcome = [&](bool imported) {
        EXPECT_FALSE(imported);
        for (const String& line : report.errorLines()) {
            reported += line.toUtf8() + "\n";
        }
        return std::tuple(report.failure, report.reason.toUtf8(), report.row, report.column);
    };
    EXPECT_EQ(outcome(Inventory::importStateFromXmlString(u"<s>\n <a", store, report)),
              std::tuple(Failure::Malformed, std::string("unclosed token"), 2U, 2U));
    EXPECT_EQ(outcome(Inventory::importStateFromXmlString(u"<s><a", store, report)),
              std::tuple(Failure::Malformed, std::string("unclosed token"), 1U, 4U));
    EXPECT_EQ(outcome(Inventory::importStateFromXmlString(u"x", store, report)),
              std::tuple(Failure::Malformed, std::string("syntax error"), 1U, 1U));
    EXPECT_EQ(outcome(Inventory::importStateFromXmlString(u"\n<s><SysInfo><device/></SysInfo></s>", store, report)),
              std::tuple(Failure::NoDevices, std::string(), 2U, 1U));
    EXPECT_EQ(outcome(Inventory::importStateFromXmlFile(u"/none.xml", store, report)),
              std::tuple(Failure::Unreadable, std::string("No such file or directory"), 0U, 0U));
    EXPECT_EQ(report.path, u"/none.xml");
    EXPECT_EQ(lines.text, reported);
    EXPECT_EQ(lines.text, R"(importStateFromXmlString() Parse failed: unclosed token (2:2)
importStateFromXmlString() Parse failed: unclosed token (1:4)
importStateFromXmlString() Parse failed: syntax error
Failed to parse sysinfo file
importStateFromXmlString() populateStateManagerRecursive failed.
importStateFromXmlFile(/none.xml) LoadFile failed: No such file or directory
)");
}

TEST(InventoryStateImportTest, saysWhatItTookAndWhatItSkipped) {
    constexpr StringView XML =
        u"<s><Device name='A' hwLocator='h' osLocator='o'><property key='K' value='1'/></Device>\n"
        u"<Device name='B' hwLocator='i' osLocator='o'><property key='L' value='2'/>\n<property units='ells'>"
        u"<Key>M</Key></property><x/><property key='N'/><property key='O'/></Device></s>";
    const DebugLogging debug;
    CollectedLines lines;
    StateManager store;
    ImportReport report;
    EXPECT_TRUE(Inventory::importStateFromXmlString(XML, store, report));
    EXPECT_EQ(lines.text, R"(populatePropertiesRecursive() adding property: K
populateStateManagerRecursive() adding device: h|o
populatePropertiesRecursive() adding property: L
Could not find UnitType for string: ells
populateStateManagerRecursive() adding device: i|o
)");
    EXPECT_EQ(lines.warnings, 1);
    EXPECT_EQ(report.devices, 2U);
    EXPECT_EQ(report.properties, 2U);
    ASSERT_EQ(report.skipped.size(), 1U);
    const ImportReport::Skipped& skipped = report.skipped[0];
    EXPECT_EQ(skipped.key, u"M");
    EXPECT_EQ(skipped.text, u"ells");
    EXPECT_EQ(skipped.row, 3U);
    EXPECT_EQ(skipped.column, 1U);
    EXPECT_EQ(skipped.propertiesBehind, 2U);
}

TEST(InventoryStateImportTest, specificationsAreSharedAndGoToTheProcessWideStore) {
    StateManager store;
    ASSERT_TRUE(Inventory::importStateFromXmlString(
        u"<s><Device><property key='K-shared'/></Device><Device><property key='K-shared'/></Device></s>", store));
    const auto devices = store.getDevices(CapabilityImp::ALL(), false);
    const auto spec = devices[0]->property(u"K-shared")->spec();
    EXPECT_EQ(spec, devices[1]->property(u"K-shared")->spec());
    EXPECT_FALSE(store.propertySpec(spec->guid()));
    EXPECT_TRUE(StateManager::instance().propertySpec(spec->guid()));
}

/// A recording of some hundred kilobytes with a bit of everything.
std::string largeRecording(std::string_view end) {
    std::string text = "<r>\n <SysInfo>x</SysInfo>";
    for (int i = 0; i < 4000; ++i) {
        const std::string number = std::to_string(i);
        text += "\n <Device type='Fan'" + (i % 500 == 70 ? "" : " name='F" + number + "'") + " hwLocator='h" + number +
                "'" + (i % 700 == 80 ? "" : " osLocator=''") + "><property key='T-of all' value='" + number + "'/>" +
                "<property key='T-" + std::to_string(i / 900) + "' value='3' units='" +
                (i % 1500 == 90 ? "ells" : "GHz") + "'/>" +
                (i % 800 == 20 ? "<Device name='in'><Property key='T-in'/></Device>" : "") + "</Device>";
    }
    return text.append(end);
}

TEST(InventoryStateImportTest, severalThreadsMakeTheSameMachine) {
    const std::string path = testing::TempDir() + "vrxImportThreads.xml";
    const DebugLogging debug;
    const auto import = [&](const std::string& recording, unsigned threads) {
        std::ofstream(path, std::ios::binary) << recording;
        CollectedLines lines;
        StateManager store;
        ImportReport report;
        const bool isImported = Inventory::importStateFromXmlFile(String::UTF8Decode(path), store, report, threads);
        const auto devices = store.getDevices(CapabilityImp::ALL(), false);
        for (const auto& device : devices) {
            EXPECT_TRUE(!device->property(u"T-of all") ||
                        device->property(u"T-of all")->spec() == devices[0]->property(u"T-of all")->spec());
        }
        return std::tuple(isImported, machineText(store), lines.text, report.devices, report.properties,
                          report.skipped.size(), report.passedOver.size(), report.row, report.reason.toUtf8());
    };
    for (const char* const end :
         {"\n</r>", "\n <device name='G'/>\n</r>", "\n <Devize name='G'/>\n</r>", "\n</Device></r>"}) {
        const auto alone = import(largeRecording(end), 1);
        EXPECT_EQ(import(largeRecording(end), 4), alone) << end;
        EXPECT_EQ(std::get<0>(alone), std::string_view(end).find("</Device>") == std::string_view::npos);
    }
    EXPECT_EQ(std::get<3>(import(largeRecording("\n</r>"), 3)), 4005U);
    EXPECT_EQ(std::get<6>(import(largeRecording("\n <Devize name='G'/>\n</r>"), 3)), 6U);  // and 5 without a type
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace vrx
