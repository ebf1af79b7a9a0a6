/// Nobody reads bounds out of alternatives of digits. So the pattern is tried on numbers in rising order: when it takes
/// all from one on, or all from one up to another, those are the bounds. Only patterns of digits, points and what
/// combines them are tried, so that nothing else can hang on the text.

#include "libReport/patterns/PatternBounds.h"

#include <fmt/format.h>

#include <map>
#include <vector>

#include "libRegex/Regex.h"

namespace vrx {

namespace {

constexpr StringView ALLOWED = u"0123456789.\\d[]-|()^$+*?{},:";
constexpr unsigned LARGEST = 1500;  // whole number
constexpr unsigned MAJORS = 31;
constexpr unsigned MINORS = 100;
constexpr std::size_t MOST_KNOWN = 1000;

bool isOfDigits(StringView pattern) noexcept {
    return pattern.find_first_not_of(ALLOWED) == StringView::npos && pattern.find_first_of(u"[|") != StringView::npos;
}

bool matches(StringView pattern, const std::string& value) {
    return Regex::rangeMatches(pattern, String::UTF8Decode(value), Regex::CASE_SENSITIVE);
}

/// The one run of true entries, as first and one past the last.
std::optional<std::pair<std::size_t, std::size_t>> onlyRun(const std::vector<bool>& accepted) {
    std::size_t first = 0;
    while (first < accepted.size() && !accepted[first]) {
        ++first;
    }
    std::size_t end = first;
    while (end < accepted.size() && accepted[end]) {
        ++end;
    }
    for (std::size_t i = end; i < accepted.size(); ++i) {
        if (accepted[i]) {
            return std::nullopt;
        }
    }
    return first < end ? std::optional(std::pair(first, end)) : std::nullopt;
}

std::optional<std::string> numberBounds(StringView pattern) {
    std::vector<bool> accepted;
    for (unsigned number = 0; number < LARGEST; ++number) {
        accepted.push_back(matches(pattern, std::to_string(number)));
    }
    const auto run = onlyRun(accepted);
    if (!run || run->second - run->first < 2 || run->first == 0) {
        return std::nullopt;
    }
    return run->second == LARGEST ? fmt::format("at least {}", run->first)
                                  : fmt::format("{}..{}", run->first, run->second - 1);
}

std::string versionText(std::size_t index) { return fmt::format("{}.{}", index / MINORS, index % MINORS); }

/// With `rest` behind major and minor number.
std::optional<std::string> versionBounds(StringView pattern, const char* rest) {
    std::vector<bool> accepted;
    for (std::size_t index = 0; index < std::size_t{MAJORS} * MINORS; ++index) {
        accepted.push_back(matches(pattern, versionText(index) + rest));
    }
    const auto run = onlyRun(accepted);
    if (!run || run->first == 0 || run->second - run->first < 2 || run->second % MINORS != 0) {
        return std::nullopt;
    }
    const std::string least = run->first % MINORS == 0 ? std::to_string(run->first / MINORS) : versionText(run->first);
    return "at least " + least +
           (run->second == accepted.size() ? "" : fmt::format(", below {}", run->second / MINORS));
}

std::optional<std::string> triedBounds(StringView pattern) {
    if (std::optional<std::string> bounds = numberBounds(pattern)) {
        return bounds;
    }
    for (const char* const rest : {".1", ""}) {
        if (std::optional<std::string> bounds = versionBounds(pattern, rest)) {
            return bounds;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> patternBounds(StringView pattern) {
    if (!isOfDigits(pattern)) {
        return std::nullopt;
    }
    // A report asks for the same few patterns again and again.
    thread_local std::map<String, std::optional<std::string>> known;
    if (known.size() > MOST_KNOWN) {
        known.clear();
    }
    const auto [at, isNew] = known.try_emplace(pattern);
    if (isNew) {
        at->second = triedBounds(pattern);
    }
    return at->second;
}

}  // namespace vrx
