#include "libRegex/PatternCompiler.h"

#include <algorithm>
#include <new>

// The dialect: Perl-compatible, on single 16-bit code units.
//
//   - No UTF mode, and patterns cannot switch it on: every text is a legal subject, "." is one code unit, and "\d",
//     "\w", "\s", "\b" are ASCII whatever a pattern begins with.
//   - "$" is the very end, never before a closing line feed.
//   - Interpreter only: a pattern is used a few times, which never pays for machine code.
//
// Without UTF mode PCRE2 folds ASCII letters alone. So where letter case does not matter, the units beyond ASCII are
// folded here, one by one, in the pattern and in the value. A unit that folds into ASCII (the kelvin sign, the long s)
// stands as it is, lest "\w" match it or a backslash before it get a meaning.
//
// Length and nesting are bounded by the library's own limits (about 64K units of code, 250 levels); a pattern beyond
// them has an error like any other. The length limit here keeps a huge text from being parsed only to be refused.

namespace vrx {

namespace {

constexpr std::size_t MAX_PATTERN_UNITS = 1U << 18U;

constexpr bool isAscii(char16_t unit) noexcept { return unit < 0x80; }

pcre2_compile_context* compileContext() {
    thread_local const PcreHandle<pcre2_compile_context> context = [] {
        PcreHandle<pcre2_compile_context> made(pcre2_compile_context_create(nullptr));
        if (made == nullptr) {
            throw std::bad_alloc();
        }
        pcre2_set_max_pattern_length(made.get(), MAX_PATTERN_UNITS);
        return made;
    }();
    return context.get();
}

}  // namespace

CompiledCode compilePattern(StringView pattern, LetterCase letterCase, WorkCounting counting) {
    std::uint32_t options = PCRE2_DOLLAR_ENDONLY | PCRE2_NEVER_UTF | PCRE2_NEVER_UCP;
    options |= letterCase == LetterCase::Ignored ? PCRE2_CASELESS : 0U;
    options |= counting == WorkCounting::On ? PCRE2_AUTO_CALLOUT : 0U;
    CompiledCode result;
    CompileFailure failure;
    result.code.reset(
        pcre2_compile(pcreUnits(pattern), pattern.size(), options, &failure.error, &failure.offset, compileContext()));
    if (result.code == nullptr) {
        if (failure.error == PCRE2_ERROR_HEAP_FAILED) {
            throw std::bad_alloc();
        }
        result.failure = failure;
    }
    return result;
}

String compileErrorText(int error) {
    char16_t text[256];
    const int size = pcre2_get_error_message(error, reinterpret_cast<PCRE2_UCHAR*>(text), std::size(text));
    return size > 0 ? String(StringView(text, static_cast<std::size_t>(size))) : String(u"unknown error");
}

String foldBeyondAscii(StringView text) {
    if (std::ranges::all_of(text, isAscii)) {
        return text;
    }
    const String folded = foldCase(text);
    std::u16string result(text);
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (!isAscii(folded[i])) {
            result[i] = folded[i];
        }
    }
    return String(std::move(result));
}

}  // namespace vrx
