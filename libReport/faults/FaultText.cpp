/// The words of faults. Where a fault has a place, that comes first and the type suffices; else the name has to tell
/// which one is meant.

#include "libReport/faults/FaultText.h"

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libReport/faults/DifferenceText.h"
#include "libReport/faults/FoldedText.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_ALTERNATIVES = 3;

std::string placeName(const Inventory::DeviceSpec& device) {
    return printable(device.hwLocator.isEmpty() ? device.osLocator : device.hwLocator);
}

/// The place that somebody goes to.
std::string placeName(const Fault& fault) {
    const std::string asked = placeName(fault.asked);
    return fault.device && (asked.empty() || fault.asked.hwLocator.isEmpty()) ? placeName(fault.device->spec) : asked;
}

std::string typeOf(const Fault& fault) {
    const String& type = fault.device ? fault.device->spec.type : fault.asked.type;
    return type.isEmpty() ? "device" : printable(type);
}

/// The name that an element asks for, in quotes unless it is a true pattern; empty when it asks for none.
std::string askedName(const String& asked) {
    if (asked.isEmpty()) {
        return {};
    }
    const std::string name = readablePattern(asked);
    return isReadAsText(asked) && !name.starts_with('"') ? "\"" + name + "\"" : name;
}

std::string withName(const std::string& type, const std::string& name) {
    return name.empty() ? type : type + " " + name;
}

/// `dimm:B3: MemoryModule`, with the name where there is no place.
std::string leadOf(const Fault& fault, bool isNamed) {
    const std::string place = placeName(fault);
    const bool hasName = fault.device && !fault.device->spec.name.isEmpty();
    const std::string name = hasName ? "\"" + printable(fault.device->spec.name) + "\"" : askedName(fault.asked.name);
    const std::string type = withName(typeOf(fault), place.empty() || isNamed ? name : std::string());
    return place.empty() ? type : place + ": " + type;
}

std::string article(const std::string& noun) {
    const bool isSpokenWithVowel = noun.find_first_of("AEIOUaeiou") == 0 || noun.starts_with("Nvme");
    return (isSpokenWithVowel ? "an " : "a ") + noun;
}

std::string more(std::size_t count, const std::string& noun) {
    return count == 0 ? std::string() : ", and " + counted(count, "more " + noun);
}

std::string differencesText(const std::vector<Difference>& differences) {
    const std::vector<DifferenceLine> lines = differenceLines(differences);
    return lines.empty() ? " is not what the script asks for"
                         : " " + sentenceOf(lines.front()) + more(lines.size() - 1, "difference");
}

std::string alternativesText(const Fault& fault) {
    std::string text;
    for (std::size_t i = 0; i < std::min(fault.alternatives.size(), MOST_ALTERNATIVES); ++i) {
        const Inventory::DeviceSpec& other = fault.alternatives[i];
        const std::string place = placeName(other);
        text += (text.empty() ? " (or " : " or ") + withName(article(printable(other.type)), askedName(other.name)) +
                (place.empty() || place == placeName(fault) ? "" : " at " + place);
    }
    return text.empty() ? text : text + ")";
}

std::string likeText(const LikeDevices& alike) {
    if (alike.asked < 2 || !alike.one) {
        return {};
    }
    if (alike.asked == 2) {
        const std::string place = placeName(alike.one->spec);
        return "; the other of its kind" + (place.empty() ? "" : ", " + place + ",") + " is there";
    }
    return fmt::format("; {} of {} of its kind are there", alike.present, alike.asked);
}

std::string inParentheses(const std::string& text) { return text.empty() ? text : " (" + text + ")"; }

std::string withItText(const Fault& fault) {
    return fault.withIt.empty() ? std::string() : " with " + counted(fault.withIt.size(), "device") + " below it";
}

bool isOfNoType(const Fault& fault) { return fault.refusal && fault.refusal->kind == FindingKind::InvalidDeviceType; }

