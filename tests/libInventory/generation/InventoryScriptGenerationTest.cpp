#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <filesystem>
#include <fstream>

#include "libCommon/logging/Logger.h"
#include "libInventory/Inventory.h"
#include "libInventory/generation/ValuePattern.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/PropertyImp.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

namespace fs = std::filesystem;

class LineCollector final : public LogSink {
public:
    LineCollector() { Logger::addSink(*this); }
    ~LineCollector() override { Logger::removeSink(*this); }
    void writeLine(const std::string&, LogPriority priority, StringView message) override {
        lines += std::to_string(static_cast<int>(priority)) + toUtf8(message.substr(message.find(u' '))) + "\n";
    }
    std::string lines;
};

/// Generation in a folder of its own, which may hold a default filter.
class ScriptGenerationTest : public testing::Test {
protected:
    void SetUp() override {
        m_before = fs::current_path();
        m_folder = fs::path(testing::TempDir()) / ("vrx-script-" + std::to_string(getpid()));
        fs::create_directories(m_folder);
        fs::current_path(m_folder);
    }
    void TearDown() override {
        fs::current_path(m_before);
        fs::remove_all(m_folder);
    }

    std::string generate(bool allCategories, bool checkLocators, bool checkNames, SysinfoFilter* filter) {
        Inventory inventory;
        inventory.setStateManager(store);
        String script = u"replaced";
        inventory.generateInventoryScript(script, allCategories, checkLocators, checkNames, filter);
        return utf8(script);
    }

    /// The `value` children that a property of that value gets under a tolerance, and the warnings.
    std::string valuesWith(const ValueImp& value, const std::string& tolerance) {
        store.clear();
        add(*addDevice(store, "Fan", "f", ""), u"K", value);
        std::ofstream("filter.xml") << "<system-information-filter><device type='Fan'><property key='K' " << tolerance
                                    << "/></device></system-information-filter>";
        SysinfoFilter filter;
        EXPECT_EQ(filter.loadFile(u"filter.xml"), SysinfoFilter::PARSE_SUCCESS);
        const LineCollector log;
        const std::string script = generate(false, true, true, &filter);
        std::string found;
        for (std::size_t at = 0; (at = script.find("<value value=\"", at)) != std::string::npos; ++at) {
            found += script.substr(at + 14, script.find('"', at + 14) - at - 14) + " ";
        }
        return found + log.lines;
    }

    static void add(IDeviceImp& device, const String& key, const ValueImp& value,
                    PropertyCategoryImp category = PropertyCategoryImp::SysInfo()) {
        const auto spec = boost::make_shared<PropertySpecImp>(key, category, value.type(), CapabilityImp::ALL());
        device.addProperty(boost::make_shared<PropertyImp>(spec, value));
    }

    StateManager store;

private:
    fs::path m_folder;
    fs::path m_before;
};

TEST_F(ScriptGenerationTest, writesHeaderAndDevicesInDepthFirstOrder) {
    const auto root = addDevice(store, "system", "Disk (C:) [1.0]", "a<b\x01", "o\"\t");
    const auto child = boost::shared_ptr<IDeviceImp>(
        DeviceImp::createGeneric(CapabilityImp(StringView(u"CPU")), CapabilityImp(), 0, u"", u"", u"", u"%u0041"));
    addDevice(store, "Fan", "last", "");
    store.addDevice(child, nullptr, store.devicesByName(u"last")[0]);
    add(*root, u"K<", ValueImp(String(u"a.b%u0041")));
    add(*root, u"none", ValueImp(Array<String>()));
    add(*child, u"Heat", ValueImp(true), PropertyCategoryImp::Volatile());
    add(*child, u"Clock",
        ValueImp(DiscreteMeasurement(UnitKind::Frequency, 3000, Unit::lookupByString(u"MHz")->magnitude())));
    const LineCollector log;
    const std::string script = generate(false, false, true, nullptr);
    const std::size_t stamp = script.find("generated on ") + 13;
    EXPECT_EQ(script.substr(0, stamp),
              "<inventory-check check-names=\"true\" check-hwLocators=\"false\" check-osLocators=\"false\">\n"
              "    <!--\nThis inventory script was generated on ");
    EXPECT_EQ(
        script.substr(stamp + 19),
        "\n by Vireo 5 Inventory Testing Module.\n\n"
        "This inventory script represents all of the system information on this system\n"
        "at the time of generation if SystemInformationFilter.xml is not present.\n"
        "If SystemInformationFilter.xml is present, this script only includes the system information specified in the "
        "filter.\n"
        "Some values may change with time.\n\n"
        "device Elements:\n"
        "type attributes are required, and will be matched as exact case-insensitive strings.\n"
        "name attributes are optional, and will be matched as exact case-sensitive strings.\n"
        "hwlocator attributes are optional, and will be matched as Regular Expressions.\n"
        "oslocator attributes are optional, and will be matched as Regular Expressions.\n\n"
        "type, hwlocator, and oslocator are matched on a device, then we match by properties\n\nproperty Elements:\n"
        "key attributes are required, and will be matched as exact case-sensitive strings.\n"
        "value can be an attribute or nested elements, these will be matched as Regular Expressions.\n\n"
        "For production use, please delete all unimportant devices and properties.\n"
        "Doing so will optimize the Inventory Test, and reduce the probability of incorrect Mis-Matches.\n-->\n"
        "    <device type=\"System\" name=\"^Disk \\(C:\\) \\[1\\.0\\]$\" hwlocator=\"a&lt;b\x01\" "
        "oslocator=\"o&quot;&#9;\">\n"
        "        <property key=\"K&lt;\" type=\"STRING\">\n"
        "            <value value=\"^a\\.b%u0041$\"/>\n"
        "        </property>\n"
        "        <property key=\"none\" type=\"STRINGARRAY\"/>\n"
        "    </device>\n"
        "    <device type=\"Fan\" name=\"^last$\" hwlocator=\"\" oslocator=\"\"/>\n"
        "    <device type=\"Processor\" name=\"^$\" hwlocator=\"%u0041\" oslocator=\"\">\n"
        "        <property key=\"Clock\" type=\"DISCRETEMEASUREMENT\">\n"
        "            <value value=\"^3000 MHz$\"/>\n"
        "        </property>\n"
        "    </device>\n"
        "</inventory-check>\n");
    EXPECT_EQ(log.lines,
              "3 generateInventoryScript(): SysinfoFilter failed loading defaultFilter file: "
              "SystemInformationFilter.xml result = 1\n");
    EXPECT_NE(generate(true, false, true, nullptr).find("key=\"Heat\""), std::string::npos);
}

