/// Three steps:
///
///   1. Every recording is read for the key of its machine, and the machines of both days are paired.
///   2. Each pair is read again and compared, device by device; what a change means is told by which of its values
///      differ: another serial number is another piece, other versions alone are an update. What one of the recordings
///      cannot tell of is counted, and is no change.
///   3. A piece that went from one place and came to another, by its type and serial number (or UUID, WWN, address),
///      has moved, also from machine to machine.

#include "libDiagnosis/machines/FleetChanges.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "libCommon/containers/HashFunctions.h"
#include "libDiagnosis/Difference.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

using ChangeKind = FleetDeviceChange::Kind;
using MachineKind = FleetMachine::Kind;

constexpr std::size_t NOWHERE = static_cast<std::size_t>(-1);
constexpr StringView PIECES[] = {property::SERIAL_NUMBER, property::UUID, property::WWN, property::ADDRESS};
constexpr StringView PRODUCTS[] = {property::MODEL, property::PART_NUMBER};
constexpr StringView VERSIONS[] = {property::FIRMWARE_VERSION, property::RELEASE_DATE, property::REVISION,
                                   property::CONTROLLER_REVISION, property::MICROCODE};

template <typename Keys>
bool isOneOf(const ValueChange& value, const Keys& keys) {
    return value.what == ValueChange::What::Property && std::ranges::find(keys, value.key.view()) != std::end(keys);
}

String valueOf(const IDeviceImp& device, StringView key) {
    const IPropertyImp* const property = device.findProperty(key);
    return property != nullptr ? property->value().toString(true) : String();
}

/// By which a piece is known wherever it is; empty where nothing tells it.
String pieceOf(const IDeviceImp* device) {
    if (device == nullptr) {
        return {};
    }
    for (const StringView key : PIECES) {
        if (const String value = valueOf(*device, key); !value.isEmpty()) {
            return concat(device->type().toString(), u"\x1F", key, u"\x1F", value);
        }
    }
    return {};
}

/// Recordings without OS locators get some, which count the devices; some have the kernel's names, others paths.
bool isOfTheRecording(const ValueChange& value) {
    return value.what == ValueChange::What::OsLocator && (!isPlace(*value.before) || !isPlace(*value.after) ||
                                                          isKernelName(*value.before) != isKernelName(*value.after));
}

bool isChange(const DeviceChange& change) {
    const bool isInBoth = change.before != nullptr && change.after != nullptr;
    return !change.isOnlyRenamed() && (!isInBoth || change.isMoved() || !change.values.empty());
}

bool isAnotherPiece(const DeviceChange& change) {
    return std::ranges::any_of(change.values, [](const ValueChange& value) {
        return value.before && value.after && (isOneOf(value, PIECES) || isOneOf(value, PRODUCTS));
    });
}

ChangeKind changeKindOf(const DeviceChange& change) {
    if (change.before == nullptr || change.after == nullptr) {
        return change.before == nullptr ? ChangeKind::Came : ChangeKind::Went;
    }
    if (change.isMoved()) {
        return ChangeKind::Moved;
    }
    const bool isUpdate =
        std::ranges::all_of(change.values, [](const ValueChange& value) { return isOneOf(value, VERSIONS); });
    return isAnotherPiece(change) ? ChangeKind::Replaced : isUpdate ? ChangeKind::Updated : ChangeKind::Changed;
}

/// Where pieces went from and came to.
class Wandering {
public:
    struct Place {
        std::size_t machine;
        std::size_t change;
    };

    void look(const DeviceChange& change, ChangeKind kind, const Place& place) {
        const bool isLeft = kind == ChangeKind::Went || kind == ChangeKind::Replaced;
        const bool isFilled = kind == ChangeKind::Came || kind == ChangeKind::Replaced;
        note(m_left, isLeft ? pieceOf(change.before) : String(), place);
        note(m_filled, isFilled ? pieceOf(change.after) : String(), place);
    }

    /// A piece that was taken out and put in somewhere else has moved.
    void tell(std::vector<FleetMachine>& machines) const {
        for (const auto& [piece, to] : m_filled) {
            const auto from = m_left.find(piece);
            if (from == m_left.end() || from->second.machine == NOWHERE || to.machine == NOWHERE) {
                continue;
            }
            const Place& source = from->second;
            FleetDeviceChange& arrival = machines[to.machine].changes[to.change];
            FleetDeviceChange& departure = machines[source.machine].changes[source.change];
            arrival.kind = ChangeKind::Moved;
            arrival.otherMachine = nameOf(machines[source.machine]);
            arrival.otherPlace = departure.placeBefore;
            if (departure.kind == ChangeKind::Went) {
                departure.otherMachine = nameOf(machines[to.machine]);
                departure.otherPlace = arrival.placeAfter;
            }
        }
    }

private:
    using Places = std::unordered_map<String, Place, HashFunc<String>>;

    /// A piece that is at two places at once tells nothing.
    static void note(Places& places, String piece, const Place& place) {
        if (piece.isEmpty()) {
            return;
        }
        const auto [at, isNew] = places.try_emplace(std::move(piece), place);
        if (!isNew) {
            at->second.machine = NOWHERE;
        }
    }

    static std::string nameOf(const FleetMachine& machine) {
        return machine.after.empty() ? machine.before : machine.after;
    }

    Places m_left;
    Places m_filled;
};

struct Recorded {
    std::string name;
    MachineKey key;
    std::string problem;
    std::size_t partner = NOWHERE;
};

