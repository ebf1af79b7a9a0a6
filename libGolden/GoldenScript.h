#pragma once

#include "libGolden/GoldenDraft.h"

namespace vrx {

struct GoldenForm {
    enum class Optional {
        Comments,      ///< devices that not all have are named in comments
        Alternatives,  ///< an `or` of the sets of them that there are
    };

    bool hasComments = true;  ///< why an element asks for what it asks
    Optional optional = Optional::Comments;
};

/// Why there are no alternatives.
enum class OptionalProblem {
    None,
    Nothing,           ///< all machines have the same devices
    TooMany,           ///< more than MOST_OPTIONAL_SETS, and a check would try them one by one
    NoneWithoutPlace,  ///< a machine has none of them, and a `not` forbids everything like them, wherever it is
};

inline constexpr std::size_t MOST_OPTIONAL_SETS = 16;

OptionalProblem optionalProblem(const GoldenDraft& draft);

/// The script, in well-formed XML. It passes on every machine of the draft, provided that a check tells their devices
/// apart; try it before it is handed on.
String goldenScript(const GoldenDraft& draft, const GoldenForm& form);

}  // namespace vrx
