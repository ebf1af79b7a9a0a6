#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vrx::cli {

/// "; did you mean "check"?" with the word that is nearest, or the only one that begins so; empty when there is none.
std::string nearWordHint(std::string_view written, const std::vector<std::string>& words);

/// Why the name is none of the choices, with the one that was probably meant; empty when it is one.
std::string choiceProblem(const std::string& name, const std::vector<std::string>& choices);

/// "bash, zsh or fish".
std::string alternatives(const std::vector<std::string>& words);

}  // namespace vrx::cli
