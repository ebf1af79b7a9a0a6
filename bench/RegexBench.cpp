// What one test of a pattern costs on each of the ways that can decide it, and what a pattern costs that explodes.

#include <benchmark/benchmark.h>

#include "libCommon/text/NumberText.h"
#include "libRegex/Regex.h"

namespace vrx {

namespace {

void testPattern(benchmark::State& state, StringView pattern, StringView value) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(Regex::rangeMatches(pattern, value, Regex::CASE_SENSITIVE));
    }
}

BENCHMARK_CAPTURE(testPattern, literal, u"^Xeon Gold 6248R CPU$", u"Xeon Gold 6248R CPU");
BENCHMARK_CAPTURE(testPattern, literalEscaped, u"^Intel\\(R\\) Xeon\\(R\\) 3\\.0$", u"Intel(R) Xeon(R) 3.0");
BENCHMARK_CAPTURE(testPattern, literalOther, u"^Intel\\(R\\) Xeon\\(R\\) 3\\.0$", u"AMD EPYC 7763");
BENCHMARK_CAPTURE(testPattern, literalWithin, u"6248", u"Intel Xeon Gold 6248R CPU");
BENCHMARK_CAPTURE(testPattern, range, u"^VRXRRANGE[2700-3300]$", u"3000");
BENCHMARK_CAPTURE(testPattern, rangeUnit, u"^VRXRRANGE[2700-3300] MHz$", u"3000 MHz");
BENCHMARK_CAPTURE(testPattern, rangeOtherUnit, u"^VRXRRANGE[2700-3300] MHz$", u"3.0 GHz");
BENCHMARK_CAPTURE(testPattern, rangeWithin, u"^DDR\\d-VRXRRANGE[2900-3300] .*$", u"DDR4-3200 DIMM");
BENCHMARK_CAPTURE(testPattern, regex, u"^Intel.*Xeon.* CPU$", u"Intel(R) Xeon(R) Gold 6248R CPU");
BENCHMARK_CAPTURE(testPattern, regexOther, u"^Intel.*Xeon.* CPU$", u"AMD EPYC 7763 CPU");
BENCHMARK_CAPTURE(testPattern, broken, u"^Intel(", u"Intel(R) Xeon(R) Gold 6248R CPU");

// Distinct patterns, more than the cache holds: what a pattern costs that is used once.
void testFreshPatterns(benchmark::State& state, StringView begin, StringView end) {
    std::uint64_t number = 0;
    for (auto _ : state) {
        const String pattern = concat(begin, toText(++number), end);
        benchmark::DoNotOptimize(Regex::rangeMatches(pattern, u"3000 MHz", Regex::CASE_SENSITIVE));
    }
}

BENCHMARK_CAPTURE(testFreshPatterns, range, u"^VRXRRANGE[", u"-5000] MHz$");
BENCHMARK_CAPTURE(testFreshPatterns, regex, u"^.* M", u"Hz$");

// 20,000 distinct exploding patterns on a value of the given length, one after another.
void testExplodingPatterns(benchmark::State& state, StringView begin, StringView end) {
    const String value = concat(String(static_cast<std::size_t>(state.range(0)), u'a'), u"!");
    std::uint64_t number = 0;
    for (auto _ : state) {
        for (int i = 0; i < 20'000; ++i) {
            const String pattern = concat(begin, toText(++number), end);
            benchmark::DoNotOptimize(Regex::rangeMatches(pattern, value, Regex::CASE_SENSITIVE));
        }
    }
}

BENCHMARK_CAPTURE(testExplodingPatterns, anchored, u"^(a+|", u")+$")
    ->Arg(50)
    ->Arg(2'000)
    ->Arg(100'000)
    ->Unit(benchmark::kSecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(testExplodingPatterns, floating, u"(a+|", u")+$")
    ->Arg(50)
    ->Arg(2'000)
    ->Unit(benchmark::kSecond)
    ->Iterations(1);

}  // namespace

}  // namespace vrx

BENCHMARK_MAIN();
