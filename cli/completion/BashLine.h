#pragma once

#include <string>
#include <vector>

namespace vrx::cli {

/// A line of bash as far as it is typed, divided into words as bash divides it: quotes and backslashes are taken off,
/// nothing is expanded.
struct BashLine {
    explicit BashLine(const std::string& line);

    std::vector<std::string> words;  ///< the last one is where the line ends; it may be empty
    std::size_t lastStart = 0;       ///< where the last word begins in the line
    char openQuote = 0;              ///< the quotation mark that the line ends within
};

/// The word as somebody types it who began it with that quotation mark, or with none (0).
std::string bashQuoted(const std::string& word, char openQuote);

}  // namespace vrx::cli
