/// Whether an answer is certain.
///
/// The script is evaluated once more, from what the run found, with two answers for each element: whether it may hold,
/// and whether it may not. Where nothing is unknown just one of them is true. A device that was not found may be there
/// if a source of its type could not be read, unless another stands at its place; one that was found is doubtful only
/// if it was judged by a property whose value is not known. `not` turns the two around; of an `or` the alternative that
/// was kept counts, and others as far as they hold something doubtful.
///
/// Where an estimate is made it is made so that a doubt is kept: who is in doubt says so.
///
/// A run that failed has failed for sure when the script cannot hold, or when a device is too many that nothing
/// doubtful could have claimed.

#include <algorithm>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "libCommon/text/UuCode.h"
#include "libDiagnosis/DeviceProblem.h"
#include "libDiagnosis/WantedDevices.h"
#include "libDiagnosis/certainty/ContentDoubts.h"
#include "libDiagnosis/certainty/Doubt.h"
#include "libDiagnosis/certainty/HeldDevices.h"
#include "libDiagnosis/certainty/Unknowns.h"
#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;
using Asked = Doubt::Asked;

bool holdsNot(const XmlElement& device) {
    for (ScriptWalk walk(device); walk; ++walk) {
        if (walk->kind == ElementKind::Not) {
            return true;
        }
    }
    return false;
}

struct Truth {
    bool mayHold = true;
    bool mayFail = false;
    bool isDoubtful = false;  ///< something unknown is in it
};

Truth both(const Truth& one, const Truth& other) {
    return {one.mayHold && other.mayHold, one.mayFail || other.mayFail, one.isDoubtful || other.isDoubtful};
}

/// How an element is looked at.
struct View {
    bool isKept = true;          ///< it is part of the combination that the run speaks of
    bool isAlternative = false;  ///< it is part of an alternative of an `or`
    bool isUnderNot = false;     ///< it lies in a `not`, so that a device that others have will do for it
    bool isForbidden = false;    ///< in an odd number of them
};

class CertaintySearch {
public:
    CertaintySearch(const Inventory& inventory, const Unknowns& unknowns, WantedDevices& asked)
        : m_inventory(inventory),
          m_unknowns(unknowns),
          m_asked(asked),
          m_content(unknowns),
          m_held(inventory, unknowns),
          m_extras(inventory.extraDevicesWithRules()) {
        const Array<const XmlElement*> missing = inventory.missingElements();
        m_missing.insert(missing.begin(), missing.end());
        for (const ChosenAlternative& choice : inventory.chosenAlternatives()) {
            m_chosen.emplace(choice.orElement, choice.alternative);
        }
        const RunSummary& summary = inventory.summary();
        m_isOpen = summary.hasUntried;
    }

    Certainty find(bool passed) {
        const XmlElement& root = *m_inventory.script().RootElement();
        const Truth whole = ofContent(root, View());
        const bool isRuleDoubtful = lookAtRules(root);
        const bool isDoubtful = whole.isDoubtful || isRuleDoubtful || m_isOpen;
        Certainty certainty;
        certainty.couldHavePassed = !passed && isDoubtful && whole.mayHold && mayClaimExtras();
        certainty.couldHaveFailed = passed && ((whole.mayFail && whole.isDoubtful) || isRuleDoubtful);
        certainty.doubts = std::move(m_doubts);
        return certainty;
    }

    /// Of a single-device check, which runs on a copy of the device.
    Certainty findForDevice(const IDeviceImp& device, bool passed) {
        const XmlElement* const element = m_inventory.script().RootElement()->FirstChildElement();
        Certainty certainty;
        if (element != nullptr && passed) {
            certainty.couldHaveFailed = hangsOnUnknown(*element, device);
        } else if (element != nullptr) {
            const Array<Candidate> candidates = m_inventory.outcomeOf(*element).candidates;
            certainty.couldHavePassed = !candidates.isEmpty() && mayMeet(*element, candidates[0], device);
        }
        certainty.doubts = std::move(m_doubts);
        return certainty;
    }

private:
    Truth of(const XmlElement& element, const View& view) {
        switch (vocabulary::kindOf(element)) {
            case ElementKind::InventoryCheck:
            case ElementKind::And:
            case ElementKind::Part: return ofContent(element, view);
            case ElementKind::Or: return ofAlternatives(element, view);
            case ElementKind::Not: return ofNot(element, view);
            case ElementKind::Device: return ofDevice(element, view);
            default: return {};
        }
    }

    Truth ofContent(const XmlElement& element, const View& view) {
        Truth truth;
        for (const XmlElement* const child : childElements(element)) {
            truth = both(truth, of(*child, view));
        }
        return truth;
    }

    Truth ofNot(const XmlElement& element, const View& view) {
        if (element.FirstChildElement() == nullptr) {
            return {};
        }
        const Truth content = ofContent(element, {view.isKept, view.isAlternative, true, !view.isForbidden});
        return {content.mayFail, content.mayHold, content.isDoubtful};
    }

