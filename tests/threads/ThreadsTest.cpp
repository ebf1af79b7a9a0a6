/// One thread for each engine, unless it is given more, any number of engines, and no lock around them: eight threads
/// do everything at once, and each gets what a thread alone gets. Under the thread sanitizer this also finds what only
/// could go wrong.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "libCommon/io/FileLoader.h"
#include "libCommon/logging/Logger.h"
#include "libCommon/text/NumberText.h"
#include "libInventory/ImportReport.h"
#include "libInventory/Inventory.h"
#include "libInventory/recording/SysInfoWriter.h"
#include "libLint/Lint.h"
#include "libMachine/MachineImport.h"
#include "libRegex/Regex.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertySpecImp.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

constexpr std::size_t THREADS = 8;
constexpr std::size_t ROUNDS = 2;

/// Runs a task on all threads at once; the task gets the number of its thread.
void onAllThreads(const std::function<void(std::size_t)>& task) {
    std::latch start(THREADS);
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < THREADS; ++i) {
        threads.emplace_back([&start, &task, i] {
            start.arrive_and_wait();
            task(i);
        });
    }
}

String pathOf(const std::string& file) { return text(std::string(VRX_TEST_DATA) + "/" + file); }

std::string bytesOf(const std::string& file) {
    std::string bytes;
    String error;
    EXPECT_TRUE(loadFile(pathOf(file), bytes, error)) << file;
    return bytes;
}

/// A generated script without its comment, which holds the time.
std::string withoutComment(const String& script) {
    std::string all = utf8(script);
    const std::size_t begin = all.find("<!--");
    return begin == std::string::npos ? all : all.erase(begin, all.find("-->") + 3 - begin);
}

std::string checked(StateManager& store, const String& script) {
    Inventory inventory;
    RecordingObserver observer;
    inventory.setStateManager(store);
    inventory.registerInventoryObserver(observer);
    EXPECT_TRUE(inventory.loadInventoryScript(script));
    std::string result = inventory.run(nullptr) ? "passed" : "failed";
    result += utf8(inventory.script().toString());
    for (const auto& device : inventory.unsatisfiedDevices()) {
        result += " -" + utf8(device.name);
    }
    for (const auto& device : inventory.extraDevices()) {
        result += " +" + utf8(device.name);
    }
    for (const TestRunEventImp& event : observer.events) {
        result += utf8(event.toString());
    }
    return result;
}

std::string partsOf(StateManager& store) {
    Array<Inventory::PartSpec> parts;
    parts.emplace(u"disk", u"1", u"", u"", u"<part name='disk' id='1'><device type='Storage'/></part>");
    parts.emplace(u"fan", u"2", u"", u"", u"<part name='fan' id='2'><device type='Fan'/></part>");
    parts.emplace(u"any", u"3", u"", u"", u"<part name='any' id='3'><device type='Storage'/></part>");
    return utf8(Inventory::generatePartsListXml(parts, u"", &store).toString());
}

std::string linted(std::string_view script) {
    Lint lint;
    EXPECT_EQ(lint.run(script), Lint::Result::Done);
    std::string result;
    for (const LintFinding& finding : lint.findings().list()) {
        result += std::to_string(finding.row) + ":" + std::to_string(finding.column) + finding.message() + "\n";
    }
    return result;
}

std::string converted(const std::string& file) {
    const std::string bytes = bytesOf(file);
    StateManager store;
    const ImportResult import = importMachine(bytes, store);
    EXPECT_TRUE(import.isImported()) << file;
    std::string result = sysInfoXml(store, true);
    for (const ImportDamage& damage : import.damage) {
        result += damageText(damage);
    }
    return result;
}

/// Everything that one engine does with a machine, as one text.
std::string allOf(const std::string& file) {
    StateManager store;
    ImportReport report;
    EXPECT_TRUE(Inventory::importStateFromXmlFile(pathOf(file), store, report, 2));
    StateManager copy;
    EXPECT_TRUE(Inventory::importStateFromXmlString(text(bytesOf(file)), copy));
    EXPECT_EQ(copy.deviceCount(), report.devices);

    Inventory inventory;
    inventory.setStateManager(store);
    String script;
    inventory.generateInventoryScript(script, true, true, true, nullptr);
    const std::string generated = withoutComment(script);
    std::string result =
        std::to_string(report.properties) + generated + checked(copy, text(generated)) + linted(generated);
    result += linted("<inventory-check><device type='Fna' hwlocatr='x'/><part/></inventory-check>");

    const std::size_t givenUp = Regex::exceededCount();
    result += checked(store,
                      u"<inventory-check><or><device type='Fan' name='^(x+x+)+y$'/><device type='CPU'>"
                      u"<property key='Clock' value='^VRXRRANGE[1-9] GHz$'/></device></or><not><device type='memory'>"
                      u"<property key='Size' value='^(.*)*~$'/></device></not><odd/><fail-on-extra type='Disk'/>"
                      u"</inventory-check>");
    EXPECT_FALSE(Regex::rangeMatches(u"^(a+)+$", concat(String(40, u'a'), u"!"), Regex::CASE_SENSITIVE));
    return result + " " + std::to_string(Regex::exceededCount() - givenUp) + partsOf(store);
}

