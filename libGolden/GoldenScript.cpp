/// Writes a draft as a script.
///
/// Elements with a hardware locator come first, then those that may get any device of their sort, the one that asks for
/// more before the one that asks for less: so no wide element takes a narrow one's device. What does not change the
/// answer is not written: types of properties, switches that are on, locators that tell nothing.

#include "libGolden/GoldenScript.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "libCommon/text/UuCode.h"
#include "libCommon/xml/XmlDocument.h"
#include "libGolden/DecisionText.h"
#include "libGolden/GoldenPattern.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/PropertyKinds.h"

namespace vrx {

namespace {

using Subject = GoldenDecision::Subject;
using Choice = GoldenDecision::Choice;
using Reason = GoldenDecision::Reason;
using Presence = GoldenDevice::Presence;
using Devices = std::vector<const GoldenDevice*>;

/// By the set of devices of it: who has that set.
using OptionalSets = std::map<Devices, std::vector<std::size_t>>;

OptionalSets optionalSets(const GoldenDraft& draft) {
    std::vector<Devices> byMachine(draft.machines.size());
    for (const GoldenDevice& device : draft.devices) {
        if (device.presence == Presence::NotEverywhere) {
            for (const std::size_t machine : device.holders()) {
                byMachine[machine].push_back(&device);
            }
        }
    }
    OptionalSets sets;
    for (std::size_t machine = 0; machine < byMachine.size(); ++machine) {
        sets[byMachine[machine]].push_back(machine);
    }
    return sets;
}

/// Whether the reader of the script is to know why. That a name is exact is seen.
bool isWorthAComment(const GoldenDecision& decision) {
    switch (decision.reason) {
        case Reason::None: return decision.choice != Choice::Exact;
        case Reason::Place: return decision.variants.size() > 1;
        case Reason::ChangesByItself: return kindOfProperty(decision.key) == PropertyKind::Measurement;
        case Reason::NotNeeded:
        case Reason::NotWanted: return false;
        default: return true;
    }
}

int askedCount(const GoldenDevice& device) {
    return static_cast<int>(std::ranges::count_if(device.decisions, &GoldenDecision::isAsked));
}

bool hasPlace(const GoldenDevice& device) {
    return std::ranges::any_of(device.decisions, [](const GoldenDecision& decision) {
        return decision.subject == Subject::HwLocator && decision.isAsked();
    });
}

void sortForCheck(Devices& devices) {
    std::ranges::stable_sort(devices, {}, [](const GoldenDevice* device) {
        return hasPlace(*device) ? std::pair(0, 0) : std::pair(1, -askedCount(*device));
    });
}

class Writer {
public:
    Writer(const GoldenDraft& draft, const GoldenForm& form) : m_draft(draft), m_form(form) {}

    String write() {
        XmlElement* const root = m_document.NewElement(vocabulary::INVENTORY_CHECK);
        if (m_form.hasComments) {
            addComment(*root,
                       (m_draft.machines.size() == 1 ? "What makes the model of " : "What these have in common: ") +
                           allMachines());
        }
        Devices devices;
        for (const GoldenDevice& device : m_draft.devices) {
            if (device.presence == Presence::Everywhere) {
                devices.push_back(&device);
            }
        }
        addDevices(*root, std::move(devices));
        addOptional(*root);
        for (const String& type : m_draft.closedTypes) {
            XmlElement* const rule = m_document.NewElement(vocabulary::FAIL_ON_EXTRA);
            rule->SetAttribute(vocabulary::TYPE, type);
            root->LinkEndChild(rule);
        }
        m_document.LinkEndChild(root);
        String script;
        m_document.GetFormattedStr(script, 0);
        return script;
    }

private:
    /// A comment ends at "--", and holds no control characters.
    void addComment(XmlElement& parent, const std::string& text) {
        String comment = String::UTF8Decode(" " + text + " ");
        while (comment.view().find(u"--") != StringView::npos) {
            comment.replace(u"--", u"- -");
        }
        parent.LinkEndChild(m_document.NewComment(comment));
    }

