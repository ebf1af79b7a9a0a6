#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "libCommon/text/String.h"
#include "libRegex/PatternCompiler.h"
#include "libRegex/ranges/RangeForm.h"

namespace vrx {

enum class SearchOutcome { Match, NoMatch, Exceeded };

/// A compiled pattern that can be searched for within bounded work. Not to be shared between threads.
class PatternProgram {
public:
    PatternProgram(RangeForm form, LetterCase letterCase);

    bool isValid() const noexcept { return m_code != nullptr; }

    /// Why the pattern did not compile, with the place in the pattern as written.
    const std::optional<CompileFailure>& failure() const noexcept { return m_failure; }

    /// Looks for the pattern in the value. Requires: isValid(); where letter case is ignored, the value is folded by
    /// `foldBeyondAscii`.
    SearchOutcome search(StringView value);

    /// About the memory that the program takes.
    std::size_t byteSize() const noexcept;

private:
    std::uint32_t startLimit(std::size_t valueSize) const noexcept;
    SearchOutcome countedSearch(StringView value, const NumberPlaces& numbers);

    RangeForm m_form;
    LetterCase m_letterCase;
    PcreCode m_code;
    PcreCode m_countingCode;  ///< made when first needed
    bool m_triedCounting = false;
    bool m_isAnchored = false;      ///< can match at the beginning of the value only
    std::uint32_t m_stepLimit = 0;  ///< steps of the matcher from one start
    std::uint32_t m_workLimit = 0;  ///< work of one search, all starts together
    std::optional<CompileFailure> m_failure;
};

}  // namespace vrx
