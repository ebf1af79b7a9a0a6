#include "libRegex/Regex.h"

#include "libRegex/ExceededTests.h"
#include "libRegex/LiteralPattern.h"
#include "libRegex/PatternCache.h"

// The entry points. A test takes the cheapest way that can decide it: a literal pattern is compared at once, without a
// cache; everything else is made ready once (CompiledPattern) and kept (PatternCache). Where letter case does not
// matter there is no way for literals, because no check asks for that often enough.

namespace vrx {

bool Regex::rangeMatches(StringView pattern, StringView value, unsigned short flags) {
    const bool caseMatters = (flags & CASE_SENSITIVE) != 0;
    if (caseMatters) {
        if (const auto literal = LiteralPattern::parse(pattern)) {
            return literal->matches(value);
        }
    }
    return cachedPattern(pattern, caseMatters ? LetterCase::Matters : LetterCase::Ignored).matches(value);
}

const String& Regex::VRXRRANGE() {
    static const String marker(RangeForm::MARKER);
    return marker;
}

bool Regex::isAnchoredLiteral(StringView pattern, String& literal) {
    const auto parsed = LiteralPattern::parse(pattern);
    if (!parsed || !parsed->isAnchored()) {
        return false;
    }
    literal = parsed->text();
    return true;
}

String Regex::compileError(StringView pattern, std::size_t* offset) {
    const auto failure = cachedPattern(pattern, LetterCase::Matters).failure();
    if (!failure) {
        return String::EMPTY;
    }
    if (offset != nullptr) {
        *offset = failure->offset;
    }
    return compileErrorText(failure->error);
}

std::size_t Regex::exceededCount() noexcept { return ExceededTests::countOfThread(); }

}  // namespace vrx