/// Counts the lines that it gets; several threads may bring some at once.
class LineCounter final : public LogSink {
public:
    LineCounter() { Logger::addSink(*this); }
    ~LineCounter() override {
        Logger::removeSink(*this);
        isAlive = false;
    }
    void writeLine(const std::string& loggerName, LogPriority, StringView message) override {
        EXPECT_TRUE(isAlive);
        lines += message.empty() ? 0U : 1U;
        aboutPatterns += loggerName == "libRegex.Regex" ? 1U : 0U;
    }
    std::atomic<unsigned> lines = 0;
    std::atomic<unsigned> aboutPatterns = 0;
    std::atomic<bool> isAlive = true;
};

TEST(ThreadsTest, everyEngineFindsWhatItFindsAlone) {
    const std::array<std::string, 2> machines = {"machines/small.xml", "machines/workshop.xml"};
    std::vector<std::string> alone;
    for (const std::string& machine : machines) {
        alone.push_back(allOf(machine));
    }
    onAllThreads([&](std::size_t thread) {
        for (std::size_t round = 0; round < ROUNDS; ++round) {
            const std::size_t machine = (thread + round) % machines.size();
            EXPECT_EQ(allOf(machines[machine]), alone[machine]);
        }
    });
}

TEST(ThreadsTest, recordingsOfOtherProgramsAreConverted) {
    const std::array<std::string, 4> files = {"data/convert/blade.lshw.json", "data/convert/workstation.lshw.xml",
                                              "data/convert/dmidecode-blade.txt", "data/convert/node.hwloc2.xml"};
    std::vector<std::string> alone;
    for (const std::string& file : files) {
        alone.push_back(converted(file));
    }
    onAllThreads([&](std::size_t thread) {
        const std::size_t file = thread % files.size();
        EXPECT_EQ(converted(files[file]), alone[file]);
    });
}

TEST(ThreadsTest, importsShareTheSpecificationsOfTheirProperties) {
    onAllThreads([](std::size_t thread) {
        for (int round = 0; round < 40; ++round) {
            StateManager store;
            String xml = u"<s>";
            for (int device = 0; device < 10; ++device) {
                const String key = toText(static_cast<std::int32_t>(thread) * 100 + (round + device) % 60);
                xml += concat(u"<Device name='d' hwLocator='", toText(device), u"' osLocator=''><property key='K-", key,
                              u"' value='v'/></Device>");
            }
            EXPECT_TRUE(Inventory::importStateFromXmlString(xml + u"</s>", store));
            const auto property = store.rootDevice()->properties(PropertyCategoryImp::ALL())[0];
            EXPECT_TRUE(property->spec(StateManager::instance()));
        }
    });
}

