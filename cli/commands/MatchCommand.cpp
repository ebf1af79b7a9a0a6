#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/commands/MatchExplanation.h"
#include "cli/program/CommonOptions.h"
#include "libInventory/Inventory.h"
#include "libRegex/Regex.h"

namespace vrx::cli {

namespace {

constexpr const char* MATCH_FOOTER =
    "The pattern is a regular expression that is searched for in the value, with\n"
    "letter case; VRXRRANGE[low-high] in it stands for a number between the two. A\n"
    "pattern that does not match is compared as plain text, without letter case. Below\n"
    "\"no match\" stands why.\n"
    "Exit status: 0 it matches; 1 it does not; 2 wrong usage; 3 undetermined: the\n"
    "pattern took too much work; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory match '^Intel.*Xeon' 'Intel(R) Xeon(R) Gold 6130'\n"
    "  vrx-inventory match '^VRXRRANGE[990-1010] MHz$' '1 GHz'";

struct MatchOptions : CommonOptions {
    std::string pattern;
    std::string value;
};

/// A pattern that does not compile may still be meant as plain text, so it is a remark and no failure.
void sayWhenBroken(const String& pattern, const Session& session) {
    std::size_t offset = 0;
    const String problem = Regex::compileError(pattern, &offset);
    if (!problem.isEmpty()) {
        session.say("the pattern does not compile, it is compared as plain text: at character " +
                    std::to_string(offset + 1) + ": " + problem.toUtf8());
    }
}

CommandResult match(const MatchOptions& options, const Session& session) {
    const String pattern = String::UTF8Decode(options.pattern);
    sayWhenBroken(pattern, session);
    const std::size_t givenUpBefore = Regex::exceededCount();
    const String value = String::UTF8Decode(options.value);
    const bool matches = Inventory::matchString(pattern, value);
    if (!matches && Regex::exceededCount() > givenUpBefore) {
        throw CommandFailure(ExitStatus::Undetermined, "undecided: the pattern took too much work on this value");
    }
    return matches ? CommandResult{ExitStatus::Success, "match\n", {}, {}}
                   : CommandResult{ExitStatus::NotPassed, "no match\n" + whyNoMatch(pattern, value)};
}

}  // namespace

void addMatchCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<MatchOptions>();
    CLI::App& command = *parent.add_subcommand("match", "Compare a value with a pattern as a check does");
    command.add_option("PATTERN", options->pattern, "The pattern, as in a script")->required();
    command.add_option("VALUE", options->value, "The value, as a machine reports it")->required();
    options->addLogging(command);
    command.footer(MATCH_FOOTER);
    setAction(command, session, options, [options, &session] { return match(*options, session); });
}

}  // namespace vrx::cli
