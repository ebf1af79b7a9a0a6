#include "libDiagnosis/faults/NearestAlternative.h"

#include <unordered_set>
#include <utility>

#include "libDiagnosis/faults/Nearness.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/ScriptWalk.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

/// How much of an alternative is there.
struct Standing {
    std::size_t asked = 0;
    std::size_t present = 0;  ///< devices, whether or not they differ
    std::size_t failed = 0;   ///< tests

    void add(const Standing& other) noexcept {
        asked += other.asked;
        present += other.present;
        failed += other.failed;
    }

    bool isNearerThan(const Standing& other) const noexcept {
        const std::size_t mine = present * other.asked;
        const std::size_t theirs = other.present * asked;
        return mine != theirs ? mine > theirs : failed < other.failed;
    }
};

/// One way to meet an element.
struct Plan {
    Standing standing;
    std::vector<const IDeviceImp*> devices;  ///< that come nearest
    std::vector<const IDeviceImp*> met;      ///< those of them that differ in nothing
    std::vector<const XmlElement*> missing;
    std::vector<Inventory::DeviceSpec> others;  ///< what alternatives that were not taken ask for

    void add(const Plan& part) {
        standing.add(part.standing);
        devices.insert(devices.end(), part.devices.begin(), part.devices.end());
        met.insert(met.end(), part.met.begin(), part.met.end());
        missing.insert(missing.end(), part.missing.begin(), part.missing.end());
        others.insert(others.end(), part.others.begin(), part.others.end());
    }
};

/// The outermost `or` between devices that the element lies in; null when there is none.
const XmlElement* orAround(const XmlElement& element) noexcept {
    const XmlElement* found = nullptr;
    for (const XmlContainer* at = element.Parent(); at != nullptr; at = at->Parent()) {
        const XmlElement* const around = at->ToElement();
        if (around != nullptr && vocabulary::kindOf(*around) == ElementKind::Or) {
            found = around;
        }
    }
    return found;
}

class AlternativeChoice {
public:
    AlternativeChoice(const Inventory& inventory, FreeDevices& free, WantedDevices& asked, const XmlElement& orElement)
        : m_inventory(inventory), m_free(free), m_asked(asked) {
        for (ScriptWalk walk(orElement); walk; ++walk) {
            if (walk->kind == ElementKind::Device) {
                m_within.insert(walk->element);
            }
        }
    }

    Plan planFor(const XmlElement& element) {
        switch (vocabulary::kindOf(element)) {
            case ElementKind::Device: return planForDevice(element);
            case ElementKind::Or: return nearestOf(element);
            case ElementKind::And:
            case ElementKind::Part: return planForAll(element);
            default: return {};
        }
    }

private:
    Plan planForAll(const XmlElement& group) {
        Plan plan;
        for (const XmlElement* const child : childElements(group)) {
            plan.add(planFor(*child));
        }
        return plan;
    }

    Plan nearestOf(const XmlElement& orElement) {
        Plan nearest;
        bool isFirst = true;
        std::vector<Inventory::DeviceSpec> others;
        for (const XmlElement* const child : childElements(orElement)) {
            const std::unordered_set<const IDeviceImp*> usedBefore = m_used;
            Plan plan = planFor(*child);
            m_used = usedBefore;
            if (plan.standing.asked == 0) {
                continue;
            }
            if (isFirst || plan.standing.isNearerThan(nearest.standing)) {
                std::swap(nearest, plan);
            }
            if (!isFirst) {
                others.push_back(firstOf(plan));
            }
            isFirst = false;
        }
        m_used.insert(nearest.devices.begin(), nearest.devices.end());
        nearest.others.insert(nearest.others.end(), others.begin(), others.end());
        return nearest;
    }

    /// What an alternative with a device missing asks for first.
    Inventory::DeviceSpec firstOf(const Plan& plan) const {
        return plan.missing.empty() ? Inventory::DeviceSpec() : m_asked.of(*plan.missing.front()).spec;
    }