TEST(ThreadsTest, oneRecordingIsReadByMany) {
    const std::string path = testing::TempDir() + "vrxThreadsTest.xml";
    std::string recording = "<SysInfo>";
    for (int i = 0; i < 6'000; ++i) {
        const std::string number = std::to_string(i);
        recording += "\n  <Device type='Type" + std::to_string(i % 7) + "' name='d' hwLocator='h" + number +
                     "' osLocator=''><property key='K" + number + "' value='1'/><property key='All' value='" + number +
                     "' units='" + (i % 10 == 0 ? "GHz" : "") + "'/></Device>";
    }
    std::ofstream(path, std::ios::binary) << recording << "\n</SysInfo>";
    const auto read = [&path](unsigned threads) {
        StateManager store;
        ImportReport report;
        EXPECT_TRUE(Inventory::importStateFromXmlFile(text(path), store, report, threads));
        EXPECT_EQ(report.properties, 12'000U);
        return sysInfoXml(store, true);
    };
    EXPECT_EQ(read(4), read(1));
    std::filesystem::remove(path);
}

TEST(ThreadsTest, eachCountsThePatternsThatItGivesUpAndOneOfThemSaysSo) {
    const LineCounter lines;
    const String value = concat(String(5'000, u'b'), u"!");
    onAllThreads([&value](std::size_t) {
        EXPECT_EQ(Regex::exceededCount(), 0U);
        EXPECT_FALSE(Regex::rangeMatches(u"^(b+)+$", value, Regex::CASE_SENSITIVE));
        EXPECT_FALSE(Regex::rangeMatches(u"^(b+)+$", value, Regex::CASE_SENSITIVE));
        EXPECT_EQ(Regex::exceededCount(), 2U);
    });
    EXPECT_EQ(lines.aboutPatterns.load(), 1U);
}

TEST(ThreadsTest, typesAreDefinedWhileOthersAreLookedUp) {
    onAllThreads([](std::size_t thread) {
        for (std::int32_t i = 0; i < 50; ++i) {
            const String shared = concat(u"Shared", toText(i));
            CapabilityImp::define(shared, u"Fan");
            const String own = concat(u"Own", toText(static_cast<std::int32_t>(thread)), u"-", toText(i));
            EXPECT_TRUE(CapabilityImp::define(own, shared));
            EXPECT_TRUE(CapabilityImp(u"Cooling").isCapable(CapabilityImp(own)));
            EXPECT_EQ(CapabilityImp(own).toString(), own);
            EXPECT_FALSE(CapabilityImp(u"Disk").isCapable(CapabilityImp(shared)));
        }
    });
}

TEST(ThreadsTest, loggersAreSetAndListenedToWhileTheyWrite) {
    LineCounter all;
    onAllThreads([](std::size_t thread) {
        Logger& shared = Logger::get("threads.shared");
        for (int i = 0; i < 50; ++i) {
            const LineCounter own;
            Logger& logger = Logger::get(("threads." + std::to_string(thread) + "." + std::to_string(i)).c_str());
            VRX_LOG(logger, LogPriority::Error, u"own");
            VRX_LOG(shared, LogPriority::Warning, u"shared " << i);
            shared.setPriority(i % 2 == 0 ? LogPriority::Debug : LogPriority::Warning);
            EXPECT_GE(own.lines.load(), 2U);
        }
    });
    EXPECT_EQ(all.lines.load(), 2 * 50 * THREADS);
}

/// A machine of many fans.
std::string manyFans() {
    std::string machine = "<SysInfo>";
    for (int i = 0; i < 600; ++i) {
        const std::string number = std::to_string(i);
        machine += "\n<Device type='Fan' name='Fan " + number + "' hwLocator='fan:" + number + "' osLocator=''>" +
                   "<property key='Speed' value='" + number + "'/><property key='Size' value='3' units='GB'/>" +
                   "<property key='Rows'><value value='a'/><value value='b'/></property></Device>";
    }
    return machine + "\n</SysInfo>";
}

/// Most of these are met, some in groups, and some fail in each way.
std::string manyElements() {
    std::string script = "<inventory-check><fail-on-extra type='Fan'><property key='Speed' value='7'/></fail-on-extra>";
    for (int i = 0; i < 590; ++i) {
        const std::string number = std::to_string(i);
        const std::string speed = i % 50 == 3 ? "^VRXRRANGE[0-2]$" : "^" + number + "$";
        const std::string device =
            "<device type='Fan' name='^Fan " + number + "$' hwlocator='fan:" + number + "'><property key='" +
            (i % 60 == 11 ? "Nothing" : "Speed") + "' value='" + speed + "'/>" +
            (i % 70 == 5 || i % 60 == 11 ? "<property key='Size' value='^3 GB$'/>" : "") +
            (i % 80 == 5 ? "<property key='Rows'><value value='b'/><value value='a'/></property>" : "") +
            (i % 90 == 5 ? "<not><property key='Speed' value='x'/></not><oops/>" : "") + "</device>";
        const std::string open = i % 200 == 7   ? "<or><device type='Fan' hwlocator='none'/>"
                                 : i % 100 == 9 ? "<not>"
                                                : "";
        script += open + device + (i % 200 == 7 ? "</or>" : i % 100 == 9 ? "</not>" : "");
    }
    return script + "</inventory-check>";
}

TEST(ThreadsTest, ARunTellsTheSameOnAnyNumberOfThreads) {
    std::string alone;
    for (const unsigned threads : {1U, 2U, 5U}) {
        StateManager store;
        ASSERT_TRUE(Inventory::importStateFromXmlString(text(manyFans()), store));
        Inventory inventory;
        RecordingObserver observer;
        inventory.registerInventoryObserver(observer);
        inventory.setStateManager(store);
        inventory.setThreads(threads);
        ASSERT_TRUE(inventory.loadInventoryScript(text(manyElements())));
        EXPECT_FALSE(inventory.run());
        const std::string told = utf8(inventory.script().toString()) + std::to_string(observer.events.size()) + " " +
                                 std::to_string(inventory.unsatisfiedDevices().size()) + " " +
                                 std::to_string(inventory.extraDevices().size());
        alone = threads == 1 ? told : alone;
        EXPECT_EQ(told, alone);
    }
}

}  // namespace
}  // namespace vrx::test
