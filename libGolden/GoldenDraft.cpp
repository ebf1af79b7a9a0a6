/// Groups the devices of the machines, then decides for each group on its name, its locators and every key that one of
/// its devices has. What is decided on names and places is what makes a script narrow or open:
///
/// - A locator is asked for where all have the same; a name that the kernel hands out never.
/// - An OS locator adds nothing where the hardware locator is that of one device of the type in every machine.
/// - Names and locators that hold a serial number or an address of their device are identities too.

#include "libGolden/GoldenDraft.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "libCommon/Assertion.h"
#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/TextHash.h"
#include "libCommon/text/UuCode.h"
#include "libGolden/DeviceGroups.h"
#include "libGolden/ValueChoice.h"
#include "libInventory/ScriptGeneration.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

using Subject = GoldenDecision::Subject;
using Choice = GoldenDecision::Choice;
using Reason = GoldenDecision::Reason;
using Properties = Array<boost::shared_ptr<IPropertyImp>>;

constexpr std::size_t SHORTEST_IDENTITY = 5;

void leaveOut(GoldenDecision& decision, Reason reason) {
    decision.choice = Choice::LeftOut;
    decision.reason = reason;
}

/// Adds what the machine has to the variant that says the same.
void addVariant(GoldenDecision& decision, Array<String> texts, bool isList, std::size_t machine) {
    const auto same = std::ranges::find_if(decision.variants, [&](const ValueVariant& variant) {
        return variant.isList == isList &&
               (isList ? std::ranges::is_permutation(variant.texts, texts) : variant.texts == texts);
    });
    if (same != decision.variants.end()) {
        same->machines.push_back(machine);
    } else {
        decision.variants.push_back({std::move(texts), isList, {machine}});
    }
}

/// Whether the text holds an identity of the device: a disk called after its serial number.
bool holdsIdentity(const String& text, const IDeviceImp& device) {
    const Properties properties = device.properties(PropertyCategoryImp::ALL());
    return std::ranges::any_of(properties, [&text](const auto& property) {
        if (kindOfProperty(property->key()) != PropertyKind::Identity) {
            return false;
        }
        const String identity = property->value().toString(true);
        return identity.size() >= SHORTEST_IDENTITY && text.view().find(identity) != StringView::npos;
    });
}

class GroupDecisions {
public:
    GroupDecisions(const std::vector<GoldenMachine>& machines, const GoldenOptions& options, GoldenDevice& device)
        : m_machines(machines), m_options(options), m_device(device), m_holders(device.holders()) {
        if (options.filter != nullptr) {
            m_checks = options.filter->checks(device.first().type());
        }
    }

    void decide() {
        decideName();
        decideLocators();
        decideProperties();
    }

private:
    const IDeviceImp& on(std::size_t machine) const { return *m_device.devices[machine]; }

    template <typename TextOf>
    GoldenDecision& decisionOn(Subject subject, const TextOf& textOf) {
        GoldenDecision& decision = m_device.decisions.emplace_back();
        decision.subject = subject;
        for (const std::size_t machine : m_holders) {
            addVariant(decision, {textOf(on(machine))}, false, machine);
        }
        return decision;
    }

    bool isIdentity(const GoldenDecision& decision) const {
        return std::ranges::any_of(decision.variants, [this](const ValueVariant& variant) {
            return holdsIdentity(variant.texts[0], on(variant.machines.front()));
        });
    }

    void decideName() {
        GoldenDecision& decision = decisionOn(Subject::Name, [](const IDeviceImp& device) { return device.name(); });
        if (!m_options.checksNames || !m_checks.names) {
            leaveOut(decision, Reason::NotWanted);
        } else if (isIdentity(decision)) {
            leaveOut(decision, Reason::Identity);
        } else {
            chooseValue(decision, PropertyKind::Designation, limits());
        }
    }

    void decideLocators() {
        GoldenDecision& hardware =
            decisionOn(Subject::HwLocator, [](const IDeviceImp& device) { return device.hwLocator(); });
        decideLocator(hardware, m_options.checksHwLocators && m_checks.hwLocators);
        if (hardware.isAsked() && !isPlace(hardware.variants.front().texts[0])) {
            leaveOut(hardware, Reason::NotNeeded);
        }
        const bool tellsApart = hardware.isAsked() && isAloneThere(hardware.variants.front().texts[0]);
        GoldenDecision& system =
            decisionOn(Subject::OsLocator, [](const IDeviceImp& device) { return device.osLocator(); });
        decideLocator(system, m_options.checksOsLocators && m_checks.osLocators);
        if (system.isAsked() && (tellsApart || !isPlace(system.variants.front().texts[0]))) {
            leaveOut(system, Reason::NotNeeded);
        }
    }

