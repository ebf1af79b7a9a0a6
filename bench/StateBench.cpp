#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include "libCommon/text/NumberText.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

/// The questions that a check asks of the store, on a machine of 10,000 devices.

namespace vrx {
namespace {

constexpr std::uint32_t DEVICES = 10000;

boost::shared_ptr<IDeviceImp> makeDevice(StringView type, std::uint32_t number, std::uint32_t properties) {
    const String text = toText(number);
    auto device = DeviceImp::createGeneric(CapabilityImp(type), CapabilityImp(), 0, concat(u"Device ", text), u"",
                                           concat(u"/dev/device", text), concat(u"slot-", text));
    for (std::uint32_t at = 0; at < properties; ++at) {
        const auto spec = boost::make_shared<PropertySpecImp>(
            concat(u"Property", toText(at)), PropertyCategoryImp::SysInfo(), DataTypeImp(), CapabilityImp::ALL());
        device->addProperty(boost::make_shared<PropertyImp>(spec, ValueImp(text)));
    }
    return device;
}

void fill(StateManager& store) {
    const char16_t* const types[] = {u"System", u"SSD", u"HDD", u"Ethernet", u"Fan", u"DIMM", u"Core", u"Sensor"};
    for (std::uint32_t number = 0; number < DEVICES; ++number) {
        store.addDevice(makeDevice(types[number % std::size(types)], number, 0), nullptr);
    }
}

void fillAndIndex(benchmark::State& state) {
    const CapabilityImp storage(StringView(u"Storage"));
    for (auto _ : state) {
        StateManager store;
        fill(store);
        benchmark::DoNotOptimize(store.devicesCapableOf(storage).size());
    }
}
BENCHMARK(fillAndIndex)->Unit(benchmark::kMillisecond);

void getDevicesByType(benchmark::State& state) {
    StateManager store;
    fill(store);
    const CapabilityImp storage(StringView(u"Storage"));
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.getDevices(storage, false));
    }
}
BENCHMARK(getDevicesByType)->Unit(benchmark::kMicrosecond);

void devicesCapableOf(benchmark::State& state) {
    StateManager store;
    fill(store);
    const CapabilityImp storage(StringView(u"Storage"));
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.devicesCapableOf(storage).size());
    }
}
BENCHMARK(devicesCapableOf);

void deviceByGuid(benchmark::State& state) {
    StateManager store;
    fill(store);
    const String guid = DeviceImp::guid(u"slot-7777", u"/dev/device7777");
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.deviceByGuid(guid));
    }
}
BENCHMARK(deviceByGuid);

void findProperty(benchmark::State& state) {
    const auto properties = static_cast<std::uint32_t>(state.range(0));
    const auto device = makeDevice(u"SSD", 0, properties);
    const String key = concat(u"Property", toText(properties - 1));
    for (auto _ : state) {
        benchmark::DoNotOptimize(device->findProperty(key));
    }
}
BENCHMARK(findProperty)->Arg(4)->Arg(15)->Arg(16)->Arg(1000);

/// What a check of a single device does to the state: a copy of the device in a store of its own.
void singleDeviceStore(benchmark::State& state) {
    const auto device = makeDevice(u"SSD", 0, static_cast<std::uint32_t>(state.range(0)));
    const CapabilityImp storage(StringView(u"Storage"));
    for (auto _ : state) {
        StateManager store;
        store.addDevice(boost::shared_ptr<IDeviceImp>(device->clone()), nullptr);
        benchmark::DoNotOptimize(store.devicesCapableOf(storage).size());
    }
}
BENCHMARK(singleDeviceStore)->Arg(0)->Arg(10);

}  // namespace
}  // namespace vrx

BENCHMARK_MAIN();
