#include "libCommon/values/Unit.h"

#include "libCommon/values/UnitTable.h"

namespace vrx {

std::optional<Unit> Unit::lookupByString(StringView text) { return UnitTable::instance().find(text); }

StringView Unit::symbol() const noexcept { return UnitTable::instance().row(m_kind, m_magnitude).symbol; }

std::optional<double> Unit::convert(double number, const Unit& target) const noexcept {
    if (m_kind != target.m_kind) {
        return std::nullopt;
    }
    const UnitTable& table = UnitTable::instance();
    return UnitTable::convert(number, table.row(m_kind, m_magnitude).scale,
                              table.row(target.m_kind, target.m_magnitude).scale);
}

}  // namespace vrx
