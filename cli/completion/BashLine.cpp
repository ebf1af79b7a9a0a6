#include "cli/completion/BashLine.h"

#include <string_view>

namespace vrx::cli {

BashLine::BashLine(const std::string& line) {
    bool isInWord = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char each = line[i];
        if (openQuote == 0 && (each == ' ' || each == '\t')) {
            isInWord = false;
            continue;
        }
        if (!isInWord) {
            words.emplace_back();
            lastStart = i;
            isInWord = true;
        }
        if (each == openQuote) {
            openQuote = 0;
        } else if (openQuote == 0 && (each == '\'' || each == '"')) {
            openQuote = each;
        } else if (each == '\\' && openQuote != '\'' && i + 1 < line.size()) {
            words.back() += line[++i];
        } else {
            words.back() += each;
        }
    }
    if (!isInWord) {
        words.emplace_back();
        lastStart = line.size();
    }
}

std::string bashQuoted(const std::string& word, char openQuote) {
    constexpr std::string_view SPECIAL = " \t\\\"'`$&|;<>()*?[]{}~#!";
    constexpr std::string_view SPECIAL_IN_QUOTES = "\\\"`$";
    const std::string_view special = openQuote == '\'' ? "" : openQuote == '"' ? SPECIAL_IN_QUOTES : SPECIAL;
    std::string quoted;
    for (const char each : word) {
        if (openQuote == '\'' && each == '\'') {
            quoted += "'\\'";
        }
        quoted.append(special.find(each) != special.npos ? "\\" : "") += each;
    }
    return quoted;
}

}  // namespace vrx::cli
