#pragma once

#include <cstddef>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// Pattern matching with numeric ranges.
///
/// Patterns are Perl-compatible regular expressions on UTF-16 text. A pattern is searched for: it may match anywhere in
/// the value unless it is anchored. `$` matches at the very end only, `.` matches one code unit that is no line feed,
/// `\d`, `\w`, `\s` and `\b` are ASCII.
///
/// Range form: wherever the marker `VRXRRANGE()` followed by `[low-high]` stands in a pattern, it matches one decimal
/// number (optional sign, digits with an optional fraction, `5`, `5.`, `.5`, optional exponent; never a piece of a
/// longer number; a sign that follows a letter or a digit is a hyphen) whose value lies between the two bounds, both
/// included, whichever of them is the larger. A leading minus of a bound belongs to the bound: `[-9--11]`, `[-5-10]`.
/// The marker is ordinary text where no valid bounds follow, inside `\Q..\E`, in a character class and in a comment.
///
/// Units in a range: where the range is followed by one blank and a unit text of the unit table, then the end of the
/// pattern (with or without `$`), and the value is a number, a blank and a unit of the same kind, the value's number is
/// converted into the pattern's unit and that comparison decides alone: `^VRXRRANGE[990-1010] MHz$` matches "1.0 GHz".
///
/// Compiled patterns are kept in a bounded cache. Work is bounded: a pattern that exceeds its match limit on a value
/// counts as "no match" and is logged once at priority 3; a pattern that does not compile counts as "no match".
///
///     Regex::rangeMatches(u"^DDR5$", u"ddr5", 0);                                       // true
///     Regex::rangeMatches(u"^VRXRRANGE[990-1010] MHz$", u"1.0 GHz", 0);                 // true
///     Regex::compileError(u"(DDR5");                                                    // why it never matches
class VRX_EXPORT Regex {
public:
    /// The flag bit of `rangeMatches` that makes letter case matter.
    static constexpr unsigned short CASE_SENSITIVE = 1;

    /// Whether the pattern matches somewhere in the value.
    static bool rangeMatches(StringView pattern, StringView value, unsigned short flags);

    /// The marker of the range form, "VRXRRANGE".
    static const String& VRXRRANGE();

    /// The text that an anchored, escaped literal pattern ("^a\.b$") stands for: true and `literal` set when the
    /// pattern matches exactly one text. Lets callers answer from an index instead of matching.
    static bool isAnchoredLiteral(StringView pattern, String& literal);

    /// Why the pattern does not compile; empty when it does. `offset`, when given, is set to the place in the pattern.
    static String compileError(StringView pattern, std::size_t* offset = nullptr);

    /// Tests of patterns that the calling thread has given up at their match limit since it started. Whoever wants to
    /// tell "did not match" from "could not be decided" compares the number before and after.
    static std::size_t exceededCount() noexcept;
};

}  // namespace vrx