std::vector<Recorded> readKeys(const FleetDay& day) {
    std::vector<Recorded> all;
    for (const std::string& name : day.names) {
        StateManager store;
        Recorded& recorded = all.emplace_back(Recorded{name, {}, day.load(name, store)});
        if (recorded.problem.empty()) {
            recorded.key = machineKey(store);
        }
    }
    return all;
}

template <typename KeyOf>
void pairBy(std::vector<Recorded>& before, std::vector<Recorded>& after, const KeyOf& keyOf) {
    struct Numbers {
        std::vector<std::size_t> before;
        std::vector<std::size_t> after;
    };
    std::unordered_map<String, Numbers, HashFunc<String>> numbers;
    const auto collect = [&](const std::vector<Recorded>& day, std::vector<std::size_t> Numbers::*side) {
        for (std::size_t i = 0; i < day.size(); ++i) {
            if (const String key = keyOf(day[i]); day[i].partner == NOWHERE && !key.isEmpty()) {
                (numbers[key].*side).push_back(i);
            }
        }
    };
    collect(before, &Numbers::before);
    collect(after, &Numbers::after);
    for (const auto& [key, same] : numbers) {
        if (same.before.size() == 1 && same.after.size() == 1) {
            before[same.before.front()].partner = same.after.front();
            after[same.after.front()].partner = same.before.front();
        }
    }
}

void pairMachines(std::vector<Recorded>& before, std::vector<Recorded>& after) {
    pairBy(before, after, [](const Recorded& each) { return each.key.uuid; });
    pairBy(before, after, [](const Recorded& each) {
        return each.key.serialNumber.isEmpty() ? String() : concat(each.key.model, u"\x1F", each.key.serialNumber);
    });
    pairBy(before, after, [](const Recorded& each) { return String::UTF8Decode(each.name); });
}

FleetDeviceChange ownChange(DeviceChange& change, ChangeKind kind) {
    FleetDeviceChange own{kind, specOf(change.after != nullptr ? *change.after : *change.before), {}, {}, {}};
    own.placeBefore = change.before != nullptr ? change.before->hwLocator() : String();
    own.placeAfter = change.after != nullptr ? change.after->hwLocator() : String();
    own.values = std::move(change.values);
    return own;
}

class FleetComparison {
public:
    FleetComparison(const FleetDay& before, const FleetDay& after, bool allCategories)
        : m_before(before), m_after(after), m_allCategories(allCategories) {}

    /// One machine; null on a day on which it was not there.
    void add(const Recorded* was, const Recorded* is) {
        FleetMachine& machine = m_machines.emplace_back();
        machine.key = (is != nullptr ? is : was)->key;
        machine.before = was != nullptr ? was->name : std::string();
        machine.after = is != nullptr ? is->name : std::string();
        for (const Recorded* const each : {was, is}) {
            if (each != nullptr) {
                noteProblem(machine, each->problem);
            }
        }
        if (machine.kind != MachineKind::Unreadable) {
            machine.kind = was == nullptr ? MachineKind::Came : is == nullptr ? MachineKind::Went : MachineKind::Equal;
        }
        if (machine.kind == MachineKind::Equal) {
            compare(machine);
        }
    }

    std::vector<FleetMachine> machines() && {
        m_wandering.tell(m_machines);
        return std::move(m_machines);
    }

private:
    static void noteProblem(FleetMachine& machine, const std::string& problem) {
        if (!problem.empty()) {
            machine.kind = MachineKind::Unreadable;
            machine.problem = problem;
        }
    }

    void compare(FleetMachine& machine) {
        StateManager first;
        StateManager second;
        noteProblem(machine, m_before.load(machine.before, first));
        noteProblem(machine, m_after.load(machine.after, second));
        if (machine.kind == MachineKind::Unreadable) {  // it has been written to since its key was read
            return;
        }
        std::vector<DeviceChange> changes = machineChanges(first, second, m_allCategories);
        machine.untold = UntoldChanges(first, second).takeOut(changes);
        for (DeviceChange& change : changes) {
            std::erase_if(change.values, isOfTheRecording);
            if (isChange(change)) {
                const ChangeKind kind = changeKindOf(change);
                m_wandering.look(change, kind, {m_machines.size() - 1, machine.changes.size()});
                machine.changes.push_back(ownChange(change, kind));
                machine.kind = MachineKind::Changed;
            }
        }
    }

    const FleetDay& m_before;
    const FleetDay& m_after;
    bool m_allCategories;
    std::vector<FleetMachine> m_machines;
    Wandering m_wandering;
};

}  // namespace

MachineKey machineKey(const StateManager& machine) {
    for (const StringView type : {u"System", u"Motherboard"}) {
        for (const auto& device : machine.devicesCapableOf(CapabilityImp(String(type)))) {
            return {valueOf(*device, property::MODEL), valueOf(*device, property::SERIAL_NUMBER),
                    valueOf(*device, property::UUID)};
        }
    }
    return {};
}

std::vector<FleetMachine> fleetChanges(const FleetDay& before, const FleetDay& after, bool allCategories) {
    std::vector<Recorded> old = readKeys(before);
    std::vector<Recorded> now = readKeys(after);
    pairMachines(old, now);
    FleetComparison comparison(before, after, allCategories);
    for (const Recorded& each : now) {
        comparison.add(each.partner == NOWHERE ? nullptr : &old[each.partner], &each);
    }
    for (const Recorded& each : old) {
        if (each.partner == NOWHERE) {
            comparison.add(&each, nullptr);
        }
    }
    return std::move(comparison).machines();
}

}  // namespace vrx
