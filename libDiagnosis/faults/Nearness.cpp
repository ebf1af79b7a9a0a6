#include "libDiagnosis/faults/Nearness.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"
#include "libCommon/values/Unit.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libRegex/Regex.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

constexpr double UNRELATED = 1;

struct Quantity {
    double low = 0;
    double high = 0;
    StringView units;
};

/// "16 GB" or "16".
std::optional<Quantity> measured(StringView text) {
    const std::size_t blank = std::min(text.find(u' '), text.size());
    const std::optional<double> number = parseReal(text.substr(0, blank));
    return number ? std::optional(Quantity{*number, *number, text.substr(std::min(blank + 1, text.size()))})
                  : std::nullopt;
}

/// "^VRXRRANGE[15-17] GB$".
std::optional<Quantity> range(StringView pattern) {
    const StringView marker = Regex::VRXRRANGE();
    const std::size_t start = pattern.find(marker);
    const std::size_t end = pattern.find(u']');
    if (start == StringView::npos || end == StringView::npos || end < start + marker.size() + 2) {
        return std::nullopt;
    }
    const StringView bounds = pattern.substr(start + marker.size() + 1, end - start - marker.size() - 1);
    const std::size_t hyphen = bounds.find(u'-', 1);
    if (hyphen == StringView::npos) {
        return std::nullopt;
    }
    const std::optional<double> one = parseReal(bounds.substr(0, hyphen));
    const std::optional<double> other = parseReal(bounds.substr(hyphen + 1));
    StringView units = pattern.substr(end + 1);
    units.remove_prefix(units.starts_with(u' ') ? 1 : 0);
    units.remove_suffix(units.ends_with(u'$') ? 1 : 0);
    return one && other ? std::optional(Quantity{std::min(*one, *other), std::max(*one, *other), units}) : std::nullopt;
}

std::optional<double> inUnits(double number, StringView from, StringView to) {
    if (from == to) {
        return number;
    }
    const std::optional<Unit> source = Unit::lookupByString(from);
    const std::optional<Unit> target = Unit::lookupByString(to);
    return source && target ? source->convert(number, *target) : std::nullopt;
}

StringView placeAsked(const XmlElement& element, bool& isHardware) {
    const StringView hardware = attributeOf(element, vocabulary::HW_LOCATOR);
    isHardware = !hardware.empty();
    return isHardware ? hardware : attributeOf(element, vocabulary::OS_LOCATOR);
}

}  // namespace

double numericDistance(StringView pattern, StringView found) {
    String literal;
    const std::optional<Quantity> asked =
        Regex::isAnchoredLiteral(pattern, literal) ? measured(literal) : range(pattern);
    const std::optional<Quantity> value = measured(found);
    if (!asked || !value) {
        return UNRELATED;
    }
    const std::optional<double> number = inUnits(value->low, value->units, asked->units);
    if (!number) {
        return UNRELATED;
    }
    const double nearest = std::clamp(*number, asked->low, asked->high);
    const double largest = std::max(std::abs(nearest), std::abs(*number));
    return largest > 0 ? std::abs(*number - nearest) / largest : 0;
}

// The place counts even where the root of the script switches its check off: it is where somebody would look first.
Nearness nearnessOf(const Candidate& candidate, const XmlElement& element) {
    Nearness nearness{candidate.failures.size(), true, 0};
    bool isHardware = false;
    const String place = fromXmlSafe(placeAsked(element, isHardware));
    const String& stands = isHardware ? candidate.device->hwLocator() : candidate.device->osLocator();
    nearness.isElsewhere = place.isEmpty() || place != stands;
    for (const Finding& failure : candidate.failures) {
        nearness.distance +=
            failure.expected.size() == 1 ? numericDistance(failure.expected[0], failure.found) : UNRELATED;
    }
    return nearness;
}

}  // namespace vrx
