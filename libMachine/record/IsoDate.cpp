/// A date is three groups of digits or letters, whatever stands between them, or eight digits; a time may follow. A
/// group of four digits is the year, a word is the month; of "12/15/2023" the month comes first, as firmware writes it,
/// of "15.12.2023" the day.

#include "libMachine/record/IsoDate.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <vector>

#include "libMachine/record/Letters.h"

namespace vrx {

namespace {

struct Date {
    unsigned year = 0;
    unsigned month = 0;
    unsigned day = 0;

    bool isOne() const noexcept {
        return month >= 1 && month <= 12 && day >= 1 && day <= 31 && year >= 1900 && year <= 9999;
    }
};

bool isDateLetter(char letter) noexcept { return (letter | 0x20) >= 'a' && (letter | 0x20) <= 'z'; }

std::vector<std::string_view> groupsOf(std::string_view text) {
    std::vector<std::string_view> groups;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        if (isDigit(text[at]) || isDateLetter(text[at])) {
            while (end < text.size() && (isDigit(text[at]) ? isDigit(text[end]) : isDateLetter(text[end]))) {
                ++end;
            }
            groups.push_back(text.substr(at, end - at));
        }
        at = end;
    }
    return groups;
}

/// 0 for what is no number of at most four digits.
unsigned dateNumber(std::string_view group) noexcept {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(group.data(), group.data() + group.size(), number);
    return error == std::errc() && end == group.data() + group.size() && group.size() <= 4 ? number : 0;
}

/// "Dec" or "December" gives 12; 0 for any other word.
unsigned monthNamed(std::string_view word) noexcept {
    static constexpr std::string_view NAMES = "janfebmaraprmayjunjulaugsepoctnovdec";
    static constexpr std::size_t LENGTH = 3;
    std::string start(word.substr(0, LENGTH));
    std::transform(start.begin(), start.end(), start.begin(),
                   [](char letter) { return static_cast<char>(letter | 0x20); });
    const std::size_t at = start.size() == LENGTH ? NAMES.find(start) : std::string_view::npos;
    return at == std::string_view::npos || at % LENGTH != 0 ? 0 : static_cast<unsigned>(at / LENGTH) + 1;
}

unsigned yearIn(std::string_view group) noexcept {
    static constexpr unsigned FIRST = 80;
    const unsigned year = dateNumber(group);
    return group.size() != 2 ? year : year + (year >= FIRST ? 1900 : 2000);
}

Date dateIn(std::string_view text) {
    const std::vector<std::string_view> groups = groupsOf(text);
    if (groups.size() == 1 && groups[0].size() == 8) {
        return {dateNumber(groups[0].substr(0, 4)), dateNumber(groups[0].substr(4, 2)),
                dateNumber(groups[0].substr(6))};
    }
    if (groups.size() < 3) {
        return {};
    }
    if (groups[0].size() == 4) {
        return {dateNumber(groups[0]), dateNumber(groups[1]), dateNumber(groups[2])};
    }
    const unsigned year = yearIn(groups[2]);
    if (const unsigned month = monthNamed(groups[0])) {
        return {year, month, dateNumber(groups[1])};
    }
    if (const unsigned month = monthNamed(groups[1])) {
        return {year, month, dateNumber(groups[0])};
    }
    const bool isDayFirst = text.find('.') != std::string_view::npos;
    return {year, dateNumber(groups[isDayFirst ? 1 : 0]), dateNumber(groups[isDayFirst ? 0 : 1])};
}

}  // namespace

std::string isoDate(std::string_view text) {
    const Date date = dateIn(text);
    return date.isOne() ? fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day) : std::string(text);
}

}  // namespace vrx