std::string missingText(const Fault& fault) {
    if (isOfNoType(fault)) {
        return leadOf(fault, true) + " cannot be found: that is no device type";
    }
    std::string text = leadOf(fault, true) + " is missing";
    if (fault.taken && fault.candidates == 1) {
        return text + fmt::format(": the element at {}:{} has it", fault.taken->holder.row, fault.taken->holder.column);
    }
    if (const std::string shortage = shortageText(fault); !shortage.empty()) {
        return text + withItText(fault) + ": " + shortage;
    }
    const std::string number = askedPartNumber(fault);
    text += (number == readablePattern(fault.asked.name) ? "" : inParentheses(number)) + withItText(fault) +
            likeText(fault.alike);
    if (fault.nearest && !fault.nearest->differences.empty() && !fault.alike.one) {
        text += "; nearest is " + deviceTitle(fault.nearest->device) + ", which" +
                differencesText(fault.nearest->differences);
    }
    return text;
}

std::string serialText(const std::optional<DeviceIdentity>& device) {
    return device && !device->serialNumber.isEmpty() ? " (serial number " + printable(device->serialNumber) + ")" : "";
}

const Difference* differenceIn(const Fault& fault, std::initializer_list<StringView> keys) {
    for (const StringView key : keys) {
        const auto at = std::ranges::find_if(fault.differences, [key](const Difference& difference) {
            return difference.what == Difference::What::Property && difference.key == key;
        });
        if (at != fault.differences.end()) {
            return &*at;
        }
    }
    return nullptr;
}

std::string instead(const Difference& difference) {
    return foundText(difference) + " in place of " + expectedText(difference);
}

std::string otherModelText(const Fault& fault) {
    const std::string lead = leadOf(fault, false);
    const Difference* const model = differenceIn(fault, {property::PART_NUMBER, property::MODEL, property::VENDOR});
    if (const Difference* const size = differenceIn(fault, {property::SIZE})) {
        return lead + differencesText({*size}) + " (another model" +
               (model == nullptr ? "" : ", " + foundText(*model)) + ")";
    }
    const Difference& first = model != nullptr ? *model : fault.differences.front();
    return lead + " was replaced by another model, " + instead(first);
}

/// What was put in, told by what matters most: what it is, how large it is, which model, which one.
std::string replacedText(const Fault& fault) {
    const Difference& first = fault.differences.front();
    if (first.what == Difference::What::Type) {
        return placeName(fault) + ": " + article(foundText(first)) + " in place of " + article(expectedText(first));
    }
    if (fault.replacement == Replacement::OtherModel) {
        return otherModelText(fault);
    }
    const char* const kind = fault.replacement == Replacement::SameModel ? "one of the same model" : "another one";
    if (const Difference* const size = differenceIn(fault, {property::SIZE})) {
        return leadOf(fault, false) + differencesText({*size}) + " (" + kind + ")";
    }
    return leadOf(fault, false) + " was replaced by " + kind + ", " + instead(first) +
           more(differenceLines(fault.differences).size() - 1, "difference");
}

std::string movedText(const Fault& fault) {
    const bool isHardware = !fault.asked.hwLocator.isEmpty();
    const Inventory::DeviceSpec& device = fault.device->spec;
    return typeOf(fault) + " moved " + printable(isHardware ? fault.asked.hwLocator : fault.asked.osLocator) + " → " +
           printable(isHardware ? device.hwLocator : device.osLocator) + serialText(fault.device) +
           (fault.other ? "; another stands in its place" : "");
}

std::string swappedText(const Fault& fault) {
    return placeName(fault.asked) + " and " + placeName(fault.device->spec) + ": the " + pluralOf(typeOf(fault)) +
           " are swapped";
}

std::string determinedText(const Fault& fault) {
    switch (fault.kind) {
        case FaultKind::Missing: return missingText(fault) + alternativesText(fault);
        case FaultKind::Wrong:
            return leadOf(fault, false) + differencesText(fault.differences) + alternativesText(fault);
        case FaultKind::Extra:
            return leadOf(fault, true) + " is too many" + withItText(fault) + serialText(fault.device);
        case FaultKind::Moved: return movedText(fault);
        case FaultKind::Swapped: return swappedText(fault);
        case FaultKind::Replaced: return replacedText(fault) + alternativesText(fault);
        case FaultKind::Forbidden: return leadOf(fault, true) + " must not be there" + serialText(fault.device);
        case FaultKind::Undetermined: break;
    }
    return fault.doubt ? doubtText(*fault.doubt) : leadOf(fault, true) + " cannot be tried: that is no device type";
}

