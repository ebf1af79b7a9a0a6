#include "libMachine/record/CleanText.h"

#include <algorithm>
#include <string>

namespace vrx {

String cleanText(std::string_view raw) {
    raw = raw.substr(0, raw.find('\0'));
    std::string clean;
    clean.reserve(raw.size());
    for (const char unit : raw) {
        const auto code = static_cast<unsigned char>(unit);
        const bool isBlank = code <= ' ' || code == 0x7F;
        if (!isBlank) {
            clean.push_back(unit);
        } else if (!clean.empty() && clean.back() != ' ') {
            clean.push_back(' ');
        }
    }
    if (clean.ends_with(' ')) {
        clean.pop_back();
    }
    return String::UTF8Decode(clean);
}

std::string smallLetters(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](char unit) { return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit - 'A' + 'a') : unit; });
    return small;
}

bool hasWord(std::string_view words, std::string_view word, char separator) noexcept {
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(separator), words.size());
        if (words.substr(0, end) == word) {
            return true;
        }
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    return false;
}

}  // namespace vrx
