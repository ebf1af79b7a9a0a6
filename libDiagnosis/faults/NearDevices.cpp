#include "libDiagnosis/faults/NearDevices.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>

#include "libDiagnosis/TypeOrder.h"
#include "libDiagnosis/faults/DeviceTrial.h"
#include "libDiagnosis/faults/Nearness.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

/// Whether the run found that the device is what the element asks for: then it only serves another one.
bool isMetBy(const DeviceOutcome& outcome, const IDeviceImp& device) {
    return std::any_of(outcome.candidates.begin(), outcome.candidates.end(), [&device](const Candidate& candidate) {
        return candidate.device.get() == &device && candidate.failures.isEmpty();
    });
}

/// Whether what is wrong is wrong about that device, which another element may have that would take any.
bool isToBlame(const IDeviceImp& device, FreeDevices& free) {
    return free.isFree(device) || free.exchange(device) || !free.isTaken(device);
}

/// A free device of another type of the same kind; null when there is none.
const IDeviceImp* otherTypeAt(const MissingElement& element, const StateManager& machine, const FreeDevices& free) {
    if (element.asked().hwLocator.isEmpty() || element.type().isInvalid()) {
        return nullptr;
    }
    for (const auto& device : machine.devicesByHwLocator(element.asked().hwLocator)) {
        if (free.isFree(*device) && isReplaceable(element.type()) &&
            typeRank(device->type()) == typeRank(element.type())) {
            return device.get();
        }
    }
    return nullptr;
}

/// Elements that name no place and ask for the same, and the free devices that may be meant.
struct Seeking {
    std::vector<MissingElement*> elements;
    std::vector<std::pair<Nearness, const IDeviceImp*>> devices;
};

class NearestSearch {
public:
    NearestSearch(FreeDevices& free, Outcomes& outcomes) : m_free(free), m_outcomes(outcomes) {}

    void add(MissingElement& element) {
        const auto [at, isNew] = m_indexes.try_emplace(element.asks->sort, m_seeking.size());
        if (isNew) {
            m_seeking.emplace_back();
        }
        m_seeking[at->second].elements.push_back(&element);
        ++m_elementsOfType[element.asked().type];
    }

    void pair() {
        using Offer = std::tuple<Nearness, std::size_t, std::size_t>;
        std::vector<Offer> offers;
        for (std::size_t i = 0; i < m_seeking.size(); ++i) {
            m_seeking[i].devices = devicesFor(*m_seeking[i].elements.front());
            for (std::size_t j = 0; j < m_seeking[i].devices.size(); ++j) {
                offers.emplace_back(m_seeking[i].devices[j].first, i, j);
            }
        }
        std::ranges::stable_sort(
            offers, [](const Offer& a, const Offer& b) { return std::get<Nearness>(a) < std::get<Nearness>(b); });
        std::vector<std::size_t> given(m_seeking.size());
        for (const auto& [nearness, i, j] : offers) {
            const IDeviceImp& device = *m_seeking[i].devices[j].second;
            if (given[i] < m_seeking[i].elements.size() && m_free.isFree(device)) {
                m_seeking[i].elements[given[i]++]->device = &device;
                m_free.take(device);
            }
        }
    }

private:
    /// None when there are more than elements: then it is not sure which of them is meant.
    std::vector<std::pair<Nearness, const IDeviceImp*>> devicesFor(const MissingElement& element) {
        const DeviceOutcome& outcome = m_outcomes.of(element);
        std::vector<std::pair<Nearness, const IDeviceImp*>> devices;
        for (const Candidate& candidate : outcome.candidates) {
            if (!candidate.failures.isEmpty() && m_free.isFree(*candidate.device)) {
                devices.emplace_back(nearnessOf(candidate, *element.element), candidate.device.get());
            }
        }
        if (outcome.refusal && outcome.refusal->kind == FindingKind::NoDeviceWithName) {
            for (const IDeviceImp* const device : m_free.ofType(element.type())) {
                devices.emplace_back(Nearness{1, true, 0}, device);
            }
        }
        if (devices.size() > m_elementsOfType[element.asked().type]) {
            devices.clear();
        }
        return devices;
    }

    FreeDevices& m_free;
    Outcomes& m_outcomes;
    std::unordered_map<std::size_t, std::size_t> m_indexes;  ///< by sort
    std::map<String, std::size_t> m_elementsOfType;
    std::vector<Seeking> m_seeking;
};

}  // namespace

void pairAtPlace(std::vector<MissingElement>& missing, const StateManager& machine, FreeDevices& free,
                 Outcomes& outcomes) {
    for (MissingElement& one : missing) {
        if (one.device != nullptr || !one.namesPlace()) {
            continue;
        }
        const IDeviceImp* there = free.at(one.asked(), one.type());
        if (there != nullptr && (isMetBy(outcomes.of(one), *there) || !isToBlame(*there, free))) {
            continue;
        }
        there = there == nullptr ? otherTypeAt(one, machine, free) : there;
        if (there != nullptr) {
            one.device = there;
            free.take(*there);
        }
    }
}

void pairNearest(std::vector<MissingElement>& missing, FreeDevices& free, Outcomes& outcomes) {
    NearestSearch search(free, outcomes);
    for (MissingElement& one : missing) {
        if (one.device == nullptr && !one.namesPlace()) {
            search.add(one);
        }
    }
    search.pair();
}

const Candidate* nearestCandidate(const DeviceOutcome& outcome) {
    const Candidate* nearest = nullptr;
    Nearness least;
    for (const Candidate& candidate : outcome.candidates) {
        const Nearness nearness = nearnessOf(candidate, *outcome.element);
        if (!candidate.failures.isEmpty() && (nearest == nullptr || nearness < least)) {
            nearest = &candidate;
            least = nearness;
        }
    }
    return nearest;
}

}  // namespace vrx