    Plan planForDevice(const XmlElement& device) {
        Plan plan;
        plan.standing.asked = 1;
        const DeviceOutcome outcome = m_inventory.outcomeOf(device);
        const Candidate* const nearest = nearestOf(outcome);
        if (nearest != nullptr) {
            plan.standing.present = 1;
            plan.standing.failed = nearest->failures.size();
            m_used.insert(nearest->device.get());
            plan.devices.push_back(nearest->device.get());
        } else if (isOtherwiseAtPlace(device)) {
            plan.standing.present = 1;
            plan.standing.failed = 1;
        }
        if (nearest != nullptr && nearest->failures.isEmpty()) {
            plan.met.push_back(nearest->device.get());
        } else {
            plan.missing.push_back(&device);
        }
        return plan;
    }

    const Candidate* nearestOf(const DeviceOutcome& outcome) const {
        const Candidate* nearest = nullptr;
        Nearness least;
        for (const Candidate& candidate : outcome.candidates) {
            if (!isAvailable(*candidate.device)) {
                continue;
            }
            const Nearness nearness = nearnessOf(candidate, *outcome.element);
            if (nearest == nullptr || nearness < least) {
                nearest = &candidate;
                least = nearness;
            }
        }
        return nearest;
    }

    bool isAvailable(const IDeviceImp& device) const {
        return !m_used.contains(&device) && (m_free.isFree(device) || m_within.contains(m_inventory.holderOf(device)));
    }

    /// A device of the right type stands at the place, under another name.
    bool isOtherwiseAtPlace(const XmlElement& device) const {
        const WantedDevice& asked = m_asked.of(device);
        const IDeviceImp* const there = m_free.at(asked.spec, asked.type);
        return there != nullptr && isAvailable(*there);
    }

    const Inventory& m_inventory;
    FreeDevices& m_free;
    WantedDevices& m_asked;
    std::unordered_set<const XmlElement*> m_within;
    std::unordered_set<const IDeviceImp*> m_used;
};

class MissingSearch {
public:
    MissingSearch(const Inventory& inventory, FreeDevices& free, WantedDevices& asked)
        : m_inventory(inventory), m_free(free), m_asked(asked) {}

    std::vector<MissingElement> find() {
        for (const XmlElement* const element : m_inventory.missingElements()) {
            const XmlElement* const orElement = orAround(*element);
            if (orElement == nullptr) {
                add(*element);
            } else if (!m_planned.contains(orElement)) {
                addNearest(*element, *orElement);
            }
        }
        return std::move(m_missing);
    }

private:
    void add(const XmlElement& element) { m_missing.push_back({&element, &m_asked.of(element)}); }

    void addNearest(const XmlElement& asRun, const XmlElement& orElement) {
        const Plan plan = AlternativeChoice(m_inventory, m_free, m_asked, orElement).planFor(orElement);
        if (plan.missing.empty()) {  // each of its own could be met; together with the others of the script they cannot
            add(asRun);
            return;
        }
        m_planned.insert(&orElement);
        takeOver(plan, orElement);
        for (const XmlElement* const element : plan.missing) {
            add(*element);
        }
        for (const Inventory::DeviceSpec& other : plan.others) {
            if (!other.type.isEmpty()) {
                m_missing[m_missing.size() - plan.missing.size()].alternatives.push_back(other);
            }
        }
    }

    void takeOver(const Plan& plan, const XmlElement& orElement) {
        for (ScriptWalk walk(orElement); walk; ++walk) {
            if (walk->kind == ElementKind::Device) {
                releaseDevicesOf(*walk->element);
            }
        }
        for (const IDeviceImp* const device : plan.met) {
            m_free.take(*device);
        }
    }

    void releaseDevicesOf(const XmlElement& element) {
        for (const Candidate& candidate : m_inventory.outcomeOf(element).candidates) {
            if (candidate.holder == &element) {
                m_free.release(*candidate.device);
            }
        }
    }

    const Inventory& m_inventory;
    FreeDevices& m_free;
    WantedDevices& m_asked;
    std::unordered_set<const XmlElement*> m_planned;
    std::vector<MissingElement> m_missing;
};

}  // namespace

std::vector<MissingElement> elementsWithoutDevice(const Inventory& inventory, FreeDevices& free, WantedDevices& asked) {
    return MissingSearch(inventory, free, asked).find();
}

}  // namespace vrx
