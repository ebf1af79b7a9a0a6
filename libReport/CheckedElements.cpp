/// One walk over the script outside of devices. Which alternatives were kept, which device each element has and which
/// rules found something is asked of the inventory once, before; doubts and faults are then filed with the entries by
/// their places. Of an `or` that is not met at all the engine keeps one alternative and the diagnosis may speak of
/// another, which came nearer; then that is the one that failed.
///
/// Where the whole answer is undetermined nothing is said to have failed: if something had failed for sure, so would
/// the check have.

#include "libReport/CheckedElements.h"

#include <algorithm>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "libDiagnosis/DeviceProblem.h"
#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libReport/CheckReport.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;
using ElementSet = std::unordered_set<const XmlElement*>;

Inventory::DeviceSpec askedByRule(const XmlElement& rule) {
    Inventory::DeviceSpec asked = askedBy(rule);
    if (asked.type.isEmpty()) {
        asked.type = attributeOf(rule, vocabulary::CAPABILITY);
    }
    return asked;
}

Inventory::DeviceSpec firstDeviceIn(const XmlElement& group) {
    for (ScriptWalk walk(group); walk; ++walk) {
        if (walk->kind == ElementKind::Device) {
            return askedBy(*walk->element);
        }
    }
    return {};
}

class CheckingElements {
public:
    CheckingElements(const Inventory& inventory, const CheckReport& report) : m_inventory(inventory), m_report(report) {
        for (const ChosenAlternative& choice : inventory.chosenAlternatives()) {
            m_choices.insert(choice.orElement);
            m_chosen.insert(choice.alternative);
        }
        for (const ExtraDevice& extra : inventory.extraDevicesWithRules()) {
            m_brokenRules.insert(extra.rule);
        }
    }

