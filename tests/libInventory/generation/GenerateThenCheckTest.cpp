/// A generated script passes on the machine that it was generated from: for random machines, under every combination of
/// flags and filter, and for machines of many devices that nothing tells apart.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libInventory/ScriptGeneration.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "tests/libInventory/support/RandomMachine.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

struct Way {
    bool allCategories;
    bool checkLocators;
    bool checkNames;
    bool hasFilter;
};

class GenerateThenCheckTest : public testing::Test {
protected:
    void SetUp() override {
        m_folder = std::filesystem::path(testing::TempDir()) / ("vrx-generate-" + std::to_string(getpid()));
        std::filesystem::create_directories(m_folder);
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    void loadFilter(SysinfoFilter& filter, const String& xml) const {
        const std::string path = m_folder / "filter.xml";
        std::ofstream(path) << xml.toUtf8();
        ASSERT_EQ(filter.loadFile(text(path)), SysinfoFilter::PARSE_SUCCESS);
    }

    static void expectPassed(StateManager& store, const Way& way, SysinfoFilter* filter, const std::string& what) {
        Inventory inventory;
        inventory.setStateManager(store);
        String script;
        inventory.generateInventoryScript(script, way.allCategories, way.checkLocators, way.checkNames, filter);
        expectPassed(store, script, what);

        const String written = generatedScript(
            store, {way.allCategories, way.checkNames, way.checkLocators, way.checkLocators, filter, true, true});
        const std::string file = written.toUtf8();
        XmlDocument document;
        ASSERT_TRUE(document.ParseUtf8(file)) << what << "\n" << file;
        const auto& devices = store.devicesCapableOf(CapabilityImp::ALL());
        if (std::all_of(devices.begin(), devices.end(), [](const auto& device) {
                return canBeWritten(device->hwLocator()) && canBeWritten(device->osLocator());
            })) {
            expectPassed(store, String::UTF8Decode(file), what + " in a file");
        }
    }

    static void expectPassed(StateManager& store, const String& script, const std::string& what) {
        Inventory inventory;
        RecordingObserver observer;
        inventory.setStateManager(store);
        inventory.registerInventoryObserver(observer);
        ASSERT_TRUE(inventory.loadInventoryScript(script)) << what << "\n" << utf8(script);
        EXPECT_TRUE(inventory.run(nullptr)) << what << "\n" << utf8(inventory.script().toString());
        EXPECT_TRUE(observer.events.empty()) << what;
    }

private:
    std::filesystem::path m_folder;
};

TEST_F(GenerateThenCheckTest, randomMachinesPass) {
    for (unsigned seed = 0; seed < 60 && !HasFailure(); ++seed) {
        for (unsigned bits = 0; bits < 16; ++bits) {
            const Way way{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
            RandomMachine machine(seed, way.checkLocators ? RandomMachine::Devices::ToldApartByLocators
                                                          : RandomMachine::Devices::LookAlikes);
            SysinfoFilter filter;
            loadFilter(filter, machine.filterXml());
            expectPassed(machine.store, way, way.hasFilter ? &filter : nullptr,
                         "seed " + std::to_string(seed) + " way " + std::to_string(bits));
        }
    }
}

TEST_F(GenerateThenCheckTest, hundredsOfEqualDevicesPass) {
    StateManager store;
    for (int i = 0; i < 500; ++i) {
        addDevice(store, "MemoryModule", "module", "", "", {{"Size", {"32 GB"}}});
    }
    expectPassed(store, {false, true, true, false}, nullptr, "equal devices");
}

}  // namespace
}  // namespace vrx::test