    void decideLocator(GoldenDecision& decision, bool isWanted) const {
        const String& text = decision.variants.front().texts[0];
        const bool isKernels = decision.subject == Subject::OsLocator && isKernelName(text);
        if (!isWanted) {
            leaveOut(decision, Reason::NotWanted);
        } else if (isIdentity(decision)) {
            leaveOut(decision, Reason::Identity);
        } else if (decision.variants.size() > 1 || isKernels) {
            leaveOut(decision, Reason::Place);
        } else if (!canBeWritten(text) || text.view().starts_with(u' ') || text.view().ends_with(u' ')) {
            leaveOut(decision, Reason::NotWritable);
        }
    }

    /// Whether no other device that the element might get is there, on any of the machines.
    bool isAloneThere(const String& hwLocator) const {
        return std::ranges::none_of(m_machines, [&](const GoldenMachine& machine) {
            const auto& there = machine.store->devicesByHwLocator(hwLocator);
            return std::ranges::count_if(there, [this](const auto& other) {
                       return m_device.first().type().isCapable(other->type());
                   }) > 1;
        });
    }

    void decideProperties() {
        std::unordered_map<String, std::size_t, HashFunc<String>> numbers;  // by key
        const std::size_t first = m_device.decisions.size();
        for (const std::size_t machine : m_holders) {
            Properties properties = on(machine).properties(PropertyCategoryImp::ALL());
            if (m_options.filter != nullptr) {
                m_options.filter->includeDevice(on(machine), properties);
            }
            std::unordered_set<StringView, TextHash> seen;  // a device gives the first of a key
            for (const auto& property : properties) {
                if (!seen.insert(property->key().view()).second) {
                    continue;
                }
                const auto [at, isNew] = numbers.try_emplace(property->key(), m_device.decisions.size());
                if (isNew) {
                    m_device.decisions.emplace_back().key = property->key();
                }
                take(*property, m_device.decisions[at->second], machine);
            }
        }
        for (std::size_t i = first; i < m_device.decisions.size(); ++i) {
            decideProperty(m_device.decisions[i]);
        }
    }

    void take(const IPropertyImp& property, GoldenDecision& decision, std::size_t machine) const {
        const ValueImp& value = property.value();
        Array<String> texts = value.isArray() ? value.toStringArray(false) : Array<String>{value.toString(true)};
        addVariant(decision, std::move(texts), value.isArray(), machine);
        if (!m_options.hasAllCategories && !property.category().intersect(PropertyCategoryImp::SysInfo())) {
            decision.reason = Reason::ChangesByItself;
        }
    }

    void decideProperty(GoldenDecision& decision) const {
        std::size_t count = 0;
        for (const ValueVariant& variant : decision.variants) {
            count += variant.machines.size();
        }
        const PropertyKind kind = kindOfProperty(decision.key);
        if (decision.reason == Reason::ChangesByItself ||
            (!m_options.hasAllCategories && isMeasured(kind, decision.key))) {
            leaveOut(decision, Reason::ChangesByItself);
        } else if (count < m_holders.size() && kind != PropertyKind::Identity) {
            leaveOut(decision, isUnread(decision) ? Reason::Unread : Reason::NotEverywhere);
        } else {
            chooseValue(decision, kind, limits(&decision.key));
        }
    }

    /// A recording that holds what changes by itself does not say that it does.
    bool isMeasured(PropertyKind kind, StringView key) const {
        const CapabilityImp& type = m_device.first().type();
        const bool isReader = CapabilityImp(u"Sensor").isCapable(type) || CapabilityImp(u"Fan").isCapable(type);
        return kind == PropertyKind::Measurement || (isReader && (key == property::SPEED || key == property::VOLTAGE));
    }

    /// Whether a machine without the property may have it all the same.
    bool isUnread(const GoldenDecision& decision) const {
        return std::ranges::any_of(m_holders, [&](std::size_t machine) {
            const bool hasIt = std::ranges::any_of(decision.variants, [machine](const ValueVariant& variant) {
                return std::ranges::count(variant.machines, machine) > 0;
            });
            return !hasIt && std::ranges::any_of(m_machines[machine].store->unread(), [&](const UnreadSource& unread) {
                return unread.mayHide(on(machine).type(), decision.key);
            });
        });
    }

    ValueLimits limits(const String* key = nullptr) const {
        ValueLimits limits{m_options.mostSpread, m_options.mostAlternatives, m_holders.size()};
        double tolerance = 0;
        if (key != nullptr && m_options.filter != nullptr &&
            m_options.filter->inventoryTolerance(m_device.first().type(), *key, tolerance) && tolerance >= 0 &&
            tolerance <= 100) {
            limits.tolerance = tolerance;
        }
        return limits;
    }

