#include "libRegex/PatternProgram.h"

#include <algorithm>
#include <new>
#include <utility>

#include "libCommon/Assertion.h"

// Searches for a compiled pattern, and gives up in bounded time and memory.
//
// PCRE2 bounds the steps of one start: a search that begins anew at every unit of the value may take that many at each,
// and a step may itself run over the whole value. That is little for a short value and endless for a long one. So:
//
//   1. A short value is searched plainly. The steps allowed from one start are the step limit or, for a pattern that
//      may start anywhere, its share of the work limit, whichever is less.
//   2. Where a share was not enough, and for a long value, the search is counted: the pattern is compiled once more
//      with a callout before every item, and the search ends when the work limit is spent. A callout costs one unit of
//      work, more after a long way through the value and in a large pattern, where many steps may lie between two
//      callouts (empty groups have none). The step limit holds as well: it ends exploding patterns sooner.
//
// Both searches decide alike; only what they can afford differs, and neither depends on what was searched for before.
// A test that no search could decide is Exceeded. Endless recursion counts as that too. Without memory
// nothing is known of pattern or value, so that is an exception.
//
// The limits are measured: a step takes about 15 ns, so a pattern such as "^(a+)+$" is given up after some 0.15 ms,
// and the costliest search after a few. ".*foo.*bar.*" on 2,000 units takes 2,000 steps for each "foo" that it meets.
// A step copies the matcher's frame, which grows with the number of groups; so patterns of many groups get fewer.

namespace vrx {

namespace {

constexpr std::uint32_t STEP_LIMIT = 8'000;
constexpr std::uint32_t WORK_LIMIT = 200'000;
constexpr std::uint32_t HEAP_LIMIT_KIB = 8 * 1024;
constexpr std::size_t SHORT_VALUE_UNITS = 2'048;
constexpr std::size_t ORDINARY_FRAME_BYTES = 320;
constexpr std::size_t UNITS_PER_WORK = 32;
constexpr std::size_t CODE_BYTES_PER_WORK = 512;
constexpr std::size_t COUNTING_FACTOR = 5;  // how much larger the code becomes with callouts, about

struct MatchWorkspace {
    PcreHandle<pcre2_match_data> data{pcre2_match_data_create(1, nullptr)};
    PcreHandle<pcre2_match_context> context{pcre2_match_context_create(nullptr)};

    MatchWorkspace() {
        if (data == nullptr || context == nullptr) {
            throw std::bad_alloc();
        }
        pcre2_set_heap_limit(context.get(), HEAP_LIMIT_KIB);
    }
};

// What the callouts of one search look at.
struct SearchWatch {
    const RangeForm& form;
    StringView value;
    const NumberPlaces& numbers;
    std::size_t workLeft = 0;
    std::size_t itemWork = 1;
    std::size_t lastPosition = 0;

    bool spend(std::size_t position) noexcept {
        const std::size_t way = position > lastPosition ? position - lastPosition : lastPosition - position;
        workLeft -= std::min(workLeft, itemWork + way / UNITS_PER_WORK);
        lastPosition = position;
        return workLeft > 0;
    }

    bool accepts(const NumberRange& range, std::size_t position) const noexcept {
        const auto number = std::ranges::lower_bound(numbers, position, {}, &NumberPlace::begin);
        return number != numbers.end() && number->begin == position &&
               range.contains(numberValue(value.substr(position, number->end - position)));
    }