std::string replacementWords(const Fault& fault) {
    switch (fault.replacement) {
        case Replacement::SameModel: return "was replaced by one of the same model";
        case Replacement::OtherModel: return "was replaced by another model";
        case Replacement::Unknown: break;
    }
    return "was replaced by another one";
}

/// The place or places, the type, the name.
std::string headingWith(const Fault& fault, const std::string& words) {
    const bool hasName = fault.device && !fault.device->spec.name.isEmpty();
    const std::string name = hasName ? "\"" + printable(fault.device->spec.name) + "\"" : askedName(fault.asked.name);
    std::string place = placeName(fault);
    std::string type = typeOf(fault);
    if (fault.kind == FaultKind::Swapped) {
        place = placeName(fault.asked) + " and " + placeName(fault.device->spec);
        type = pluralOf(type);
    } else if (fault.kind == FaultKind::Moved) {
        place = placeName(fault.asked) + " → " + placeName(fault.device->spec);
    }
    return (place.empty() ? "" : place + "  ") + withName(type, fault.kind == FaultKind::Swapped ? "" : name) + " " +
           words;
}

std::string wordsOf(const Array<String>& words) {
    std::string text;
    for (const String& line : words) {
        text += (text.empty() ? "" : "; ") + printable(line);
    }
    return text;
}

}  // namespace

std::string faultTitleOf(const Inventory::DeviceSpec& asked) {
    const std::string title = withName(asked.type.isEmpty() ? "device" : printable(asked.type), askedName(asked.name));
    const std::string place = placeName(asked);
    return place.empty() ? title : title + " (" + place + ")";
}

std::string faultTitle(const Fault& fault) {
    return fault.device ? deviceTitle(fault.device->spec) : faultTitleOf(fault.asked);
}

std::string faultHeading(const Fault& fault) {
    if (!fault.words.isEmpty()) {
        return wordsOf(fault.words);
    }
    switch (fault.kind) {
        case FaultKind::Missing: return headingWith(fault, isOfNoType(fault) ? "is no device type" : "is missing");
        case FaultKind::Wrong:
            return headingWith(fault, fault.isOfOtherMachine ? "says that this is another machine" : "differs");
        case FaultKind::Extra: return headingWith(fault, "is too many");
        case FaultKind::Moved: return headingWith(fault, "moved");
        case FaultKind::Swapped: return headingWith(fault, "are swapped");
        case FaultKind::Replaced: return headingWith(fault, replacementWords(fault));
        case FaultKind::Forbidden: return headingWith(fault, "must not be there");
        case FaultKind::Undetermined: break;
    }
    return determinedText(fault);
}

std::string faultText(const Fault& fault) {
    if (!fault.words.isEmpty()) {
        return wordsOf(fault.words);
    }
    const std::string text = determinedText(fault);
    return fault.isOfOtherMachine ? "another machine: " + text : text;
}

std::string shortageText(const Fault& fault) {
    if (!fault.shortage || fault.shortage->isOfOneKind) {
        return {};
    }
    return counted(fault.shortage->elements, "element") + " ask for " + counted(fault.shortage->devices, "device");
}

std::string askedPartNumber(const Fault& fault) {
    for (const StringView key : {property::PART_NUMBER, property::MODEL}) {
        const AskedProperty* const asked = fault.askedProperty(key);
        const String number = asked != nullptr ? asked->literal() : String();
        if (!number.isEmpty()) {
            return printable(number);
        }
    }
    if (fault.alike.one) {
        const DeviceIdentity& one = *fault.alike.one;
        return printable(one.partNumber.isEmpty() ? one.model : one.partNumber);
    }
    return {};
}

}  // namespace vrx
