/// The odometer as a number. Combinations stand in the order in which the loop tries them, so each has a rank, to which
/// every digit adds its value times its weight.
///
/// What the odometer really does, and the ranks therefore say:
/// - A digit steps over pruned children as long as a possible one follows. Pruned children behind the last possible one
///   are gone through one by one, although they do not count in the number of combinations; so where there are such
///   children, the last combinations are never tried.
/// - An `or` whose children are all pruned starts at the nearest one, and goes through all of them after a carry.
/// - An `or` inside an alternative is reached by a carry only when the `or` around it has just gone back to its first
///   child. So one in the first child is a digit like others, although it counts only while that child is chosen; one
///   in another child is never stepped.
/// - The loop ends after the product of possible children, of every `or` that the first pass walked over, whether it is
///   ever stepped or not. That may be more than a whole turn; what comes again decides nothing.
///
/// The combinations that are tried are thus a stretch of ranks. It is taken apart into products of ranges, within which
/// digits are free of one another.

#include "libInventory/engine/search/SearchDigits.h"

#include <algorithm>

namespace vrx {

void SearchDigits::settle(const Rank& count) {
    m_period = 1;
    m_first = 0;
    for (SearchDigit& digit : m_digits) {
        digit.weight = m_period;
        m_first += m_period * digit.start;
        m_period *= digit.radix();
    }
    m_last = (m_first + count - 1) % m_period;
    const Rank end = m_first + count;
    m_boxes.clear();
    if (!isFirstApart) {
        addBelow(std::min(end, m_period));
        return;
    }
    addBetween(m_first + 1, std::min(end, m_period));
    if (end > m_period) {
        addBelow(std::min<Rank>(end - m_period, m_first + 1));
    }
}

SearchDigits::Values SearchDigits::valuesOf(const Rank& rank) const {
    Values values;
    Rank rest = rank;
    for (const SearchDigit& digit : m_digits) {
        values.push_back(static_cast<std::uint32_t>(rest % digit.radix()));
        rest /= digit.radix();
    }
    return values;
}

void SearchDigits::show(const Rank& rank) const {
    const Values values = valuesOf(rank);
    for (std::size_t i = 0; i < m_digits.size(); ++i) {
        const SearchDigit& digit = m_digits[i];
        digit.context->m_selectedChild = digit.positions[values[i]];
        digit.context->m_atLastChild = digit.positions[values[i]] + 1 == digit.childCount;
    }
}

/// All ranks below that one.
void SearchDigits::addBelow(const Rank& end) {
    if (end == m_period) {
        DigitRanges& box = m_boxes.emplace_back();
        for (const SearchDigit& digit : m_digits) {
            box.emplace_back(0, digit.radix() - 1);
        }
        return;
    }
    const Values values = valuesOf(end);
    for (std::size_t digit = m_digits.size(); digit-- > 0;) {
        addBox(values, digit, 0, values[digit]);
    }
}

/// All ranks from that one to below the other. Up from the first until no digit differs but the ones that both have in
/// common, then down to the end.
void SearchDigits::addBetween(const Rank& begin, const Rank& end) {
    if (begin >= end) {
        return;
    }
    const Values from = valuesOf(begin);
    const bool isToTheEnd = end == m_period;
    const Values until = valuesOf(isToTheEnd ? Rank(0) : end);
    std::size_t common = m_digits.size();
    while (!isToTheEnd && common > 0 && from[common - 1] == until[common - 1]) {
        --common;
    }
    addBox(from, 0, from[0], from[0] + 1);
    const std::size_t top = isToTheEnd ? m_digits.size() : common - 1;
    for (std::size_t digit = 0; digit < top; ++digit) {
        addBox(from, digit, from[digit] + 1, m_digits[digit].radix());
    }
    if (!isToTheEnd) {
        addBox(from, top, from[top] + 1, until[top]);
        for (std::size_t digit = top; digit-- > 0;) {
            addBox(until, digit, 0, until[digit]);
        }
    }
}

/// The digits above that one as given, the one itself within a range, those below it free.
void SearchDigits::addBox(const Values& values, std::size_t digit, std::uint32_t from, std::uint32_t until) {
    if (from >= until) {
        return;
    }
    DigitRanges& box = m_boxes.emplace_back();
    for (std::size_t i = 0; i < m_digits.size(); ++i) {
        if (i < digit) {
            box.emplace_back(0, m_digits[i].radix() - 1);
        } else if (i == digit) {
            box.emplace_back(from, until - 1);
        } else {
            box.emplace_back(values[i], values[i]);
        }
    }
}

}  // namespace vrx
