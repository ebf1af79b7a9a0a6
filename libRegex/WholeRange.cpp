#include "libRegex/WholeRange.h"

#include "libRegex/ranges/RangeForm.h"

namespace vrx {

std::optional<WholeRange> WholeRange::parse(StringView pattern) {
    if (!pattern.starts_with(u'^') || !pattern.substr(1).starts_with(RangeForm::MARKER) || !pattern.ends_with(u'$')) {
        return std::nullopt;
    }
    const RangeForm form(pattern);
    if (form.sites().size() != 1 || form.sites().front().begin != 1) {
        return std::nullopt;
    }
    const StringView tail = pattern.substr(form.sites().front().end);
    const auto unit = UnitRange::parse(tail);
    const bool isWhole = unit || tail == u"$";
    return isWhole ? std::optional(WholeRange(form.sites().front().range, unit)) : std::nullopt;
}

std::optional<double> WholeRange::numberOf(StringView value) const {
    if (m_unit) {
        return m_unit->numberOf(value);
    }
    return numberEnd(value, 0) == value.size() ? std::optional(numberValue(value)) : std::nullopt;
}

}  // namespace vrx