    std::string allMachines() const {
        std::string text;
        for (const std::string& name : m_draft.machines) {
            text += (text.empty() ? "" : ", ") + name;
        }
        return text;
    }

    void addDevices(XmlElement& parent, Devices devices) {
        sortForCheck(devices);
        for (const GoldenDevice* const device : devices) {
            parent.LinkEndChild(newDevice(*device));
        }
    }

    XmlElement* newDevice(const GoldenDevice& device) {
        XmlElement* const element = m_document.NewElement(vocabulary::DEVICE);
        element->SetAttribute(vocabulary::TYPE, device.first().type().toString(0, false));
        if (m_form.hasComments) {
            addLeftOut(*element, device);
        }
        for (const GoldenDecision& decision : device.decisions) {
            if (!decision.isAsked()) {
                continue;
            }
            if (m_form.hasComments && isWorthAComment(decision)) {
                addComment(*element, subjectText(decision) + ": " + variantsText(m_draft, decision));
            }
            switch (decision.subject) {
                case Subject::Name: element->SetAttribute(vocabulary::NAME, patternOf(decision)); break;
                case Subject::HwLocator:
                    element->SetAttribute(vocabulary::HW_LOCATOR, decision.variants.front().texts[0]);
                    break;
                case Subject::OsLocator:
                    element->SetAttribute(vocabulary::OS_LOCATOR, decision.variants.front().texts[0]);
                    break;
                case Subject::Property: addProperty(*element, decision); break;
            }
        }
        return element;
    }

    /// One comment for each reason.
    void addLeftOut(XmlElement& element, const GoldenDevice& device) {
        std::map<Reason, std::string> lists;
        for (const GoldenDecision& decision : device.decisions) {
            if (decision.isAsked() || !isWorthAComment(decision)) {
                continue;
            }
            std::string& list = lists[decision.reason];
            list += (list.empty() ? "" : "; ") + subjectText(decision);
            if (decision.reason != Reason::Identity && decision.reason != Reason::Unique &&
                decision.reason != Reason::ChangesByItself) {
                list += ": " + variantsText(m_draft, decision);
            }
        }
        for (const auto& [reason, list] : lists) {
            addComment(element, fmt::format("left out, {}: {}", reasonText(reason), list));
        }
    }

    /// A list that varies is a choice of properties; one pattern says everything else.
    void addProperty(XmlElement& device, const GoldenDecision& decision) {
        const bool hasList = std::ranges::any_of(decision.variants, &ValueVariant::isList);
        if (!hasList) {
            XmlElement* const property = newProperty(decision.key);
            property->SetAttribute(vocabulary::VALUE, patternOf(decision));
            device.LinkEndChild(property);
            return;
        }
        XmlElement* parent = &device;
        if (decision.variants.size() > 1) {
            parent = m_document.NewElement(vocabulary::OR);
            device.LinkEndChild(parent);
        }
        for (const ValueVariant& variant : decision.variants) {
            addVariant(*parent, decision.key, variant);
        }
    }

    void addVariant(XmlElement& parent, const String& key, const ValueVariant& variant) {
        XmlElement* const property = newProperty(key);
        if (!variant.isList) {
            property->SetAttribute(vocabulary::VALUE, exactPattern(variant.texts[0]));
        } else {
            for (const String& text : variant.texts) {
                XmlElement* const value = m_document.NewElement(vocabulary::VALUE);
                value->SetAttribute(vocabulary::VALUE, exactPattern(text));
                property->LinkEndChild(value);
            }
        }
        parent.LinkEndChild(property);
    }

    XmlElement* newProperty(const String& key) {
        XmlElement* const property = m_document.NewElement(vocabulary::PROPERTY);
        property->SetAttribute(vocabulary::KEY, key);
        return property;
    }