    std::vector<CheckedElement> elements() {
        walk();
        fileFindings();
        fileDoubts();
        fileFaults();
        settleAlternatives();
        if (m_report.verdict == Verdict::Undecided) {
            for (CheckedElement& element : m_elements) {
                weaken(element);
            }
        }
        return std::move(m_elements);
    }

private:
    void walk() {
        unsigned skipped = NOTHING_SKIPPED;
        for (ScriptWalk walk(*m_inventory.script().RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
            if (walk->depth <= skipped) {
                skipped = isLeftOut(*walk) ? walk->depth : NOTHING_SKIPPED;
            }
            if (add(*walk->element, walk->kind, skipped != NOTHING_SKIPPED)) {
                m_orOf.push_back(walk->alternative == nullptr ? nullptr : parentOf(*walk->alternative));
                walk.skipContent();
            }
        }
    }

    bool isLeftOut(const ScriptPlace& place) const {
        return place.alternative == place.element && m_choices.contains(parentOf(*place.element)) &&
               !m_chosen.contains(place.element);
    }

    static const XmlElement* parentOf(const XmlElement& element) {
        return element.Parent() == nullptr ? nullptr : element.Parent()->ToElement();
    }

    /// Whether there is an entry for the element.
    bool add(const XmlElement& element, ElementKind kind, bool isLeftOut) {
        CheckedElement checked;
        switch (kind) {
            case ElementKind::Device: addDevice(element, checked); break;
            case ElementKind::FailOnExtra: addRule(element, checked); break;
            case ElementKind::Not:
                checked.kind = CheckedElement::Kind::Forbidden;
                checked.asked = firstDeviceIn(element);
                break;
            default: return false;
        }
        checked.place = placeIn(element);
        if (isLeftOut) {
            checked.outcome = CheckedElement::Outcome::NotChosen;
        }
        m_elements.push_back(std::move(checked));
        return true;
    }

    void addDevice(const XmlElement& element, CheckedElement& checked) const {
        checked.asked = askedBy(element);
        if (const IDeviceImp* const device = m_inventory.deviceOf(element)) {
            checked.device = specOf(*device);
        } else {
            checked.outcome = CheckedElement::Outcome::Failed;
        }
    }

    void addRule(const XmlElement& element, CheckedElement& checked) const {
        checked.kind = CheckedElement::Kind::Extra;
        checked.asked = askedByRule(element);
        checked.outcome =
            m_brokenRules.contains(&element) ? CheckedElement::Outcome::Failed : CheckedElement::Outcome::Passed;
    }

    void fileFindings() {
        for (const ReportFinding& finding : m_report.findings) {
            if (finding.kind == FindingKind::UnsatisfiedNot || finding.kind == FindingKind::InvalidExtraRule) {
                setOutcome(finding.place, CheckedElement::Outcome::Failed);
            }
        }
    }

    void fileDoubts() {
        if (m_report.verdict == Verdict::Passed) {
            return;
        }
        for (const Doubt& doubt : m_report.doubts) {
            setOutcome(doubt.device == ElementPlace() ? doubt.place : doubt.device,
                       CheckedElement::Outcome::Undetermined);
        }
    }

    void fileFaults() {
        for (std::size_t i = 0; i < m_report.faults.size(); ++i) {
            const Fault& fault = m_report.faults[i];
            const bool isInDevice = fault.doubt && fault.doubt->device != ElementPlace();
            fileFault(isInDevice ? fault.doubt->device : fault.place, i);
            if (fault.otherPlace) {
                fileFault(*fault.otherPlace, i);
            }
            for (const FoldedFault& folded : fault.withIt) {
                fileFault(folded.place, i);
            }
        }
    }

    void fileFault(const ElementPlace& place, std::size_t index) {
        CheckedElement* const element = at(place);
        if (element != nullptr && (element->faults.empty() || element->faults.back() != index)) {
            element->faults.push_back(index);
        }
    }

    void settleAlternatives() {
        ElementSet told;
        for (std::size_t i = 0; i < m_elements.size(); ++i) {
            CheckedElement& element = m_elements[i];
            if (element.faults.empty()) {
                continue;
            }
            told.insert(m_orOf[i]);
            if (element.outcome == CheckedElement::Outcome::NotChosen) {
                const bool isKnown = m_report.faults[element.faults.front()].kind != FaultKind::Undetermined;
                element.outcome = isKnown ? CheckedElement::Outcome::Failed : CheckedElement::Outcome::Undetermined;
            }
        }
        for (std::size_t i = 0; i < m_elements.size(); ++i) {
            CheckedElement& element = m_elements[i];
            if (element.outcome == CheckedElement::Outcome::Failed && element.faults.empty() && m_orOf[i] != nullptr &&
                told.contains(m_orOf[i])) {
                element.outcome = CheckedElement::Outcome::NotChosen;
            }
        }
    }

    void setOutcome(const ElementPlace& place, CheckedElement::Outcome outcome) {
        CheckedElement* const element = at(place);
        if (element != nullptr && element->outcome != CheckedElement::Outcome::NotChosen) {
            element->outcome = outcome;
        }
    }

    static void weaken(CheckedElement& element) {
        if (element.outcome == CheckedElement::Outcome::Failed) {
            element.outcome = CheckedElement::Outcome::Undetermined;
        }
    }

    /// The entry of the element at exactly that place; entries are in document order.
    CheckedElement* at(const ElementPlace& place) {
        const auto order = [](const ElementPlace& of) {
            return std::tuple(of.row, of.column);
        };
        const auto found = std::ranges::lower_bound(m_elements, order(place), {},
                                                    [order](const CheckedElement& one) { return order(one.place); });
        return found != m_elements.end() && found->place == place ? &*found : nullptr;
    }

    static constexpr unsigned NOTHING_SKIPPED = static_cast<unsigned>(-1);

    const Inventory& m_inventory;
    const CheckReport& m_report;
    ElementSet m_choices;
    ElementSet m_chosen;
    ElementSet m_brokenRules;
    std::vector<CheckedElement> m_elements;
    std::vector<const XmlElement*> m_orOf;  ///< for each entry the nearest `or` around it; null for none
};

}  // namespace

std::vector<CheckedElement> checkedElements(const Inventory& inventory, const CheckReport& report) {
    return CheckingElements(inventory, report).elements();
}

}  // namespace vrx
