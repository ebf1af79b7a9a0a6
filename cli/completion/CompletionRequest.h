#pragma once

#include <string>
#include <vector>

#include "cli/program/Session.h"

namespace CLI {
class App;
}

namespace vrx::cli {

/// The word that shells begin the command line with when they ask what may stand at a place.
inline constexpr const char* COMPLETION_REQUEST = "__complete";

/// The answer to a shell's question, whose words stand behind COMPLETION_REQUEST:
///
///     words WORD...        "words", then a line "candidate<tab>text" for each candidate for the last word
///     bash LINE WORD       the same without texts, each candidate as it takes the place of WORD, which is the end of
///                          LINE behind the last sign that bash breaks words at
///
/// In the place of "words" stands "files", "xml" or "folders" where names of files are wanted.
std::string completionAnswer(const CLI::App& root, const std::vector<std::string>& question, Session& session);

}  // namespace vrx::cli