    void addOptional(XmlElement& root) {
        const OptionalSets sets = optionalSets(m_draft);
        const bool hasChoice =
            m_form.optional == GoldenForm::Optional::Alternatives && optionalProblem(m_draft) == OptionalProblem::None;
        if (m_form.hasComments) {
            for (const GoldenDevice& device : m_draft.devices) {
                if (device.presence == Presence::Unread || (!hasChoice && device.presence == Presence::NotEverywhere)) {
                    addComment(
                        root,
                        fmt::format(
                            "{}: {}on {}{}", deviceText(device), device.presence == Presence::Unread ? "" : "only ",
                            machineList(m_draft, device.holders()),
                            device.presence == Presence::Unread ? "; the recordings of the others cannot tell" : ""));
                }
            }
        }
        if (hasChoice) {
            addChoice(root, sets);
        }
    }

    void addChoice(XmlElement& root, const OptionalSets& sets) {
        Devices all;
        for (const GoldenDevice& device : m_draft.devices) {
            if (device.presence == Presence::NotEverywhere) {
                all.push_back(&device);
            }
        }
        XmlElement* const choice = m_document.NewElement(vocabulary::OR);
        std::vector<std::pair<XmlElement*, std::vector<std::size_t>>> groups;
        std::map<String, std::size_t> numbers;  // by what they ask for: sets that differ in places may ask for the same
        for (const auto& [devices, machines] : sets) {
            XmlElement* const group = groupOf(devices, all);
            const auto [at, isNew] = numbers.try_emplace(withoutComments(*group), groups.size());
            if (isNew) {
                groups.emplace_back(group, machines);
            } else {
                std::vector<std::size_t>& known = groups[at->second].second;
                known.insert(known.end(), machines.begin(), machines.end());
                std::ranges::sort(known);
            }
        }
        for (const auto& [group, machines] : groups) {
            if (m_form.hasComments) {
                addComment(*choice, machineList(m_draft, machines));
            }
            choice->LinkEndChild(group);
        }
        root.LinkEndChild(groups.size() > 1 ? choice : groups.front().first);
    }

    XmlElement* groupOf(const Devices& devices, const Devices& all) {
        Devices sorted = devices.empty() ? all : devices;
        sortForCheck(sorted);
        const auto elementOf = [&](const GoldenDevice* device) {
            return devices.empty() ? newAbsence(*device) : newDevice(*device);
        };
        if (sorted.size() == 1) {
            return elementOf(sorted.front());
        }
        XmlElement* const group = m_document.NewElement(vocabulary::AND);
        for (const GoldenDevice* const device : sorted) {
            group->LinkEndChild(elementOf(device));
        }
        return group;
    }

    XmlElement* newAbsence(const GoldenDevice& device) {
        XmlElement* const forbidden = m_document.NewElement(vocabulary::NOT);
        forbidden->LinkEndChild(newDevice(device));
        return forbidden;
    }

    static String withoutComments(const XmlElement& element) {
        String text = element.toString();
        for (std::size_t at = text.view().find(u"<!--"); at != StringView::npos; at = text.view().find(u"<!--")) {
            text.remove(at, text.view().find(u"-->", at) + 3 - at);
        }
        return text;
    }

    const GoldenDraft& m_draft;
    const GoldenForm& m_form;
    XmlDocument m_document;
};

}  // namespace

OptionalProblem optionalProblem(const GoldenDraft& draft) {
    const OptionalSets sets = optionalSets(draft);
    if (sets.size() > MOST_OPTIONAL_SETS) {
        return OptionalProblem::TooMany;
    }
    const bool areAllPlaced = std::ranges::all_of(draft.devices, [](const GoldenDevice& device) {
        return device.presence != Presence::NotEverywhere || hasPlace(device);
    });
    return sets.size() == 1                            ? OptionalProblem::Nothing
           : sets.contains(Devices()) && !areAllPlaced ? OptionalProblem::NoneWithoutPlace
                                                       : OptionalProblem::None;
}

String goldenScript(const GoldenDraft& draft, const GoldenForm& form) { return Writer(draft, form).write(); }

}  // namespace vrx
