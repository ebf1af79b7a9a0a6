#include "cli/help/NearWord.h"

#include <fmt/ranges.h>

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

/// Fewer letters are the beginning of anything; dashes count, as all options have them.
constexpr std::size_t SHORTEST_BEGINNING = 4;

std::string onlyCompletion(std::string_view written, const std::vector<std::string>& words) {
    const auto beginsSo = [written](const std::string& word) {
        return word.starts_with(written);
    };
    return written.size() >= SHORTEST_BEGINNING && std::ranges::count_if(words, beginsSo) == 1
               ? *std::ranges::find_if(words, beginsSo)
               : std::string();
}

}  // namespace

std::string nearWordHint(std::string_view written, const std::vector<std::string>& words) {
    if (const std::string word = onlyCompletion(written, words); !word.empty()) {
        return "; did you mean \"" + word + "\"?";
    }
    std::vector<String> texts;
    for (const std::string& word : words) {
        texts.push_back(String::UTF8Decode(word));
    }
    return suggestion(String::UTF8Decode(written), std::vector<StringView>(texts.begin(), texts.end()));
}

std::string choiceProblem(const std::string& name, const std::vector<std::string>& choices) {
    return std::ranges::find(choices, name) != choices.end()
               ? std::string()
               : fmt::format("\"{}\" is none of {}{}", printable(name), fmt::join(choices, ", "),
                             nearWordHint(name, choices));
}

std::string alternatives(const std::vector<std::string>& words) {
    return words.size() < 2 ? fmt::format("{}", fmt::join(words, ""))
                            : fmt::format("{} or {}", fmt::join(words.begin(), words.end() - 1, ", "), words.back());
}

}  // namespace vrx::cli
