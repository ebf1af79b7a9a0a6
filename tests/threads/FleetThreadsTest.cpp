#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>

#include "libFleet/FleetRun.h"

namespace vrx {
namespace {

constexpr std::size_t MACHINES = 200;

const char* const SCRIPT =
    R"(<inventory-check><device type="Processor"><property key="Cores" value="^VRXRRANGE[4-16]$"/></device>
<or><device type="NvmeDrive"/><device type="Fan"/></or><device type="MemoryModule" hwlocator="DIMM_A1">
<property key="Size" value="^32 GB$"/></device><fail-on-extra type="Storage"/></inventory-check>)";

FleetScripts theScript() {
    const auto inventory = std::make_shared<Inventory>();
    EXPECT_TRUE(inventory->loadInventoryScriptBytes(SCRIPT, u"script.xml"));
    return {{"script.xml", inventory}};
}

MachineList machines() {
    MachineList list;
    for (std::size_t i = 0; i < MACHINES; ++i) {
        list.add(i % 7 == 3 ? "no such file" : VRX_TEST_DATA "/machines/workshop.xml");
    }
    return list;
}

std::string linesWith(unsigned threads, const std::atomic<bool>* isStopped = nullptr) {
    FleetOptions options;
    options.threads = threads;
    options.started = DateTime(0);
    options.isStopped = isStopped;
    const FleetScripts scripts = theScript();
    FleetRun run(scripts, machines(), options);
    std::string lines;
    while (const std::optional<FleetResult> result = run.next()) {
        lines += result->line;
    }
    EXPECT_EQ(run.isWhole(), isStopped == nullptr);
    return lines;
}

TEST(FleetThreadsTest, givesTheSameResultsInOrderWithAnyNumberOfThreads) {
    const std::string alone = linesWith(1);
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(alone, '\n')), MACHINES);
    EXPECT_EQ(linesWith(8), alone);
}

TEST(FleetThreadsTest, stopsWhenItIsTold) {
    const std::atomic<bool> isStopped = true;
    EXPECT_EQ(linesWith(4, &isStopped), "");
}

TEST(FleetThreadsTest, endsWhenNobodyWantsMore) {
    FleetOptions options;
    options.threads = 4;
    const FleetScripts scripts = theScript();
    FleetRun run(scripts, machines(), options);
    EXPECT_TRUE(run.next());
}

}  // namespace
}  // namespace vrx