    Truth ofAlternatives(const XmlElement& element, const View& view) {
        if (element.FirstChildElement() == nullptr) {
            return {};
        }
        const auto chosen = view.isKept ? m_chosen.find(&element) : m_chosen.end();
        Truth truth{false, chosen == m_chosen.end() && !view.isForbidden, false};
        for (const XmlElement* const child : childElements(element)) {
            const bool isKept = chosen != m_chosen.end() && chosen->second == child;
            const Truth one = of(*child, {isKept, true, view.isUnderNot, view.isForbidden});
            if (isKept) {
                truth.mayHold = truth.mayHold || one.mayHold;
                truth.mayFail = one.mayFail || (view.isForbidden && truth.mayFail);
                truth.isDoubtful = truth.isDoubtful || one.isDoubtful;
                continue;
            }
            truth.mayFail = truth.mayFail || (view.isForbidden && one.mayFail);
            if (one.mayHold) {
                truth.mayHold = true;
                truth.isDoubtful = truth.isDoubtful || one.isDoubtful;
            }
        }
        return truth;
    }

    Truth ofDevice(const XmlElement& element, const View& view) {
        const bool isFound = view.isKept && !view.isUnderNot && !m_missing.contains(&element);
        if (isFound && !m_unknowns.hasWrongValues() && !(m_unknowns.hasProperties() && holdsNot(element))) {
            noteHeld(element, view);
            return {};
        }
        const DeviceOutcome outcome = m_inventory.outcomeOf(element);
        if (view.isKept && outcome.isSatisfied) {
            noteHeld(element, view);
            return ofFound(element, outcome);
        }
        Truth truth{false, true, false};
        if (view.isUnderNot && hasSureOne(element, outcome)) {
            return {};
        }
        for (const Candidate& candidate : outcome.candidates) {
            if (candidate.failures.isEmpty() && view.isUnderNot) {
                truth.isDoubtful = hangsOnUnknown(element, *candidate.device);
            } else if (candidate.failures.isEmpty()) {
                truth.mayHold = truth.mayHold || !view.isKept || m_isOpen;
                if (!view.isKept) {
                    m_mayBeClaimed.insert(candidate.device.get());
                }
                truth.isDoubtful = truth.isDoubtful || mayGiveUp(candidate.holder, element, view);
            } else if (mayMeet(element, candidate, *candidate.device)) {
                truth.isDoubtful = true;
                m_mayBeClaimed.insert(candidate.device.get());
            }
        }
        if (truth.isDoubtful) {
            return {true, true, true};
        }
        const WantedDevice& asked = m_asked.of(element);
        if (m_unknowns.isPlaceTaken(asked.spec.hwLocator, asked.type)) {
            return truth;
        }
        if (std::optional<Doubt> doubt = m_unknowns.hidden(asked.type, view.isForbidden)) {
            keep(*doubt, view.isForbidden ? Asked::Forbidden : Asked::Device, element);
            return {true, true, true};
        }
        return truth;
    }

    /// Whether a device is what the element asks for, free or not.
    bool hasSureOne(const XmlElement& element, const DeviceOutcome& outcome) const {
        return std::any_of(outcome.candidates.begin(), outcome.candidates.end(), [&](const Candidate& candidate) {
            ContentDoubts::List found;
            return candidate.failures.isEmpty() && !m_content.hangsOnUnknown(element, *candidate.device, found);
        });
    }

    /// The devices too many are those of the last combination, where other alternatives may have held devices.
    void noteHeld(const XmlElement& element, const View& view) {
        if (!view.isAlternative || m_extras.isEmpty()) {
            return;
        }
        for (const Candidate& candidate : m_inventory.outcomeOf(element).candidates) {
            if (candidate.failures.isEmpty()) {
                m_mayBeClaimed.insert(candidate.device.get());
            }
        }
    }

    /// Of an element with a device: in doubt when it asks for a property of it that is not known.
    Truth ofFound(const XmlElement& element, const DeviceOutcome& outcome) {
        for (const Candidate& candidate : outcome.candidates) {
            if (candidate.holder == &element && hangsOnUnknown(element, *candidate.device)) {
                return {true, true, true};
            }
        }
        return {true, false, false};
    }

    bool mayMeet(const XmlElement& element, const Candidate& candidate, const IDeviceImp& device) {
        ContentDoubts::List found;
        const bool may = m_content.mayMeet(element, candidate, device, found);
        keepAll(found);
        return may;
    }

    bool hangsOnUnknown(const XmlElement& element, const IDeviceImp& device) {
        ContentDoubts::List found;
        const bool hangs = m_content.hangsOnUnknown(element, device, found);
        keepAll(found);
        return hangs;
    }

    /// Whether the element that has a device may leave it to the asking one.
    bool mayGiveUp(const XmlElement* holder, const XmlElement& asking, const View& view) {
        const std::optional<Doubt> doubt = holder != nullptr ? m_held.mayGiveUp(*holder) : std::nullopt;
        if (doubt) {
            keep(*doubt, view.isForbidden ? Asked::Forbidden : Asked::Device, asking);
        }
        return doubt.has_value();
    }

