/// What is wrong with elements that have no device comes first, because it takes devices; then what must not be there;
/// what is left of the devices that are too many is extra.

#include "libDiagnosis/Diagnosis.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>
#include <utility>

#include "libDiagnosis/Breadth.h"
#include "libDiagnosis/faults/FaultOrder.h"
#include "libDiagnosis/faults/FoldBelow.h"
#include "libDiagnosis/faults/FreeDevices.h"
#include "libDiagnosis/faults/MissingFaults.h"
#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

/// Whether the engine alone can say what is wrong.
bool isToldByEngine(FindingKind kind) noexcept {
    return kind == FindingKind::InvalidExtraRule || kind == FindingKind::UnexpectedException ||
           kind == FindingKind::PropertyOutsideDevice || kind == FindingKind::UnsatisfiedOther;
}

class Diagnosing {
public:
    Diagnosing(const Inventory& inventory, const StateManager& machine, const Certainty& certainty,
               WantedDevices& asked)
        : m_inventory(inventory),
          m_machine(machine),
          m_certainty(certainty),
          m_asked(asked),
          m_findings(inventory.findings()),
          m_free(inventory, machine) {}

    std::vector<Fault> faults() {
        m_faults = missingFaults(m_inventory, m_machine, m_certainty, m_free, m_asked);
        addForbidden();
        addExtra();
        addUndetermined();
        addOthers();
        putInOrder(m_faults);
        foldBelow(m_faults, m_machine);
        return std::move(m_faults);
    }

private:
    void addForbidden() {
        for (const Finding& finding : m_findings) {
            if (finding.kind == FindingKind::UnsatisfiedNot && deviceAround(*finding.element) == nullptr) {
                addForbiddenBy(*finding.element);
            }
        }
    }

    void addForbiddenBy(const XmlElement& forbids) {
        std::vector<const XmlElement*> elements;
        for (ScriptWalk walk(forbids); walk; ++walk) {
            if (walk->kind == vocabulary::ElementKind::Device) {
                elements.push_back(walk->element);
            }
        }
        if (elements.empty()) {
            return;
        }
        const std::size_t before = m_faults.size();
        for (const Candidate& candidate : m_inventory.outcomeOf(*elements.front()).candidates) {
            const bool isFirst = m_faults.size() == before;
            const bool isAnother = elements.size() == 1 && !m_forbidden.contains(candidate.device.get());
            if (candidate.failures.isEmpty() && (isFirst || isAnother)) {
                addForbidden(forbids, *elements.front(), candidate.device.get());
            }
        }
        if (m_faults.size() == before) {
            addForbidden(forbids, *elements.front(), nullptr);
        }
    }

    void addForbidden(const XmlElement& forbids, const XmlElement& element, const IDeviceImp* device) {
        Fault& fault = m_faults.emplace_back();
        fault.kind = FaultKind::Forbidden;
        fault.place = placeIn(forbids);
        fault.asked = askedBy(element);
        if (device != nullptr && m_forbidden.insert(device).second) {
            fault.device = identityOf(*device);
            m_free.take(*device);
        }
    }

    void addExtra() {
        for (const ExtraDevice& extra : m_inventory.extraDevicesWithRules()) {
            if (!m_free.isFree(*extra.device)) {
                continue;
            }
            Fault& fault = m_faults.emplace_back();
            fault.kind = FaultKind::Extra;
            fault.place = placeIn(*extra.rule);
            fault.asked = askedBy(*extra.rule);
            fault.device = identityOf(*extra.device);
            fault.breadth = breadthOf(extra.device->type());
        }
    }

    void addUndetermined() {
        std::map<std::pair<std::uint64_t, std::uint64_t>, std::size_t> told;
        for (const Doubt& doubt : m_certainty.doubts) {
            const ElementPlace& place = doubt.device.row != 0 ? doubt.device : doubt.place;
            const auto [at, isNew] = told.try_emplace({place.row, place.column}, m_faults.size());
            if (!isNew) {
                m_faults[at->second].furtherDoubts.push_back(doubt);
                continue;
            }
            Fault& fault = m_faults.emplace_back();
            fault.kind = FaultKind::Undetermined;
            fault.place = doubt.place;
            fault.asked = doubt.spec;
            fault.doubt = doubt;
        }
        for (const auto& device : m_inventory.summary().undecidedExtras) {
            Fault& fault = m_faults.emplace_back();
            fault.kind = FaultKind::Undetermined;
            fault.device = identityOf(*device);
        }
    }

    /// A check that failed has a fault, whatever it is.
    void addOthers() {
        for (const Finding& finding : m_findings) {
            if (isToldByEngine(finding.kind)) {
                addWords(finding);
            }
        }
        const bool isTold = std::any_of(m_faults.begin(), m_faults.end(), [this](const Fault& fault) {
            return fault.kind != FaultKind::Undetermined || m_certainty.couldHavePassed;
        });
        if (!isTold && !m_findings.isEmpty()) {
            addWords(firstSureFinding());
        }
    }

    /// The first at an element that nobody doubts; the first of all when there is none.
    const Finding& firstSureFinding() const {
        std::set<std::pair<std::uint64_t, std::uint64_t>> doubtful;
        for (const Doubt& doubt : m_certainty.doubts) {
            doubtful.insert({doubt.place.row, doubt.place.column});
            doubtful.insert({doubt.device.row, doubt.device.column});
        }
        for (const Finding& finding : m_findings) {
            const ElementPlace place = placeIn(*finding.element);
            if (!doubtful.contains({place.row, place.column})) {
                return finding;
            }
        }
        return m_findings[0];
    }

    void addWords(const Finding& finding) {
        Fault& fault = m_faults.emplace_back();
        fault.kind = FaultKind::Wrong;
        fault.place = placeIn(*finding.element);
        fault.words = finding.texts;
    }

    const Inventory& m_inventory;
    const StateManager& m_machine;
    const Certainty& m_certainty;
    WantedDevices& m_asked;
    Array<Finding> m_findings;
    FreeDevices m_free;
    std::unordered_set<const IDeviceImp*> m_forbidden;
    std::vector<Fault> m_faults;
};

}  // namespace

std::string_view nameOf(FaultKind kind) noexcept {
    static constexpr std::string_view NAMES[] = {"missing", "wrong",    "extra",     "moved",
                                                 "swapped", "replaced", "forbidden", "undetermined"};
    return NAMES[static_cast<std::size_t>(kind)];
}

std::vector<Fault> diagnose(const Inventory& inventory, const StateManager& machine, const Certainty& certainty) {
    WantedDevices asked;
    return diagnose(inventory, machine, certainty, asked);
}

std::vector<Fault> diagnose(const Inventory& inventory, const StateManager& machine, const Certainty& certainty,
                            WantedDevices& asked) {
    return Diagnosing(inventory, machine, certainty, asked).faults();
}

}  // namespace vrx
