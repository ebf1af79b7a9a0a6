#pragma once

#include <cstddef>
#include <optional>

#include "libCommon/text/String.h"
#include "libRegex/Pcre.h"

namespace vrx {

enum class LetterCase { Matters, Ignored };

/// Whether the matcher calls out before every item of the pattern, so that the work of a search can be counted.
enum class WorkCounting { Off, On };

/// Why a pattern did not compile.
struct CompileFailure {
    int error = 0;           ///< an error number, for `compileErrorText`
    std::size_t offset = 0;  ///< the place in the pattern
};

/// What compiling gave: a code or a failure.
struct CompiledCode {
    PcreCode code;
    std::optional<CompileFailure> failure;
};

/// Compiles an ordinary regular expression.
CompiledCode compilePattern(StringView pattern, LetterCase letterCase, WorkCounting counting);

/// The English text of an error number of `compilePattern`.
String compileErrorText(int error);

/// The text whose units beyond ASCII are folded; ASCII stands as it is, for the compiled code ignores its case itself.
/// What ignores letter case is compiled from, and matched against, such texts.
String foldBeyondAscii(StringView text);

}  // namespace vrx