    /// Whether each device that is too many may be what a doubtful element asks for.
    bool mayClaimExtras() const {
        return std::all_of(m_extras.begin(), m_extras.end(), [&](const ExtraDevice& extra) {
            return m_isOpen || m_mayBeClaimed.contains(extra.device.get()) || m_doubtfulRules.contains(extra.rule);
        });
    }

    /// Whether some rule for extra devices cannot see what it has to look at.
    bool lookAtRules(const XmlElement& root) {
        bool isDoubtful = false;
        for (ScriptWalk walk(root, ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
            if (walk->kind == ElementKind::FailOnExtra) {
                isDoubtful = lookAtRule(*walk->element) || isDoubtful;
            } else if (walk->kind == ElementKind::Device) {
                walk.skipContent();
            }
        }
        return isDoubtful;
    }

    bool lookAtRule(const XmlElement& rule) {
        for (const StringView attribute : {vocabulary::TYPE, vocabulary::CAPABILITY}) {
            if (std::optional<Doubt> doubt = m_unknowns.hidden(CapabilityImp(rule.Attribute(attribute)), true)) {
                keep(*doubt, Asked::Extra, rule);
                return true;
            }
        }
        if (std::optional<Doubt> doubt = m_unknowns.hiddenOfAnyType()) {
            keep(*doubt, Asked::Extra, rule);
            return true;
        }
        return m_unknowns.hasProperties() && lookAtContent(rule);
    }

    /// Whether the rule asks for a property that is not known of a device that it covers.
    bool lookAtContent(const XmlElement& rule) {
        const CapabilityImp type(rule.Attribute(vocabulary::TYPE));
        const CapabilityImp capability(rule.Attribute(vocabulary::CAPABILITY));
        for (ScriptWalk walk(rule); walk; ++walk) {
            if (walk->kind != ElementKind::Property) {
                continue;
            }
            const String key = fromXmlSafe(attributeOf(*walk->element, vocabulary::KEY));
            if (std::optional<Doubt> doubt = m_unknowns.property(type | capability, key)) {
                doubt->key = key;
                keep(*doubt, Asked::Property, *walk->element);
                m_doubtfulRules.insert(&rule);
                return true;
            }
        }
        return false;
    }

    void keep(Doubt doubt, Asked asked, const XmlElement& element) {
        doubt.asked = asked;
        doubt.place = placeIn(element);
        if (asked == Asked::Extra) {
            const StringView type = element.Attribute(vocabulary::TYPE);
            doubt.spec.type = type.empty() ? element.Attribute(vocabulary::CAPABILITY) : type;
        } else if (const XmlElement* const device = deviceAround(element)) {
            doubt.spec = askedBy(*device);
            doubt.device = placeIn(*device);
        }
        if (m_kept.emplace(&element, asked).second) {
            m_doubts.push_back(std::move(doubt));
        }
    }

    void keepAll(const ContentDoubts::List& found) {
        for (const ContentDoubts::Found& one : found) {
            keep(one.doubt, Asked::Property, *one.property);
        }
    }

    const Inventory& m_inventory;
    const Unknowns& m_unknowns;
    WantedDevices& m_asked;
    ContentDoubts m_content;
    HeldDevices m_held;
    Array<ExtraDevice> m_extras;
    std::unordered_set<const XmlElement*> m_missing;
    std::unordered_map<const XmlElement*, const XmlElement*> m_chosen;
    std::unordered_set<const IDeviceImp*> m_mayBeClaimed;   // by elements in doubt, or of other alternatives
    std::unordered_set<const XmlElement*> m_doubtfulRules;  // whose content asks for what is not known
    std::set<std::pair<const XmlElement*, Asked>> m_kept;   // who has a doubt already
    std::vector<Doubt> m_doubts;
    bool m_isOpen = false;  ///< not all combinations were tried
};

}  // namespace

Certainty certaintyOf(const Inventory& inventory, const StateManager& machine, const ImportReport* import,
                      bool passed) {
    WantedDevices asked;
    return certaintyOf(inventory, machine, import, passed, asked);
}

Certainty certaintyOf(const Inventory& inventory, const StateManager& machine, const ImportReport* import, bool passed,
                      WantedDevices& asked) {
    const Unknowns unknowns(machine, import);
    const RunSummary& summary = inventory.summary();
    const bool isOpen = summary.hasUntried;
    if (unknowns.isEmpty() && (passed || !isOpen)) {
        return {};
    }
    return CertaintySearch(inventory, unknowns, asked).find(passed);
}

Certainty certaintyOfDevice(const Inventory& engine, const IDeviceImp& device, const StateManager& machine,
                            const ImportReport* import, bool passed) {
    const Unknowns unknowns(machine, import);
    WantedDevices asked;
    return unknowns.hasProperties() ? CertaintySearch(engine, unknowns, asked).findForDevice(device, passed)
                                    : Certainty();
}

}  // namespace vrx
