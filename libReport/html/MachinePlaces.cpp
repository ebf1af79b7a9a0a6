#include "libReport/html/MachinePlaces.h"

#include <algorithm>
#include <map>
#include <utility>

#include "libReport/text/DeviceSummary.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

struct Sort {
    std::string_view title;
    std::vector<CapabilityImp> types;
};

/// As somebody walks through a machine. The last that fits a device decides, so that cores are no processors; what fits
/// none is of the last sort.
const std::vector<Sort>& sorts() {
    static const std::vector<Sort> list = {
        {"System and board",
         {CapabilityImp(u"System"), CapabilityImp(u"Chassis"), CapabilityImp(u"Motherboard"),
          CapabilityImp(u"Firmware")}},
        {"Processors", {CapabilityImp(u"Processor"), CapabilityImp(u"Coprocessor")}},
        {"Memory", {CapabilityImp(u"Memory")}},
        {"Storage", {CapabilityImp(u"Storage"), CapabilityImp(u"Volume"), CapabilityImp(u"StorageController")}},
        {"Adapters",
         {CapabilityImp(u"Network"), CapabilityImp(u"Display"), CapabilityImp(u"Multimedia"),
          CapabilityImp(u"PciDevice")}},
        {"Power", {CapabilityImp(u"Power")}},
        {"Cooling", {CapabilityImp(u"Cooling")}},
        {"Slots and ports", {CapabilityImp(u"Slot"), CapabilityImp(u"Port")}},
        {"Cores and caches", {CapabilityImp(u"ProcessorCore"), CapabilityImp(u"Cache")}},
        {"Sensors", {CapabilityImp(u"Sensor")}},
        {"Other parts", {}},
    };
    return list;
}

std::size_t sortOf(const CapabilityImp& type) {
    for (std::size_t i = sorts().size(); i-- > 0;) {
        if (std::ranges::any_of(sorts()[i].types, [&type](const CapabilityImp& of) { return of.isCapable(type); })) {
            return i;
        }
    }
    return sorts().size() - 1;
}

constexpr bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// The digits at the beginning, without zeros before them; takes them off.
StringView takeNumber(StringView& text) {
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length])) {
        ++length;
    }
    StringView number = text.substr(0, length);
    text.remove_prefix(length);
    number.remove_prefix(std::min(number.find_first_not_of(u'0'), number.size()));
    return number;
}

/// Numbers by their value, everything else by its characters.
bool comesBefore(StringView a, StringView b) {
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const StringView numberA = takeNumber(a);
            const StringView numberB = takeNumber(b);
            if (numberA != numberB) {
                return std::pair(numberA.size(), numberA) < std::pair(numberB.size(), numberB);
            }
        } else if (a.front() != b.front()) {
            return a.front() < b.front();
        } else {
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
    }
    return a.empty() && !b.empty();
}

const String& placeOf(const Inventory::DeviceSpec& spec) {
    return spec.hwLocator.isEmpty() ? spec.osLocator : spec.hwLocator;
}

std::map<String, std::size_t> faultsByGuid(const std::vector<Fault>& faults) {
    std::map<String, std::size_t> byGuid;
    for (std::size_t i = 0; i < faults.size(); ++i) {
        for (const auto& device : {faults[i].device, faults[i].other}) {
            if (device && !device->guid.isEmpty()) {
                byGuid.emplace(device->guid, i);
            }
        }
        for (const FoldedFault& folded : faults[i].withIt) {
            if (!folded.guid.isEmpty()) {
                byGuid.emplace(folded.guid, i);
            }
        }
    }
    return byGuid;
}

void addMissing(std::vector<PlaceGroup>& groups, const Inventory::DeviceSpec& asked, std::size_t fault) {
    if (!placeOf(asked).isEmpty()) {
        groups[sortOf(CapabilityImp(asked.type))].places.push_back({asked, {}, fault, true});
    }
}

}  // namespace

std::vector<PlaceGroup> machinePlaces(const StateManager& machine, const std::vector<Fault>& faults) {
    std::vector<PlaceGroup> groups;
    for (const Sort& sort : sorts()) {
        groups.push_back({sort.title, {}});
    }
    const std::map<String, std::size_t> byGuid = faultsByGuid(faults);
    for (const auto& device : machine.devicesCapableOf(CapabilityImp::ALL())) {
        const auto at = byGuid.find(device->guid());
        groups[sortOf(device->type())].places.push_back(
            {specOf(*device), deviceSummary(*device),
             at == byGuid.end() ? std::nullopt : std::optional<std::size_t>(at->second), false});
    }
    for (std::size_t i = 0; i < faults.size(); ++i) {
        if (faults[i].kind == FaultKind::Missing) {
            addMissing(groups, faults[i].asked, i);
            for (const FoldedFault& folded : faults[i].withIt) {
                addMissing(groups, folded.spec, i);
            }
        }
    }
    std::erase_if(groups, [](const PlaceGroup& group) { return group.places.empty(); });
    for (PlaceGroup& group : groups) {
        std::ranges::stable_sort(group.places, [](const MachinePlace& a, const MachinePlace& b) {
            return comesBefore(placeOf(a.spec), placeOf(b.spec));
        });
    }
    return groups;
}

}  // namespace vrx
