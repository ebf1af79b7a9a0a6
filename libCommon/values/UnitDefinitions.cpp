#include "libCommon/values/UnitDefinitions.h"

namespace vrx {

namespace {

constexpr std::uint64_t K = 1000;
constexpr std::uint64_t KI = 1024;

constexpr UnitPrefix PREFIXES[] = {
    {PLAIN, {}, u"", u"", {}},
    {TINY, {1, K* K* K}, u"nano", u"n", {}},
    {TINY, {1, K* K}, u"micro", u"u", {u"\u00B5", u"\u03BC"}},
    {MILLI, {1, K}, u"milli", u"m", {}},
    {CENTI, {1, 100}, u"centi", u"c", {}},
    {HECTO, {100}, u"hecto", u"h", {}},
    {KILO, {K}, u"kilo", u"k", {u"K"}},
    {LARGE, {K * K}, u"mega", u"M", {}},
    {LARGE, {K * K * K}, u"giga", u"G", {}},
    {LARGE, {K * K * K * K}, u"tera", u"T", {}},
    {LARGE, {K * K * K * K * K}, u"peta", u"P", {}},
    {BINARY, {KI}, u"kilo", u"K", {u"k"}},
    {BINARY, {KI * KI}, u"mega", u"M", {}},
    {BINARY, {KI * KI * KI}, u"giga", u"G", {}},
    {BINARY, {KI * KI * KI * KI}, u"tera", u"T", {}},
    {BINARY, {KI * KI * KI * KI * KI}, u"peta", u"P", {}},
    {IEC, {KI}, u"kibi", u"Ki", {}},
    {IEC, {KI * KI}, u"mebi", u"Mi", {}},
    {IEC, {KI * KI * KI}, u"gibi", u"Gi", {}},
    {IEC, {KI * KI * KI * KI}, u"tebi", u"Ti", {}},
    {IEC, {KI * KI * KI * KI * KI}, u"pebi", u"Pi", {}},
};

constexpr unsigned MEMORY = PLAIN | BINARY | IEC;
constexpr unsigned RATE = SI | IEC;
constexpr unsigned LIGHT = MILLI | PLAIN | KILO;

// clang-format off
constexpr UnitBase BASES[] = {
    {UnitKind::Bytes, MEMORY, {}, u"byte", u"bytes", u"B", {}, {}},
    {UnitKind::Bits, MEMORY, {}, u"bit", u"bits", u"bit", {u"b"}, {}},
    {UnitKind::BytesPerSecond, RATE, {}, u"byte per second", u"bytes per second", u"B/s", {u"Bps"}, {u"bytes/second"}},
    {UnitKind::BitsPerSecond, RATE, {}, u"bit per second", u"bits per second", u"bit/s", {u"b/s", u"bps"},
     {u"bits/second"}},
    {UnitKind::Frequency, SI, {}, u"hertz", u"hertz", u"Hz", {}, {}},
    {UnitKind::TransfersPerSecond, SI, {}, u"transfer per second", u"transfers per second", u"T/s", {},
     {u"transfers/second"}},
    {UnitKind::Voltage, SMALL | KILO, {}, u"volt", u"volts", u"V", {}, {}},
    {UnitKind::Current, SMALL | KILO, {}, u"ampere", u"amperes", u"A", {}, {u"amp", u"amps"}},
    {UnitKind::Power, SMALL | SI, {}, u"watt", u"watts", u"W", {}, {}},
    {UnitKind::EnergyWattHours, MILLI | SI, {}, u"watt-hour", u"watt-hours", u"Wh", {},
     {u"watt hour", u"watt hours", u"watthour", u"watthours"}},
    {UnitKind::ChargeAmpereHours, SMALL | KILO, {}, u"ampere-hour", u"ampere-hours", u"Ah", {},
     {u"ampere hour", u"ampere hours", u"amp hour", u"amp hours"}},
    {UnitKind::Energy, SMALL | SI, {}, u"joule", u"joules", u"J", {}, {}},
    {UnitKind::Temperature, PLAIN, {}, u"degree Celsius", u"degrees Celsius", u"degC", {u"\u00B0C", u"\u2103", u"C"},
     {u"Celsius"}},
    {UnitKind::Temperature, PLAIN, {5, 9, -32}, u"degree Fahrenheit", u"degrees Fahrenheit", u"degF",
     {u"\u00B0F", u"\u2109"}, {u"Fahrenheit"}},
    {UnitKind::Temperature, PLAIN, {1, 1, -273.15}, u"kelvin", u"kelvins", u"K", {}, {}},
    {UnitKind::RotationalSpeed, PLAIN, {}, u"revolution per minute", u"revolutions per minute", u"RPM", {u"rpm"}, {}},
    {UnitKind::Length, SMALL | CENTI | KILO, {}, u"meter", u"meters", u"m", {}, {u"metre", u"metres"}},
    {UnitKind::Length, PLAIN, {254, 10000}, u"inch", u"inches", u"inch", {u"in", u"\""}, {}},
    {UnitKind::Time, SMALL, {}, u"second", u"seconds", u"s", {u"sec"}, {}},
    {UnitKind::Time, PLAIN, {60}, u"minute", u"minutes", u"min", {}, {}},
    {UnitKind::Time, PLAIN, {3600}, u"hour", u"hours", u"h", {}, {}},
    {UnitKind::Pixels, SI, {}, u"pixel", u"pixels", u"px", {}, {}},
    {UnitKind::DotsPerInch, PLAIN, {}, u"dot per inch", u"dots per inch", u"dpi", {u"DPI"}, {}},
    {UnitKind::Decibel, PLAIN, {}, u"decibel", u"decibels", u"dB", {}, {}},
    {UnitKind::LuminousFlux, LIGHT, {}, u"lumen", u"lumens", u"lm", {}, {}},
    {UnitKind::Illuminance, LIGHT, {}, u"lux", u"lux", u"lx", {}, {}},
    {UnitKind::LuminousIntensity, LIGHT, {}, u"candela", u"candelas", u"cd", {}, {}},
    {UnitKind::Force, SMALL | KILO | LARGE, {}, u"newton", u"newtons", u"N", {}, {}},
    {UnitKind::Mass, SMALL | KILO, {}, u"gram", u"grams", u"g", {}, {}},
    {UnitKind::Ratio, PLAIN, {}, u"percent", u"percent", u"%", {}, {}},
    {UnitKind::Pressure, SMALL | HECTO | KILO | LARGE, {}, u"pascal", u"pascals", u"Pa", {}, {}},
    {UnitKind::Pressure, MILLI | PLAIN | KILO, {100000}, u"bar", u"bars", u"bar", {}, {}},
};
// clang-format on

}  // namespace

std::span<const UnitPrefix> unitPrefixes() noexcept { return PREFIXES; }

std::span<const UnitBase> unitBases() noexcept { return BASES; }

}  // namespace vrx
