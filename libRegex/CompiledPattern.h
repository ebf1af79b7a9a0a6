#pragma once

#include <cstddef>
#include <optional>

#include "libCommon/text/String.h"
#include "libRegex/PatternCompiler.h"
#include "libRegex/PatternProgram.h"
#include "libRegex/WholeRange.h"
#include "libRegex/ranges/NumberScanner.h"
#include "libRegex/ranges/UnitRange.h"

namespace vrx {

/// A pattern made ready for use. Not to be shared between threads, and not to be moved.
class CompiledPattern {
public:
    CompiledPattern(StringView pattern, LetterCase letterCase);
    CompiledPattern(const CompiledPattern&) = delete;
    CompiledPattern& operator=(const CompiledPattern&) = delete;

    /// Whether the pattern matches somewhere in the value; false where that could not be decided.
    bool matches(StringView value);

    /// The pattern as written.
    StringView pattern() const noexcept { return m_pattern; }

    /// Why the pattern does not compile; empty when it does.
    std::optional<CompileFailure> failure() const noexcept { return m_program ? m_program->failure() : std::nullopt; }

    /// About the memory that the pattern takes.
    std::size_t byteSize() const noexcept;

private:
    void classify(const RangeSite& lastRange);
    bool search(StringView value);
    bool searchWithin(StringView value);

    String m_pattern;
    LetterCase m_letterCase;
    std::optional<UnitRange> m_unit;           ///< the unit behind the last range, borrowed from m_pattern
    std::optional<NumberRange> m_singleRange;  ///< the range of a pattern that is one range, anchors and unit aside
    std::optional<WholeRange> m_wholeRange;    ///< what decides without a program; borrowed from m_pattern
    std::optional<PatternProgram> m_program;   ///< none for a whole range
    std::size_t m_hash;                        ///< of the pattern and its letter case
    bool m_hasExceeded;                        ///< some test of this pattern was given up
};

}  // namespace vrx
