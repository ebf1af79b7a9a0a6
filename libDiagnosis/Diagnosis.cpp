/// A missing device is wrong, not missing, when a device of its type stands at its place, or is the only one that was
/// tried for an element that names no place.

#include "libDiagnosis/Diagnosis.h"

#include <algorithm>
#include <utility>

#include "libDiagnosis/Breadth.h"
#include "libDiagnosis/DeviceProblem.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/ScriptWalk.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

class Diagnosing {
public:
    Diagnosing(const Inventory& inventory, const StateManager& machine, const Certainty& certainty)
        : m_inventory(inventory), m_machine(machine), m_certainty(certainty) {}

    std::vector<Fault> faults() {
        addMissing();
        addForbidden();
        addExtra();
        addUndetermined();
        std::ranges::stable_sort(m_faults, {}, &Fault::breadth);
        return std::move(m_faults);
    }

private:
    void addMissing() {
        for (const XmlElement* const element : m_inventory.missingElements()) {
            if (!isDoubted(placeIn(*element))) {
                m_faults.push_back(faultOf(problemOf(*element, m_inventory, &m_machine)));
            }
        }
    }

    static Fault faultOf(const DeviceProblem& problem) {
        Fault fault;
        fault.place = problem.place;
        fault.asked = problem.asked;
        fault.breadth = problem.breadth;
        fault.candidates = problem.candidates.failed + problem.candidates.takenCount;
        if (!problem.candidates.taken.empty()) {
            fault.taken = problem.candidates.taken.front();
        }
        const auto& near = problem.atPlace ? problem.atPlace : problem.candidates.nearest;
        if (near && !near->differences.empty()) {
            fault.kind = FaultKind::Wrong;
            fault.device = DeviceIdentity{{}, near->device, {}, {}, {}, {}, {}};
            fault.differences = near->differences;
        }
        return fault;
    }

    void addForbidden() {
        for (const Finding& finding : m_inventory.findings()) {
            if (finding.kind == FindingKind::UnsatisfiedNot && deviceAround(*finding.element) == nullptr) {
                addForbiddenBy(*finding.element);
            }
        }
    }

    void addForbiddenBy(const XmlElement& forbids) {
        for (ScriptWalk walk(forbids); walk; ++walk) {
            if (walk->kind == vocabulary::ElementKind::Device) {
                Fault fault;
                fault.kind = FaultKind::Forbidden;
                fault.place = placeIn(forbids);
                fault.asked = askedBy(*walk->element);
                m_faults.push_back(std::move(fault));
                return;
            }
        }
    }

    void addExtra() {
        for (const ExtraDevice& extra : m_inventory.extraDevicesWithRules()) {
            Fault fault;
            fault.kind = FaultKind::Extra;
            fault.place = placeIn(*extra.rule);
            fault.asked = askedBy(*extra.rule);
            fault.device = identityOf(*extra.device);
            fault.breadth = breadthOf(extra.device->type());
            m_faults.push_back(std::move(fault));
        }
    }

    void addUndetermined() {
        for (const Doubt& doubt : m_certainty.doubts) {
            Fault fault;
            fault.kind = FaultKind::Undetermined;
            fault.place = doubt.place;
            fault.asked = doubt.spec;
            fault.doubt = doubt;
            m_faults.push_back(std::move(fault));
        }
    }

    bool isDoubted(const ElementPlace& place) const {
        return std::ranges::any_of(m_certainty.doubts, [&place](const Doubt& doubt) { return doubt.device == place; });
    }

    const Inventory& m_inventory;
    const StateManager& m_machine;
    const Certainty& m_certainty;
    std::vector<Fault> m_faults;
};

}  // namespace

std::string_view nameOf(FaultKind kind) noexcept {
    static constexpr std::string_view NAMES[] = {"missing", "wrong",    "extra",     "moved",
                                                 "swapped", "replaced", "forbidden", "undetermined"};
    return NAMES[static_cast<std::size_t>(kind)];
}

std::vector<Fault> diagnose(const Inventory& inventory, const StateManager& machine, const Certainty& certainty) {
    return Diagnosing(inventory, machine, certainty).faults();
}

}  // namespace vrx
