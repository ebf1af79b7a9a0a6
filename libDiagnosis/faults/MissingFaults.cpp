/// Each element gets the device that became of what it asks for, the surest way first: by identity, by content at
/// another place, by its place, by nearness. Each device is given once. What is wrong is then read off the pair.

#include "libDiagnosis/faults/MissingFaults.h"

#include <algorithm>
#include <set>
#include <unordered_map>
#include <utility>

#include "libDiagnosis/Breadth.h"
#include "libDiagnosis/TypeOrder.h"
#include "libDiagnosis/faults/AskedDevice.h"
#include "libDiagnosis/faults/DeviceTrial.h"
#include "libDiagnosis/faults/LikeElements.h"
#include "libDiagnosis/faults/MovedDevices.h"
#include "libDiagnosis/faults/NearDevices.h"
#include "libDiagnosis/faults/NearestAlternative.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

bool isMoved(const MissingElement& element) {
    const Inventory::DeviceSpec& asked = element.asked();
    if (!asked.hwLocator.isEmpty()) {
        return element.device->hwLocator() != asked.hwLocator;
    }
    return !asked.osLocator.isEmpty() && !isKernelName(asked.osLocator) &&
           element.device->osLocator() != asked.osLocator;
}

bool isOfModel(const Difference& difference) {
    static constexpr StringView KEYS[] = {property::VENDOR, property::MODEL, property::PART_NUMBER};
    return difference.what == Difference::What::Name || difference.what == Difference::What::Type ||
           std::ranges::find(KEYS, difference.key.view()) != std::end(KEYS);
}

bool asksForModel(const MissingElement& element) {
    return !element.asked().name.isEmpty() ||
           std::ranges::any_of(*element.asks->properties, [](const AskedProperty& property) {
               return property.key == property::MODEL || property.key == property::PART_NUMBER;
           });
}

bool isOfIdentity(const Difference& difference) { return isIdentity(difference.key); }

class MissingFaults {
public:
    MissingFaults(const Inventory& inventory, const StateManager& machine, FreeDevices& free, WantedDevices& asked)
        : m_inventory(inventory),
          m_machine(machine),
          m_free(free),
          m_asked(asked),
          m_outcomes(inventory),
          m_like(inventory, asked),
          m_shortages(inventory, asked) {}

    std::vector<Fault> find(const Certainty& certainty) {
        m_missing = elementsWithoutDevice(m_inventory, m_free, m_asked);
        leaveOutDoubted(certainty);
        pairByIdentity(m_missing, m_machine, m_free);
        pairByContent(m_missing, m_inventory, m_machine, m_free, m_asked);
        pairAtPlace(m_missing, m_machine, m_free, m_outcomes);
        pairNearest(m_missing, m_free, m_outcomes);
        for (const MissingElement& one : m_missing) {
            if (one.device != nullptr) {
                m_owners.emplace(one.device, &one);
            }
        }
        for (const MissingElement& one : m_missing) {
            if (!m_told.contains(&one)) {
                m_faults.push_back(faultOf(one));
            }
        }
        return std::move(m_faults);
    }

private:
    void leaveOutDoubted(const Certainty& certainty) {
        std::set<std::pair<std::uint64_t, std::uint64_t>> doubted;
        for (const Doubt& doubt : certainty.doubts) {
            doubted.emplace(doubt.device.row, doubt.device.column);
        }
        std::erase_if(m_missing, [&doubted](const MissingElement& one) {
            const ElementPlace place = placeIn(*one.element);
            return doubted.contains({place.row, place.column});
        });
    }

    Fault faultOf(const MissingElement& element) {
        Fault fault;
        fault.place = placeIn(*element.element);
        fault.asked = element.asked();
        fault.properties = element.asks->properties;
        fault.alternatives = element.alternatives;
        fault.breadth = breadthOf(element.type());
        if (const XmlElement* const part = partAround(*element.element)) {
            fault.part = PartName{attributeOf(*part, vocabulary::ID), attributeOf(*part, vocabulary::NAME),
                                  attributeOf(*part, vocabulary::DESCRIPTION)};
        }
        addCandidates(element, fault);
        if (element.device == nullptr) {
            addMissing(element, fault);
        } else {
            fault.device = identityOf(*element.device);
            if (isMoved(element)) {
                addMoved(element, fault);
            } else {
                addDifferences(element, fault);
                addRivals(element, fault);
            }
        }
        return fault;
    }

