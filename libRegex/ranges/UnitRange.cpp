#include "libRegex/ranges/UnitRange.h"

#include <charconv>

#include "libRegex/ranges/NumberScanner.h"

// A range with a unit compares quantities, not texts: "[990-1010] MHz" holds "1.0 GHz". That takes a value that is
// nothing but a number, one blank and a unit of the same kind; its number is converted into the pattern's unit.
//
// A conversion multiplies and divides by powers of ten or two, which can miss the exact result in its last bits and so
// a bound that it should meet. Its result is therefore rounded to 15 significant decimal digits, as many as a double
// always holds. A number that is already in the pattern's unit is taken as it is.

namespace vrx {

namespace {

double roundedTo15Digits(double number) noexcept {
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, number, std::chars_format::scientific, 14);
    double rounded = number;  // stays as it is when it is infinite
    std::from_chars(text, written.ptr, rounded);
    return rounded;
}

// The unit of a text that has no blanks around it, which the unit table would overlook.
std::optional<Unit> unitOf(StringView text) {
    return !text.empty() && trimmed(text).size() == text.size() ? Unit::lookupByString(text) : std::nullopt;
}

}  // namespace

std::optional<UnitRange> UnitRange::parse(StringView tail) {
    if (tail.empty() || tail.front() != u' ') {
        return std::nullopt;
    }
    tail.remove_prefix(1);
    if (tail.ends_with(u'$')) {
        tail.remove_suffix(1);
    }
    const auto unit = unitOf(tail);
    return unit ? std::optional(UnitRange(tail, *unit)) : std::nullopt;
}

std::optional<double> UnitRange::numberOf(StringView value) const {
    const auto end = numberEnd(value, 0);
    if (!end || *end == value.size() || value[*end] != u' ') {
        return std::nullopt;
    }
    const double number = numberValue(value.substr(0, *end));
    const StringView valueUnitText = value.substr(*end + 1);
    if (valueUnitText == m_unitText) {
        return number;
    }
    const auto valueUnit = unitOf(valueUnitText);
    if (!valueUnit || valueUnit->type() != m_unit.type()) {
        return std::nullopt;
    }
    if (valueUnit->magnitude() == m_unit.magnitude()) {
        return number;
    }
    const auto converted = valueUnit->convert(number, m_unit);
    return converted ? std::optional(roundedTo15Digits(*converted)) : std::nullopt;
}

}  // namespace vrx
