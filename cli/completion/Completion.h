#pragma once

#include <string>
#include <vector>

#include "cli/program/Session.h"

namespace CLI {
class App;
}

namespace vrx::cli {

struct Candidate {
    std::string word;
    std::string text;  ///< a few words about it; may be empty
};

/// What may stand in the place of a word. Names of files are the shell's business.
struct Completion {
    enum class Files { None, Any, Xml, Folders };

    Files files = Files::None;
    std::vector<Candidate> candidates;
};

/// What may stand in the place of the last word; the others are what stands before it, without the program's name.
/// Devices and types are those of the machine that `--state` names among them.
Completion completionOf(const CLI::App& root, const std::vector<std::string>& words, Session& session);

}  // namespace vrx::cli