    void addCandidates(const MissingElement& element, Fault& fault) {
        const DeviceOutcome& outcome = m_outcomes.of(element);
        fault.candidates = outcome.candidates.size();
        const CandidateSummary summary = summaryOf(outcome);
        if (!summary.taken.empty()) {
            fault.taken = summary.taken.front();
        }
    }

    void addMissing(const MissingElement& element, Fault& fault) {
        const DeviceOutcome& outcome = m_outcomes.of(element);
        fault.refusal = refusalOf(outcome, element.type(), &m_machine);
        fault.alike = m_like.of(*element.element);
        fault.shortage = m_shortages.of(*element.element);
        if (const Candidate* const nearest = nearestCandidate(outcome)) {
            fault.nearest = NearDevice{specOf(*nearest->device), vrx::differencesOf(*nearest)};
        }
    }

    void addDifferences(const MissingElement& element, Fault& fault) {
        fault.differences = differencesAt(element);
        const String& osLocator = element.asked().osLocator;
        if (!osLocator.isEmpty() && osLocator != element.device->osLocator()) {
            fault.differences.push_back({.what = Difference::What::OsLocator,
                                         .place = fault.place,
                                         .expected = {osLocator},
                                         .found = element.device->osLocator()});
        }
        const bool isOtherModel = std::ranges::any_of(fault.differences, isOfModel);
        const bool isOther = isOtherModel || std::ranges::any_of(fault.differences, isOfIdentity);
        if (isOther && isReplaceable(element.type())) {
            fault.kind = FaultKind::Replaced;
            fault.replacement = isOtherModel            ? Replacement::OtherModel
                                : asksForModel(element) ? Replacement::SameModel
                                                        : Replacement::Unknown;
        } else {
            fault.kind = FaultKind::Wrong;
        }
    }

    /// A device that is wrong for the element may be what is left of a choice that others had a say in.
    void addRivals(const MissingElement& element, Fault& fault) {
        fault.shortage = fault.taken ? m_shortages.of(*element.element) : std::nullopt;
        if (fault.shortage && fault.shortage->isOfOneKind) {
            fault.shortage.reset();
        }
    }

    /// What the run found, where it has tried the device.
    std::vector<Difference> differencesAt(const MissingElement& element) {
        if (element.namesPlace()) {
            for (const Candidate& candidate : m_outcomes.of(element).candidates) {
                if (candidate.device.get() == element.device) {
                    return vrx::differencesOf(candidate);
                }
            }
        }
        return differencesOf(element);
    }

    std::vector<Difference> differencesOf(const MissingElement& element) {
        return m_asked.trialOf(*element.element).differencesOf(*element.element, *element.device);
    }

    void addMoved(const MissingElement& element, Fault& fault) {
        fault.kind = FaultKind::Moved;
        fault.differences = differencesOf(element);
        const IDeviceImp* const there = m_free.at(element.asked(), element.type());
        const auto owner = m_owners.find(there);
        if (owner != m_owners.end()) {
            addSecond(element, *owner->second, fault);
        } else if (there != nullptr && m_free.isFree(*there)) {
            fault.other = identityOf(*there);
            m_free.take(*there);
        }
    }

    /// What stands in the element's place belongs to a second one; if that one's place is the device's, the two were
    /// swapped.
    void addSecond(const MissingElement& first, const MissingElement& second, Fault& fault) {
        if (second.asked().hwLocator.isEmpty() || first.device->hwLocator() != second.asked().hwLocator ||
            m_told.contains(&second) || &first == &second) {
            return;
        }
        fault.kind = FaultKind::Swapped;
        fault.other = identityOf(*second.device);
        fault.otherPlace = placeIn(*second.element);
        for (Difference& difference : differencesOf(second)) {
            fault.differences.push_back(std::move(difference));
        }
        m_told.insert(&second);
    }

    const Inventory& m_inventory;
    const StateManager& m_machine;
    FreeDevices& m_free;
    WantedDevices& m_asked;
    Outcomes m_outcomes;
    LikeElements m_like;
    Shortages m_shortages;
    std::vector<MissingElement> m_missing;
    std::unordered_map<const IDeviceImp*, const MissingElement*> m_owners;
    std::set<const MissingElement*> m_told;  ///< with another one
    std::vector<Fault> m_faults;
};

}  // namespace

std::vector<Fault> missingFaults(const Inventory& inventory, const StateManager& machine, const Certainty& certainty,
                                 FreeDevices& free, WantedDevices& asked) {
    return MissingFaults(inventory, machine, free, asked).find(certainty);
}

}  // namespace vrx
