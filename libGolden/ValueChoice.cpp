/// One value is asked for exactly. Numbers, with the same units if any, become a range when they are near to one
/// another; digits of a designation are no number. What is left becomes alternatives when it is few. A text of which
/// every machine has another one, of three at least, is nothing that makes a good machine.

#include "libGolden/ValueChoice.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "libCommon/text/NumberText.h"
#include "libCommon/values/Unit.h"

namespace vrx {

namespace {

using Choice = GoldenDecision::Choice;
using Reason = GoldenDecision::Reason;

constexpr std::size_t FEWEST_TO_BE_UNIQUE = 3;
constexpr std::size_t LONGEST_ALTERNATIVES = 4000;  // in characters; nobody reads them, and a pattern has an end

struct Amount {
    double number = 0;
    StringView units;
};

/// "2900 MHz", "12". A number of which a range could not write the digits is a text.
std::optional<Amount> amountOf(const ValueVariant& variant) {
    if (variant.isList || variant.texts.size() != 1) {
        return std::nullopt;
    }
    const StringView text = variant.texts[0];
    const std::size_t blank = text.find(u' ');
    const std::optional<double> number = parseReal(text.substr(0, blank));
    const StringView units = blank == StringView::npos ? StringView() : text.substr(blank + 1);
    if (!number || !std::isfinite(*number) || toText(*number).view().find_first_of(u"eE") != StringView::npos ||
        (!units.empty() && !Unit::lookupByString(units))) {
        return std::nullopt;
    }
    return Amount{*number, units};
}

/// None unless all are amounts of the same units.
std::vector<Amount> amountsOf(const std::vector<ValueVariant>& variants) {
    std::vector<Amount> amounts;
    for (const ValueVariant& variant : variants) {
        const std::optional<Amount> amount = amountOf(variant);
        if (!amount || (!amounts.empty() && amount->units != amounts.front().units)) {
            return {};
        }
        amounts.push_back(*amount);
    }
    return amounts;
}

bool isFew(const std::vector<ValueVariant>& variants, const ValueLimits& limits) {
    std::size_t length = 0;
    for (const ValueVariant& variant : variants) {
        for (const String& text : variant.texts) {
            length += text.size();
        }
    }
    return variants.size() <= limits.mostAlternatives && length <= LONGEST_ALTERNATIVES;
}

/// Whether a range was made of them.
bool makeRange(GoldenDecision& decision, const std::vector<Amount>& amounts, const ValueLimits& limits) {
    const auto [low, high] = std::ranges::minmax(amounts, {}, &Amount::number);
    const double largest = std::max(std::abs(low.number), std::abs(high.number));
    if (!limits.tolerance && high.number - low.number > limits.mostSpread / 100 * largest) {
        return false;
    }
    const double share = limits.tolerance.value_or(0) / 100;
    decision.low = low.number - std::abs(low.number) * share;
    decision.high = high.number + std::abs(high.number) * share;
    decision.units = String(low.units);
    if (decision.low == decision.high) {
        return false;
    }
    decision.choice = Choice::Range;
    return true;
}

}  // namespace

void chooseValue(GoldenDecision& decision, PropertyKind kind, const ValueLimits& limits) {
    const std::vector<ValueVariant>& variants = decision.variants;
    if (kind == PropertyKind::Identity) {
        decision.choice = Choice::LeftOut;
        decision.reason = Reason::Identity;
        return;
    }
    const std::vector<Amount> amounts = kind == PropertyKind::Quality ? amountsOf(variants) : std::vector<Amount>();
    const bool maySpread = variants.size() > 1 || limits.tolerance;
    if (!amounts.empty() && maySpread && makeRange(decision, amounts, limits)) {
        return;
    }
    if (variants.size() == 1) {
        return;
    }
    const bool isUnique = kind == PropertyKind::Quality && amounts.empty() && variants.size() == limits.machines &&
                          limits.machines >= FEWEST_TO_BE_UNIQUE;
    if (kind != PropertyKind::Place && !isUnique && isFew(variants, limits)) {
        decision.choice = Choice::Alternatives;
        return;
    }
    decision.choice = Choice::LeftOut;
    decision.reason = kind == PropertyKind::Place ? Reason::Place : isUnique ? Reason::Unique : Reason::TooManyValues;
}

}  // namespace vrx
