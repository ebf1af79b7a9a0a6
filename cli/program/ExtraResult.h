#pragma once

#include <string>
#include <vector>

namespace vrx::cli {

/// One more form of a command's result, and where it goes: what `--output FORMAT:FILE` says. The path is "-" for
/// standard output.
struct ExtraResult {
    std::string format;
    std::string path;
};

/// Reads FORMAT:FILE. The problem, if there is one, is what to tell the user; else it is empty.
std::string readExtraResult(const std::string& text, const std::vector<std::string>& formats, ExtraResult& result);

/// Whether the two paths name one file. What is no regular file, such as a terminal, is never taken for one.
bool areOneFile(const std::string& a, const std::string& b);

}  // namespace vrx::cli
