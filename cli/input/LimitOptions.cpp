#include "cli/input/LimitOptions.h"

#include <string>

namespace vrx::cli {

namespace {

std::string limitProblem(const std::string& text) {
    double limit = 0;
    return CLI::detail::lexical_cast(text, limit) && limit > 0 ? std::string() : "expected a number above 0";
}

}  // namespace

void addLimits(CLI::App& command, SearchLimits& limits) {
    command
        .add_option("--max-combinations", limits.combinations,
                    "Try so many combinations of alternatives at most; undetermined when that decides nothing")
        ->check(CLI::Validator(limitProblem, ""))
        ->type_name("NUMBER");
    command
        .add_option("--timeout", limits.seconds,
                    "Try combinations for so long at most; undetermined when that decides nothing")
        ->check(CLI::Validator(limitProblem, ""))
        ->type_name("SECONDS");
}

}  // namespace vrx::cli