TEST_F(ScriptGenerationTest, withoutDevicesTheRootAndTheCommentAreLeft) {
    SysinfoFilter filter;
    EXPECT_EQ(generate(false, true, false, &filter),
              "<inventory-check check-names=\"false\" check-hwLocators=\"true\" check-osLocators=\"true\">\n"
              "    <!---->\n</inventory-check>\n");
}

TEST_F(ScriptGenerationTest, filtersSelectDevicesButNotWhatLiesBelowThem) {
    const auto root = addDevice(store, "System", "s", "", "", {{"A", {"1"}}});
    const auto fan = addDevice(store, "Fan", "f", "", "", {{"B", {"2"}}, {"C", {"3"}}});
    add(*fan, u"Volatile", ValueImp(true), PropertyCategoryImp::Volatile());
    std::ofstream("SystemInformationFilter.xml")
        << "<system-information-filter><device type='Fan'><property key='C'/><property key='Volatile'/></device>"
           "</system-information-filter>";
    SysinfoFilter filter;
    ASSERT_EQ(filter.loadFile(u"SystemInformationFilter.xml"), SysinfoFilter::PARSE_SUCCESS);
    const std::string fanOnly =
        "<device type=\"Fan\" name=\"^f$\" hwlocator=\"\" oslocator=\"\">\n"
        "        <property key=\"C\" type=\"STRING\">\n"
        "            <value value=\"^3$\"/>\n"
        "        </property>\n"
        "    </device>\n</inventory-check>\n";
    const std::string given = generate(false, true, true, &filter);
    EXPECT_EQ(given.substr(given.find("<!---->")), "<!---->\n    " + fanOnly);
    const std::string found = generate(false, true, true, nullptr);
    EXPECT_EQ(found.substr(found.find("-->")), "-->\n    " + fanOnly);
    EXPECT_NE(generate(true, true, true, &filter).find("key=\"Volatile\""), std::string::npos);
}

TEST(ValuePatternTest, escapesWhatMeansSomethingInAPattern) {
    String all = u"\\^$.?*+{}()[]|-/#";
    escapeRegex(all);
    EXPECT_EQ(all, u"\\\\\\^\\$\\.\\?\\*\\+\\{\\}\\(\\)\\[\\]|-/#");
    EXPECT_EQ(exactValuePattern(u"a\x01%u0041."), u"^a%u0001%u0025u0041\\.$");
    EXPECT_EQ(rangePattern(-9, -11, u""), u"^VRXRRANGE[-9--11]$");
    EXPECT_EQ(rangePattern(490, 510, u"GB"), u"^VRXRRANGE[490-510] GB$");
}

