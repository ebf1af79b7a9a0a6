#include "libCommon/values/Unit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "libCommon/error/StructuredException.h"
#include "libCommon/values/Measurement.h"
#include "libCommon/values/UnitTable.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

/// "3 GHz" in "MHz"; not a number when a unit is unknown or the kinds differ.
double converted(double number, StringView from, StringView to) {
    const std::optional<Unit> source = Unit::lookupByString(from);
    const std::optional<Unit> target = Unit::lookupByString(to);
    return source && target ? source->convert(number, *target).value_or(NAN) : NAN;
}

String symbolOf(StringView text) {
    const std::optional<Unit> unit = Unit::lookupByString(text);
    return unit ? String(unit->symbol()) : String(u"unknown");
}

DiscreteMeasurement measured(double number, StringView symbol) {
    const Unit unit = Unit::lookupByString(symbol).value();
    return DiscreteMeasurement(unit.type(), number, unit.magnitude());
}

}  // namespace

TEST(UnitTest, everySpellingOfTheTableIsFoundAndNoneTwice) {
    std::size_t rows = 0;
    for (const UnitBase& base : unitBases()) {
        for (const UnitPrefix& prefix : unitPrefixes()) {
            if ((base.prefixes & prefix.group) == 0) {
                continue;
            }
            ++rows;
            // A spelling that two rows share leads to the first of them, so the later row would not be found.
            const String written = concat(prefix.symbol, base.symbol);
            for (const StringView symbol : {base.symbol, base.otherSymbols[0], base.otherSymbols[1]}) {
                EXPECT_TRUE(symbol.empty() || symbolOf(concat(prefix.symbol, symbol)) == written) << written.toUtf8();
            }
            EXPECT_EQ(symbolOf(concat(prefix.name, base.plural)), written);
            EXPECT_EQ(symbolOf(concat(prefix.name, base.singular)), written);
        }
    }
    EXPECT_GT(rows, 150U);
}

TEST(UnitTest, knowsTheUnitsOfHardware) {
    for (const StringView symbol :
         {u"KB", u"MiB",  u"GB/s", u"Gbit/s", u"THz", u"GT/s", u"mV", u"mA",   u"kW", u"mWh", u"mAh",
          u"J",  u"degF", u"K",    u"RPM",    u"mm",  u"inch", u"ns", u"min",  u"h",  u"px",  u"dpi",
          u"dB", u"lm",   u"lx",   u"cd",     u"N",   u"kg",   u"%",  u"mbar", u"hPa"}) {
        EXPECT_EQ(symbolOf(symbol), symbol);
    }
    EXPECT_EQ(symbolOf(u"°C"), u"degC");
    EXPECT_EQ(symbolOf(u"KHz"), u"kHz");
    EXPECT_EQ(symbolOf(u"kB"), u"KB");
    EXPECT_EQ(symbolOf(u"\u00B5s"), u"us");
    EXPECT_EQ(symbolOf(u" MHz\t"), u"MHz");
}

TEST(UnitTest, looksAtLetterCaseInSymbolsButNotInNames) {
    EXPECT_EQ(symbolOf(u"Mb"), u"Mbit");
    EXPECT_EQ(symbolOf(u"mB"), u"unknown");
    EXPECT_EQ(symbolOf(u"MegaBytes"), u"MB");
    EXPECT_EQ(symbolOf(u"GIGAHERTZ"), u"GHz");
    EXPECT_EQ(symbolOf(u"gigabits per second"), u"Gbit/s");
    EXPECT_EQ(symbolOf(u"furlong"), u"unknown");
}

TEST(UnitTest, convertsWithinAKindOnly) {
    EXPECT_EQ(converted(1.01, u"GHz", u"MHz"), 1010);
    EXPECT_EQ(converted(1010, u"mV", u"V"), 1.01);
    EXPECT_EQ(converted(3, u"inch", u"mm"), 76.2);
    EXPECT_EQ(converted(1.5, u"h", u"min"), 90);
    EXPECT_EQ(converted(100, u"degC", u"degF"), 212);
    EXPECT_EQ(converted(-40, u"degF", u"degC"), -40);
    EXPECT_EQ(converted(25, u"degC", u"K"), 298.15);
    EXPECT_TRUE(std::isnan(converted(8, u"bit", u"B")));
    EXPECT_TRUE(std::isnan(converted(1, u"MHz", u"MT/s")));
}

TEST(UnitTest, countsMemoryInPowersOf1024AndRatesInPowersOf1000) {
    EXPECT_EQ(converted(1, u"GB", u"MB"), 1024);
    EXPECT_EQ(converted(16, u"GB", u"GiB"), 16);
    EXPECT_EQ(converted(1, u"PB", u"B"), 1125899906842624.0);
    EXPECT_EQ(converted(1, u"GB/s", u"MB/s"), 1000);
    EXPECT_EQ(converted(1, u"MiB/s", u"B/s"), 1048576);
}

TEST(MeasurementTest, keepsTheMagnitudeThatItWasMadeWith) {
    const DiscreteMeasurement clock = measured(3000, u"MHz");
    EXPECT_EQ(clock.value(UnitMagnitude()), 3000);
    EXPECT_EQ(clock.value(Unit::lookupByString(u"GHz")->magnitude()), 3);
    EXPECT_EQ(clock.autoScaledUnitsToString(false), u"MHz");
    EXPECT_EQ(clock.autoScaledUnitsToString(true), u"megahertz");
    EXPECT_EQ(clock.toString(), u"3000 MHz");
    EXPECT_EQ(measured(0.5, u"GiB").toString(), u"0.5 GiB");
    EXPECT_EQ(measured(1, u"GB").autoScaledUnitsToString(true), u"gigabyte");
    EXPECT_EQ(measured(40.5, u"°C").toString(), u"40.5 degC");
    EXPECT_THROW(clock.value(Unit::lookupByString(u"MB")->magnitude()), StructuredException);
}

TEST(MeasurementTest, doesWithoutAUnitOrAMagnitude) {
    EXPECT_EQ(Measurement(UnitKind::None, 2.5, UnitMagnitude()).toString(), u"2.5");
    EXPECT_EQ(Measurement().autoScaledUnitsToString(false), u"");
    EXPECT_EQ(Measurement(UnitKind::Frequency, 5, UnitMagnitude()).toString(), u"5 Hz");
}

}  // namespace vrx
