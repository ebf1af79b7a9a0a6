#pragma once

#include <cstdint>
#include <optional>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// What a unit measures. Values of one kind can be converted into one another.
enum class UnitKind : std::uint8_t {
    None,
    Bytes,
    Bits,
    BytesPerSecond,
    BitsPerSecond,
    Frequency,
    TransfersPerSecond,
    Voltage,
    Current,
    Power,
    EnergyWattHours,
    ChargeAmpereHours,
    Energy,
    Temperature,
    RotationalSpeed,
    Length,
    Time,
    Pixels,
    DotsPerInch,
    Decibel,
    LuminousFlux,
    Illuminance,
    LuminousIntensity,
    Force,
    Mass,
    Ratio,
    Pressure
};

/// The magnitude (scale and spelling) of a unit. Code 0 stands for "as it was made"; every other code is an entry of
/// the unit table.
class VRX_EXPORT UnitMagnitude {
public:
    constexpr UnitMagnitude() noexcept = default;
    constexpr explicit UnitMagnitude(std::uint16_t code) noexcept : m_code(code) {}
    constexpr std::uint16_t code() const noexcept { return m_code; }
    friend constexpr bool operator==(UnitMagnitude, UnitMagnitude) noexcept = default;

private:
    std::uint16_t m_code = 0;
};

/// One unit of the table: a kind, a magnitude and a spelling. Of the units of a kind one is the base; numbers of the
/// others become its own by a factor (for temperatures after an offset).
///
/// Symbols are looked up with letter case (`MB` is not `Mb`), English long names ("megabytes", "hertz") without. For
/// bytes and bits K, M, G, T, P are powers of 1024, as memory makers write them, and KiB .. PiB are the same powers
/// written out; everywhere else the prefixes are powers of 1000 (SI). k and K both stand for kilo.
///
///     const auto bytes = Unit::lookupByString(u"KiB")->convert(4, *Unit::lookupByString(u"B"));  // 4096
class VRX_EXPORT Unit {
public:
    Unit() noexcept = default;

    /// The unit of a symbol or long name; empty when the table has none. Blanks at the ends do not count.
    static std::optional<Unit> lookupByString(StringView text);

    UnitKind type() const noexcept { return m_kind; }
    UnitMagnitude magnitude() const noexcept { return m_magnitude; }

    /// The symbol, in the form that `toString` of a measurement writes ("MHz", "GB", "degC").
    StringView symbol() const noexcept;

    /// The number, given in this unit, as a number in `target`; empty when the kinds differ.
    std::optional<double> convert(double number, const Unit& target) const noexcept;

private:
    Unit(UnitKind kind, UnitMagnitude magnitude) noexcept : m_kind(kind), m_magnitude(magnitude) {}
    friend class UnitTable;

    UnitKind m_kind = UnitKind::None;
    UnitMagnitude m_magnitude;
};

}  // namespace vrx