TEST_F(ScriptGenerationTest, tolerancesWidenNumbersAndNothingElse) {
    const auto measured = [](auto kind, const char16_t* unit, double number) {
        using Kind = decltype(kind);
        const Unit found = *Unit::lookupByString(unit);
        return ValueImp(Kind(found.type(), number, found.magnitude()));
    };
    struct {
        ValueImp value;
        std::string tolerance;
        std::string expected;
    } const cases[] = {
        {ValueImp(std::uint32_t{3000}), "tolerance='10'", "^VRXRRANGE[2700-3300]$ "},
        {ValueImp(std::int32_t{-10}), "tolerance='10'", "^VRXRRANGE[-9--11]$ "},
        {ValueImp(std::uint64_t{1} << 63), "tolerance='0'", "^VRXRRANGE[9223372036854775808-9223372036854775808]$ "},
        {ValueImp(2.5), "tolerance='100'", "^VRXRRANGE[0-5]$ "},
        {ValueImp(Percent{50}), "tolerance='2'", "^VRXRRANGE[49-51]$ "},
        {ValueImp(Array<std::uint32_t>{100, 200}), "tolerance='5'", "^VRXRRANGE[95-105]$ ^VRXRRANGE[190-210]$ "},
        {ValueImp(Array<std::int32_t>{-100, 0}), "tolerance='5'", "^VRXRRANGE[-95--105]$ ^VRXRRANGE[0-0]$ "},
        {ValueImp(Array<std::uint32_t>()), "tolerance='5'", ""},
        {measured(DiscreteMeasurement(), u"GB", 500), "tolerance='2'", "^VRXRRANGE[490-510] GB$ "},
        {measured(NonDiscreteMeasurement(), u"degC", -40), "tolerance='50'", "^VRXRRANGE[-20--60] degC$ "},
        {ValueImp(DiscreteMeasurement(UnitKind::None, 8, UnitMagnitude())), "tolerance='0'", "^VRXRRANGE[8-8]$ "},
        {ValueImp(String(u"5")), "tolerance='1'", "^5$ "},
        {ValueImp(LocalizedString{u"5"}), "tolerance='1'", "^5$ "},
        {ValueImp(Percent{50}), "", "^50$ "},
        {ValueImp(Array<String>{u"a", u"b"}), "tolerance='1'",
         "^a$ ^b$ 3 linkPropertyValue(): Device: # Prop: K ignoring tolerancePercent because type is STRINGARRAY\n"},
        {ValueImp(LocalizedStringArray{{u"a"}}), "tolerance='1'",
         "^a$ 3 linkPropertyValue(): Device: # Prop: K ignoring tolerancePercent because type is "
         "LOCALIZEDSTRINGARRAY\n"},
        {ValueImp(true), "tolerance='1'",
         "^true$ 3 linkPropertyValue(): Device: # Prop: K unhandled datatype: BOOLEAN using toStringArray method\n"},
        {ValueImp(Array<double>{0.5}), "tolerance='1'",
         "^0\\.5$ 3 linkPropertyValue(): Device: # Prop: K unhandled datatype: DOUBLEARRAY using toStringArray "
         "method\n"},
        {ValueImp(std::uint32_t{7}), "tolerance='100.5'",
         "^7$ 3 linkPropertyValue(): Device: # Prop: K tolerancePercent : 100.5 is > 100 or < 0, ignoring "
         "tolerancePercent\n"},
        {ValueImp(std::uint32_t{7}), "tolerance='-1'",
         "^7$ 3 linkPropertyValue(): Device: # Prop: K tolerancePercent : -1 is > 100 or < 0, ignoring "
         "tolerancePercent\n"},
    };
    for (const auto& test : cases) {
        const std::string actual = valuesWith(test.value, test.tolerance);
        std::string expected = test.expected;
        if (const std::size_t at = expected.find('#'); at != std::string::npos) {
            expected.replace(at, 1, utf8(store.rootDevice()->toString()));
        }
        EXPECT_EQ(actual, expected);
    }
}

TEST_F(ScriptGenerationTest, aChainOfDevicesMayBeDeeperThanTheStack) {
    constexpr int DEPTH = 100'000;
    StateManager::DevicePointer last;
    for (int i = 0; i < DEPTH; ++i) {
        last = store.addDevice(DeviceImp::createGeneric(CapabilityImp(u"Fan"), CapabilityImp(), 0, u"f", u"", u"", u""),
                               nullptr, last);
    }
    SysinfoFilter nothing;
    EXPECT_EQ(generate(false, false, false, &nothing).find("<device"), std::string::npos);
    const std::string script = generate(false, false, false, nullptr);
    std::size_t devices = 0;
    for (std::size_t at = 0; (at = script.find("<device ", at)) != std::string::npos; ++at) {
        ++devices;
    }
    EXPECT_EQ(devices, std::size_t{DEPTH});

    const StateManager::DevicePointer root = store.rootDevice();
    last.reset();
    store.clear();  // the chain hangs on its root alone now
}

}  // namespace
}  // namespace vrx::test
