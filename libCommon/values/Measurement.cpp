#include "libCommon/values/Measurement.h"

#include "libCommon/text/NumberText.h"
#include "libCommon/values/UnitTable.h"

namespace vrx {

double Measurement::value(const UnitMagnitude& magnitude) const {
    if (magnitude.code() == 0 || magnitude == m_magnitude) {
        return m_number;
    }
    const UnitTable& table = UnitTable::instance();
    return UnitTable::convert(m_number, table.row(m_kind, m_magnitude).scale, table.row(m_kind, magnitude).scale);
}

String Measurement::autoScaledUnitsToString(bool longForm) const {
    if (m_kind == UnitKind::None) {
        return String();
    }
    const UnitRow& row = UnitTable::instance().row(m_kind, m_magnitude);
    if (!longForm) {
        return row.symbol;
    }
    return m_number == 1 ? row.singular : row.plural;
}

String Measurement::toString() const {
    const String number = toText(m_number);
    return m_kind == UnitKind::None ? number : concat(number, u" ", autoScaledUnitsToString(false));
}

}  // namespace vrx
