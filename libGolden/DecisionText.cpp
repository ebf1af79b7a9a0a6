#include "libGolden/DecisionText.h"

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libGolden/GoldenPattern.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using Subject = GoldenDecision::Subject;
using Choice = GoldenDecision::Choice;
using Reason = GoldenDecision::Reason;

constexpr std::size_t MOST_MACHINES = 3;
constexpr std::size_t MOST_VARIANTS = 6;

std::string valueText(const ValueVariant& variant) {
    String text;
    for (const String& entry : variant.texts) {
        text.append(text.isEmpty() ? u"" : u", ").append(entry);
    }
    return text.isEmpty() ? "(empty)" : printable(text);
}

std::string askedText(const GoldenDraft& draft, const GoldenDecision& decision) {
    const bool isList = decision.variants.front().isList;
    switch (decision.choice) {
        case Choice::Exact: return "is " + valueText(decision.variants.front());
        case Choice::Range:
            return fmt::format("matches {}: {}", printable(patternOf(decision)), variantsText(draft, decision));
        case Choice::Alternatives:
            return fmt::format("is one of {}{}", decision.variants.size(),
                               (isList ? " lists: " : ": ") + variantsText(draft, decision));
        case Choice::LeftOut: break;
    }
    return fmt::format("left out, {}: {}", reasonText(decision.reason), variantsText(draft, decision));
}

std::string presenceText(const GoldenDraft& draft, const GoldenDevice& device) {
    switch (device.presence) {
        case GoldenDevice::Presence::Everywhere: return "on all";
        case GoldenDevice::Presence::NotEverywhere:
            return "not asked for, only on " + machineList(draft, device.holders());
        case GoldenDevice::Presence::Unread: break;
    }
    return fmt::format("not asked for, on {}; the recordings of the others cannot tell",
                       machineList(draft, device.holders()));
}

}  // namespace

std::string machineList(const GoldenDraft& draft, const std::vector<std::size_t>& machines) {
    std::string list;
    for (std::size_t i = 0; i < std::min(machines.size(), MOST_MACHINES); ++i) {
        list += (i > 0 ? ", " : "") + printable(std::string_view(draft.machines[machines[i]]));
    }
    return machines.size() > MOST_MACHINES ? fmt::format("{} and {} more", list, machines.size() - MOST_MACHINES)
                                           : list;
}

std::string subjectText(const GoldenDecision& decision) {
    switch (decision.subject) {
        case Subject::Name: return "name";
        case Subject::HwLocator: return "hardware locator";
        case Subject::OsLocator: return "OS locator";
        case Subject::Property: break;
    }
    return printable(decision.key);
}

std::string variantsText(const GoldenDraft& draft, const GoldenDecision& decision) {
    if (decision.variants.size() == 1 && decision.variants.front().machines.size() == draft.machines.size()) {
        return valueText(decision.variants.front());
    }
    std::string text;
    for (std::size_t i = 0; i < std::min(decision.variants.size(), MOST_VARIANTS); ++i) {
        const ValueVariant& variant = decision.variants[i];
        text += fmt::format("{}{} ({})", i > 0 ? ", " : "", valueText(variant), machineList(draft, variant.machines));
    }
    return decision.variants.size() > MOST_VARIANTS
               ? fmt::format("{} and {} more", text, decision.variants.size() - MOST_VARIANTS)
               : text;
}

std::string_view reasonText(Reason reason) {
    switch (reason) {
        case Reason::None: break;
        case Reason::Identity: return "each piece has its own";
        case Reason::Unique: return "every machine has another";
        case Reason::Place: return "places vary";
        case Reason::TooManyValues: return "too different";
        case Reason::NotEverywhere: return "not on all";
        case Reason::Unread: return "not all recordings can tell";
        case Reason::ChangesByItself: return "changes by itself or belongs to the software";
        case Reason::NotWritable: return "cannot be written as it stands";
        case Reason::NotNeeded: return "not needed to tell it apart";
        case Reason::NotWanted: return "not to be checked";
    }
    return "asked for";
}

std::string deviceText(const GoldenDevice& device) {
    const IDeviceImp& first = device.first();
    std::string text = first.type().toString(0, false).toUtf8();
    if (!first.name().isEmpty()) {
        text += " \"" + printable(first.name()) + "\"";
    }
    return first.hwLocator().isEmpty() ? text : text + " (" + printable(first.hwLocator()) + ")";
}

std::string decisionsText(const GoldenDraft& draft) {
    std::string text = fmt::format("{} machines: ", draft.machines.size());
    for (std::size_t i = 0; i < draft.machines.size(); ++i) {
        text += (i > 0 ? ", " : "") + printable(std::string_view(draft.machines[i]));
    }
    text += "\n";
    for (const GoldenDevice& device : draft.devices) {
        text += fmt::format("\n{}: {}\n", deviceText(device), presenceText(draft, device));
        for (const GoldenDecision& decision : device.decisions) {
            text += fmt::format("    {} {}\n", subjectText(decision), askedText(draft, decision));
        }
    }
    return text;
}

}  // namespace vrx
