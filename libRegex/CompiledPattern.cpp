#include "libRegex/CompiledPattern.h"

#include "libCommon/logging/Logger.h"
#include "libCommon/text/NumberText.h"
#include "libRegex/ExceededTests.h"
#include "libRegex/ranges/RangeForm.h"

// Decides one test of a pattern that is more than a literal, by the first of these that applies:
//
//   1. The whole pattern is a range (WholeRange): the value must be one number in it, with a unit of the same kind
//      where the pattern has one.
//   2. The pattern ends with a range and a unit, and the value is a number with a unit of the same kind: the number is
//      converted into the pattern's unit and that comparison decides alone. A pattern with more around the range is
//      searched for in the converted value, "1000 MHz" for "1.0 GHz".
//   3. Everything else is searched for.
//
// Tests that had to be given up are remembered, so that each costs its limit once.

namespace vrx {

namespace {

constexpr std::size_t SHOWN_UNITS = 80;

String shortened(StringView pattern) {
    return pattern.size() <= SHOWN_UNITS ? String(pattern) : concat(pattern.substr(0, SHOWN_UNITS), u"...");
}

void logExceeded(StringView pattern) {
    static Logger& logger = Logger::get("libRegex.Regex");
    VRX_LOG(logger, LogPriority::Warning,
            u"pattern exceeded its match limit and counts as not matching: " << shortened(pattern));
}

std::size_t keyOf(StringView pattern, LetterCase letterCase) noexcept {
    return hashOf(pattern) + (letterCase == LetterCase::Ignored ? 1U : 0U);
}

String inLetterCase(StringView text, LetterCase letterCase) {
    return letterCase == LetterCase::Ignored ? foldBeyondAscii(text) : String(text);
}

}  // namespace

CompiledPattern::CompiledPattern(StringView pattern, LetterCase letterCase)
    : m_pattern(pattern),
      m_letterCase(letterCase),
      m_hash(keyOf(pattern, letterCase)),
      m_hasExceeded(ExceededTests::instance().knowsPattern(m_hash)) {
    m_wholeRange = WholeRange::parse(m_pattern);
    // Without letter case the unit may stand there in a spelling that is not in the unit table.
    if (m_wholeRange && letterCase == LetterCase::Ignored && !m_wholeRange->unitText().empty()) {
        m_wholeRange.reset();
    }
    if (m_wholeRange) {
        return;
    }
    RangeForm form(inLetterCase(pattern, letterCase));
    if (!form.sites().empty()) {
        classify(form.sites().back());
    }
    m_program.emplace(std::move(form), letterCase);
}

void CompiledPattern::classify(const RangeSite& lastRange) {
    const StringView tail = m_pattern.view().substr(lastRange.end);
    m_unit = UnitRange::parse(tail);
    const bool isAnchored = lastRange.begin == 1 && m_pattern.view().front() == u'^';
    if ((isAnchored || lastRange.begin == 0) && (m_unit || tail.empty() || tail == u"$")) {
        m_singleRange = lastRange.range;
    }
}

bool CompiledPattern::matches(StringView value) {
    if (m_wholeRange) {
        return m_wholeRange->matches(value);
    }
    if (m_unit) {
        if (const auto number = m_unit->numberOf(value)) {
            return m_singleRange ? m_singleRange->contains(*number)
                                 : search(concat(toText(*number), u" ", m_unit->unitText()));
        }
    }
    return search(value);
}

bool CompiledPattern::search(StringView value) {
    if (!m_program->isValid()) {
        return false;
    }
    return m_letterCase == LetterCase::Ignored ? searchWithin(foldBeyondAscii(value)) : searchWithin(value);
}

bool CompiledPattern::searchWithin(StringView value) {
    ExceededTests& exceeded = ExceededTests::instance();
    if (m_hasExceeded && exceeded.meets(m_hash, hashOf(value))) {
        return false;
    }
    const SearchOutcome outcome = m_program->search(value);
    if (outcome == SearchOutcome::Exceeded) {
        m_hasExceeded = true;
        if (exceeded.add(m_hash, hashOf(value))) {
            logExceeded(m_pattern);
        }
    }
    return outcome == SearchOutcome::Match;
}

std::size_t CompiledPattern::byteSize() const noexcept {
    return sizeof *this + m_pattern.size() * sizeof(char16_t) + (m_program ? m_program->byteSize() : 0);
}

}  // namespace vrx
