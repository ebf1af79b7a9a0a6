#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>
#include <numeric>
#include <random>
#include <vector>

#include "libCommon/text/NumberText.h"
#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/assignment/Matching.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

/// Exact assignment: the matching alone, and whole runs that only it passes.

namespace vrx {
namespace {

using Index = Matching::Index;

/// So many elements on as many devices.
AssociationLinks unlinked(Index count) {
    AssociationLinks links;
    links.elementCount = count;
    links.deviceCount = count;
    links.groups.resize(count);
    for (Index element = 0; element < count; ++element) {
        links.groups[element].elements.push_back(element);
    }
    return links;
}

/// Each element would take ten devices in a row, and has been given the one before the only one with which all are
/// served: the first element is left without, and every one has to hand its device on.
void matchAlongOnePath(benchmark::State& state) {
    const auto count = static_cast<Index>(state.range(0));
    AssociationLinks links = unlinked(count);
    for (Index group = 0; group < count; ++group) {
        for (Index device = group < 9 ? 0 : group - 9; device <= group; ++device) {
            links.groups[group].devices.push_back(device);
        }
    }
    for (auto _ : state) {
        Matching matching(links);
        for (Index group = 1; group < count; ++group) {
            matching.give(group - 1, group);
        }
        matching.complete(std::vector<bool>(count, true));
        if (matching.groupOf(count - 1) != count - 1) {
            state.SkipWithError("not all are served");
        }
    }
}
BENCHMARK(matchAlongOnePath)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

/// Elements with ten devices each, of which nobody has been given one. With so few links many paths are long.
void matchAtRandom(benchmark::State& state) {
    const auto count = static_cast<Index>(state.range(0));
    AssociationLinks links = unlinked(count);
    std::minstd_rand random;
    for (Index group = 0; group < count; ++group) {
        links.groups[group].devices.push_back(count - 1 - group);
        for (int i = 0; i < state.range(1) - 1; ++i) {
            links.groups[group].devices.push_back(static_cast<Index>(random() % count));
        }
    }
    for (auto _ : state) {
        Matching matching(links);
        matching.complete(std::vector<bool>(count, true));
        for (Index device = 0; device < count; ++device) {
            if (matching.groupOf(device) == Matching::NONE) {
                state.SkipWithError("not all are served");
            }
        }
    }
}
BENCHMARK(matchAtRandom)->Args({1000, 10})->Args({10000, 10})->Args({10000, 3})->Unit(benchmark::kMillisecond);

constexpr std::uint32_t WIDTH = 10;

/// Devices of sizes from 1 on; as many as `shared` have one OS locator.
void fill(StateManager& store, std::uint32_t count, std::uint32_t shared) {
    const auto spec = boost::make_shared<PropertySpecImp>(u"Size", PropertyCategoryImp::SysInfo(), DataTypeImp(),
                                                          CapabilityImp::ALL());
    for (std::uint32_t i = 0; i < count; ++i) {
        auto device = DeviceImp::createGeneric(CapabilityImp(StringView(u"Storage")), CapabilityImp(), 0, u"Device",
                                               u"", concat(u"box", toText(i / shared)), concat(u"slot-", toText(i)));
        device->addProperty(boost::make_shared<PropertyImp>(spec, ValueImp(toText(i + 1))));
        store.addDevice(device, nullptr);
    }
}

/// An element for each device, which would take ten of the box, the last of which is its own; in no order.
String scriptFor(std::uint32_t count, std::uint32_t shared, bool namesBox) {
    std::vector<std::uint32_t> order(count);
    std::iota(order.begin(), order.end(), 0U);
    std::shuffle(order.begin(), order.end(), std::minstd_rand());
    String script(u"<inventory-check>");
    for (const std::uint32_t i : order) {
        script.append(u"<device type=\"Storage\"");
        if (namesBox) {
            script.append(concat(u" oslocator=\"box", toText(i / shared), u"\""));
        }
        script.append(concat(u"><property key=\"Size\" value=\"^VRXRRANGE[", toText(i < WIDTH ? 1 : i + 2 - WIDTH),
                             u"-", toText(i + 1), u"]$\"/></device>"));
    }
    return script.append(u"</inventory-check>");
}

void run(benchmark::State& state, std::uint32_t shared, bool namesBox, Inventory::Assignment assignment) {
    const auto count = static_cast<std::uint32_t>(state.range(0));
    StateManager store;
    fill(store, count, shared);
    const String script = scriptFor(count, shared, namesBox);
    for (auto _ : state) {
        Inventory inventory;
        inventory.setStateManager(store);
        inventory.setAssignment(assignment);
        inventory.loadInventoryScript(script);
        const bool passed = inventory.run();
        if (passed != (assignment != Inventory::Assignment::Greedy)) {
            state.SkipWithError("another result than expected");
        }
        state.counters["exactly"] = static_cast<double>(inventory.summary().exactlyAssigned.size());
    }
}

void runOnOneType(benchmark::State& state) { run(state, 1000, false, Inventory::Assignment::Auto); }
BENCHMARK(runOnOneType)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void runOnOneTypeGreedily(benchmark::State& state) { run(state, 1000, false, Inventory::Assignment::Greedy); }
BENCHMARK(runOnOneTypeGreedily)->Arg(1000)->Unit(benchmark::kMillisecond);

void runInBoxes(benchmark::State& state) { run(state, 20, true, Inventory::Assignment::Auto); }
BENCHMARK(runInBoxes)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vrx

BENCHMARK_MAIN();