    const std::vector<GoldenMachine>& m_machines;
    const GoldenOptions& m_options;
    GoldenDevice& m_device;
    std::vector<std::size_t> m_holders;
    SysinfoFilter::Checks m_checks{};
};

/// In the order of the tree, as far as the filter selects them.
std::vector<const IDeviceImp*> devicesOf(const StateManager& machine, const SysinfoFilter* filter) {
    std::vector<const IDeviceImp*> devices;
    std::vector<const IDeviceImp*> pending;
    if (machine.rootDevice()) {
        pending.push_back(machine.rootDevice().get());
    }
    while (!pending.empty()) {
        const IDeviceImp* const device = pending.back();
        pending.pop_back();
        Properties properties;
        if (filter == nullptr || filter->includeDevice(*device, properties)) {
            devices.push_back(device);
        }
        const Array<boost::shared_ptr<IDeviceImp>> children = device->children();
        for (std::size_t i = children.size(); i > 0; --i) {
            pending.push_back(children[i - 1].get());
        }
    }
    return devices;
}

GoldenDevice::Presence presenceOf(const GoldenDevice& device, const std::vector<GoldenMachine>& machines) {
    const std::vector<std::size_t> others = device.others();
    const auto mayHaveIt = [&](std::size_t machine) {
        return std::ranges::any_of(machines[machine].store->unread(), [&device](const UnreadSource& unread) {
            return unread.mayHide(device.first().type());
        });
    };
    return others.empty()                           ? GoldenDevice::Presence::Everywhere
           : std::ranges::any_of(others, mayHaveIt) ? GoldenDevice::Presence::Unread
                                                    : GoldenDevice::Presence::NotEverywhere;
}

/// Types of which all devices of every machine are asked for, and every machine could be read.
Array<String> closedTypesOf(const GoldenDraft& draft, const std::vector<GoldenMachine>& machines) {
    std::unordered_set<const IDeviceImp*> asked;
    Array<String> types;
    for (const GoldenDevice& device : draft.devices) {
        if (device.presence == GoldenDevice::Presence::Everywhere) {
            asked.insert(device.devices.begin(), device.devices.end());
            const String type = device.first().type().toString(0, false);
            if (std::ranges::find(types, type) == types.end()) {
                types.append(type);
            }
        }
    }
    Array<String> closed;
    for (const String& name : types) {
        const CapabilityImp type(name);
        const auto isClosedOn = [&](const GoldenMachine& machine) {
            return std::ranges::none_of(machine.store->unread(),
                                        [&type](const UnreadSource& unread) { return unread.mayHide(type); }) &&
                   std::ranges::all_of(machine.store->devicesCapableOf(type),
                                       [&asked](const auto& device) { return asked.contains(device.get()); });
        };
        if (std::ranges::all_of(machines, isClosedOn)) {
            closed.append(name);
        }
    }
    return closed;
}

}  // namespace

const IDeviceImp& GoldenDevice::first() const {
    return **std::ranges::find_if(devices, [](const IDeviceImp* device) { return device != nullptr; });
}

std::vector<std::size_t> GoldenDevice::holders() const {
    std::vector<std::size_t> machines;
    for (std::size_t machine = 0; machine < devices.size(); ++machine) {
        if (devices[machine] != nullptr) {
            machines.push_back(machine);
        }
    }
    return machines;
}

std::vector<std::size_t> GoldenDevice::others() const {
    std::vector<std::size_t> machines;
    for (std::size_t machine = 0; machine < devices.size(); ++machine) {
        if (devices[machine] == nullptr) {
            machines.push_back(machine);
        }
    }
    return machines;
}

bool asksForAnything(const GoldenDraft& draft) {
    return std::ranges::any_of(draft.devices, [](const GoldenDevice& device) {
        return device.presence == GoldenDevice::Presence::Everywhere;
    });
}

GoldenDraft goldenDraft(const std::vector<GoldenMachine>& machines, const GoldenOptions& options) {
    VRX_ASSERT(!machines.empty());
    GoldenDraft draft;
    std::vector<std::vector<const IDeviceImp*>> devices;
    for (const GoldenMachine& machine : machines) {
        draft.machines.push_back(machine.name);
        devices.push_back(devicesOf(*machine.store, options.filter));
    }
    for (const DeviceGroup& group : groupDevices(devices)) {
        GoldenDevice& device = draft.devices.emplace_back();
        device.devices.resize(machines.size());
        for (const GroupMember& member : group) {
            device.devices[member.machine] = member.device;
        }
        device.presence = presenceOf(device, machines);
        GroupDecisions(machines, options, device).decide();
    }
    if (options.failsOnExtra) {
        draft.closedTypes = closedTypesOf(draft, machines);
    }
    return draft;
}

}  // namespace vrx