    // As PCRE2 wants it: 0 goes on, a positive number fails at this place, a negative one ends the search.
    int answer(const pcre2_callout_block& block) const noexcept {
        const bool mayBeRange = block.callout_number == RangeForm::CALLOUT_NUMBER;
        const RangeSite* site = mayBeRange ? form.siteAt(block.pattern_position) : nullptr;
        return site == nullptr || accepts(site->range, block.current_position) ? 0 : 1;
    }
};

int onRangeCallout(pcre2_callout_block* block, void* watch) noexcept {
    return static_cast<const SearchWatch*>(watch)->answer(*block);
}

int onCountedCallout(pcre2_callout_block* block, void* data) noexcept {
    auto& watch = *static_cast<SearchWatch*>(data);
    return watch.spend(block->current_position) ? watch.answer(*block) : PCRE2_ERROR_CALLOUT;
}

using Callout = int (*)(pcre2_callout_block*, void*);

SearchOutcome run(const pcre2_code& code, std::uint32_t stepLimit, Callout callout, SearchWatch& watch) {
    thread_local const MatchWorkspace workspace;
    pcre2_match_context* const context = workspace.context.get();
    pcre2_set_match_limit(context, stepLimit);
    pcre2_set_depth_limit(context, stepLimit);
    pcre2_set_callout(context, callout, &watch);
    const int result =
        pcre2_match(&code, pcreUnits(watch.value), watch.value.size(), 0, 0, workspace.data.get(), context);
    if (result >= 0) {
        return SearchOutcome::Match;
    }
    if (result == PCRE2_ERROR_NOMEMORY) {
        throw std::bad_alloc();
    }
    return result == PCRE2_ERROR_NOMATCH ? SearchOutcome::NoMatch : SearchOutcome::Exceeded;
}

template <typename Number>
Number patternInfo(const pcre2_code& code, std::uint32_t what) noexcept {
    Number number = 0;
    pcre2_pattern_info(&code, what, &number);
    return number;
}

std::size_t codeBytes(const PcreCode& code) noexcept {
    return code != nullptr ? patternInfo<std::size_t>(*code, PCRE2_INFO_SIZE) : 0;
}

}  // namespace

PatternProgram::PatternProgram(RangeForm form, LetterCase letterCase)
    : m_form(std::move(form)), m_letterCase(letterCase) {
    CompiledCode compiled = compilePattern(m_form.ordinaryPattern(), letterCase, WorkCounting::Off);
    m_code = std::move(compiled.code);
    if (compiled.failure) {
        m_failure = CompileFailure{compiled.failure->error, m_form.writtenOffset(compiled.failure->offset)};
        return;
    }
    const auto frame = patternInfo<std::size_t>(*m_code, PCRE2_INFO_FRAMESIZE);
    const auto share = static_cast<std::uint32_t>(1 + frame / ORDINARY_FRAME_BYTES);
    m_stepLimit = STEP_LIMIT / share;
    m_workLimit = WORK_LIMIT / share;
    m_isAnchored = (patternInfo<std::uint32_t>(*m_code, PCRE2_INFO_ALLOPTIONS) & PCRE2_ANCHORED) != 0;
}

SearchOutcome PatternProgram::search(StringView value) {
    VRX_ASSERT(isValid());
    const NumberPlaces numbers = m_form.sites().empty() ? NumberPlaces() : findNumbers(value);
    if (value.size() <= SHORT_VALUE_UNITS) {
        const std::uint32_t limit = startLimit(value.size());
        SearchWatch watch{m_form, value, numbers};
        const auto outcome = run(*m_code, limit, m_form.sites().empty() ? nullptr : &onRangeCallout, watch);
        if (outcome != SearchOutcome::Exceeded || limit == m_stepLimit) {
            return outcome;
        }
    }
    return countedSearch(value, numbers);
}

std::uint32_t PatternProgram::startLimit(std::size_t valueSize) const noexcept {
    const std::size_t starts = m_isAnchored ? 1 : valueSize + 1;
    return std::min(m_stepLimit, static_cast<std::uint32_t>(m_workLimit / starts));
}

SearchOutcome PatternProgram::countedSearch(StringView value, const NumberPlaces& numbers) {
    if (!m_triedCounting) {
        m_triedCounting = true;
        m_countingCode = compilePattern(m_form.ordinaryPattern(), m_letterCase, WorkCounting::On).code;
    }
    SearchWatch watch{m_form, value, numbers, m_workLimit, 1 + codeBytes(m_code) / CODE_BYTES_PER_WORK};
    // The callouts make the code larger; one that no longer fits is searched for with its share of each start.
    return m_countingCode != nullptr ? run(*m_countingCode, m_stepLimit, &onCountedCallout, watch)
                                     : run(*m_code, startLimit(value.size()), &onRangeCallout, watch);
}

std::size_t PatternProgram::byteSize() const noexcept {
    return m_form.ordinaryPattern().size() * sizeof(char16_t) + m_form.sites().capacity() * sizeof(RangeSite) +
           codeBytes(m_code) * (1 + COUNTING_FACTOR);
}

}  // namespace vrx
