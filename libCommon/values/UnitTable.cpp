/// The unit table, generated from base units and prefixes: each base unit with each prefix that it takes makes one row,
/// and every symbol and every name of the base, behind every spelling of the prefix, leads to that row. Numbers are
/// printed with the first symbol of each, so a row has one text however its unit was spelled.

#include "libCommon/values/UnitTable.h"

#include <algorithm>
#include <numeric>

namespace vrx {

namespace {

UnitScale scaleOf(const UnitBase& base, const UnitPrefix& prefix) noexcept {
    return {base.scale.numerator * prefix.scale.numerator, base.scale.denominator * prefix.scale.denominator,
            base.scale.shift};
}

/// Requires: the divisor divides the number.
double quotient(std::uint64_t number, std::uint64_t divisor) noexcept {
    const std::uint64_t result = number / divisor;
    return static_cast<double>(result);
}

}  // namespace

const UnitTable& UnitTable::instance() {
    static const UnitTable& table = *new UnitTable;
    return table;
}

UnitTable::UnitTable() {
    const std::size_t estimate = unitBases().size() * unitPrefixes().size();
    m_symbols.reserve(estimate);
    m_names.reserve(estimate);
    for (const UnitBase& base : unitBases()) {
        for (const UnitPrefix& prefix : unitPrefixes()) {
            if ((base.prefixes & prefix.group) != 0) {
                addUnit(base, prefix);
            }
        }
    }
}

void UnitTable::addUnit(const UnitBase& base, const UnitPrefix& prefix) {
    const auto withPrefix = [&prefix](StringView name) {
        return concat(prefix.name, name);
    };
    m_rows.push_back(UnitRow{base.kind, scaleOf(base, prefix), concat(prefix.symbol, base.symbol),
                             withPrefix(base.singular), withPrefix(base.plural)});
    const auto code = static_cast<std::uint16_t>(m_rows.size());

    addSymbol(prefix, base.symbol, code);
    for (const StringView symbol : base.otherSymbols) {
        addSymbol(prefix, symbol, code);
    }
    m_names.emplace(foldCase(m_rows.back().singular).raw(), code);
    m_names.emplace(foldCase(m_rows.back().plural).raw(), code);
    for (const StringView name : base.otherNames) {
        if (!name.empty()) {
            m_names.emplace(foldCase(withPrefix(name)).raw(), code);
        }
    }
}

void UnitTable::addSymbol(const UnitPrefix& prefix, StringView symbol, std::uint16_t code) {
    if (symbol.empty()) {
        return;
    }
    m_symbols.emplace(concat(prefix.symbol, symbol).raw(), code);
    for (const StringView other : prefix.otherSymbols) {
        if (!other.empty()) {
            m_symbols.emplace(concat(other, symbol).raw(), code);
        }
    }
}

std::optional<Unit> UnitTable::find(StringView text) const {
    text = trimmed(text);
    auto at = m_symbols.find(text);
    if (at == m_symbols.end()) {
        at = m_names.find(foldCase(text).view());
        if (at == m_names.end()) {
            return std::nullopt;
        }
    }
    return Unit(m_rows[at->second - 1U].kind, UnitMagnitude(at->second));
}

const UnitRow& UnitTable::row(UnitKind kind, UnitMagnitude magnitude) const {
    static const UnitRow none;
    if (magnitude.code() == 0) {
        const auto base = std::ranges::find(m_rows, kind, &UnitRow::kind);
        return base == m_rows.end() ? none : *base;
    }
    VRX_ASSERT(magnitude.code() <= m_rows.size());
    const UnitRow& found = m_rows[magnitude.code() - 1U];
    VRX_ASSERT(found.kind == kind);
    return found;
}

double UnitTable::convert(double number, const UnitScale& from, const UnitScale& to) noexcept {
    const std::uint64_t numerators = std::gcd(from.numerator, to.numerator);
    const std::uint64_t denominators = std::gcd(from.denominator, to.denominator);
    const double up = quotient(from.numerator, numerators) * quotient(to.denominator, denominators);
    const double down = quotient(to.numerator, numerators) * quotient(from.denominator, denominators);
    return (number + from.shift) * up / down - to.shift;
}

}  // namespace vrx
