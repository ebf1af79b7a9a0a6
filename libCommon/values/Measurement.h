#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libCommon/values/Unit.h"

namespace vrx {

/// A number with a unit. It keeps the magnitude that it was made with: 3000 MHz stays 3000 and "MHz".
/// The two concrete kinds differ only in what they promise: a discrete measurement is a count or rating that does not
/// vary between readings (a capacity), a non-discrete one is sampled (a temperature).
///
///     const Unit mega = *Unit::lookupByString(u"MHz");
///     const Unit giga = *Unit::lookupByString(u"GHz");
///     const Measurement clock(mega.type(), 3000, mega.magnitude());
///     clock.toString();                                  // "3000 MHz"
///     clock.value(giga.magnitude());                     // 3
class VRX_EXPORT Measurement {
public:
    /// A measurement without a unit prints its number alone.
    Measurement() noexcept = default;

    /// `magnitude` is what `number` is given in; code 0 stands for the base unit of the kind.
    Measurement(UnitKind kind, double number, UnitMagnitude magnitude) noexcept
        : m_number(number), m_kind(kind), m_magnitude(magnitude) {}

    UnitKind unitType() const noexcept { return m_kind; }
    UnitMagnitude magnitude() const noexcept { return m_magnitude; }

    /// The number in the given magnitude; code 0 is the magnitude that it was made with. Requires: the magnitude
    /// belongs to the measurement's kind.
    double value(const UnitMagnitude& magnitude) const;

    /// The unit text in the magnitude that the measurement was made with; empty without a unit. `longForm` gives the
    /// English name instead of the symbol.
    String autoScaledUnitsToString(bool longForm) const;

    /// Number, one blank, unit symbol; the number alone without a unit.
    String toString() const;

private:
    double m_number = 0;
    UnitKind m_kind = UnitKind::None;
    UnitMagnitude m_magnitude;
};

class VRX_EXPORT DiscreteMeasurement : public Measurement {
public:
    using Measurement::Measurement;
};

class VRX_EXPORT NonDiscreteMeasurement : public Measurement {
public:
    using Measurement::Measurement;
};

}  // namespace vrx
