#include "libMachine/record/CleanText.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace vrx {

namespace {

// Compared without letter case.
constexpr StringView PLACEHOLDERS[] = {
    u"To Be Filled By O.E.M.",
    u"To Be Filled By O.E.M",
    u"To Be Filled By OEM",
    u"O.E.M.",
    u"OEM",
    u"OEM Default",
    u"Default",
    u"Default string",
    u"Not Specified",
    u"Not Available",
    u"Not Applicable",
    u"Not Provided",
    u"Not Present",
    u"Not Defined",
    u"Not Set",
    u"No Asset Tag",
    u"No Asset Information",
    u"No Enclosure",
    u"No Module Installed",
    u"None",
    u"Null",
    u"N/A",
    u"NA",
    u"Unknown",
    u"Unknow",
    u"Undefined",
    u"Unspecified",
    u"Invalid",
    u"Empty",
    u"[Empty]",
    u"Other",
    u"NO DIMM",
    u"<OUT OF SPEC>",
    u"<BAD INDEX>",
    u"System manufacturer",
    u"System Product Name",
    u"System Version",
    u"System Serial Number",
    u"System SKU",
    u"System Family",
    u"SKU Number",
    u"Base Board Asset Tag",
    u"Base Board Version",
    u"Board Serial Number",
    u"Chassis Asset Tag",
    u"Part Component",
    u"No Serial Number",
    u"Base Board Serial Number",
    u"Chassis Manufacturer",
    u"Chassis Serial Number",
    u"Chassis Version",
    u"Asset Tag",
    u"Asset-1234567890",
    u"Serial Number",
    u"SerNum",
    u"Part Number",
    u"Manufacturer",
    u"Model",
    u"SKU",
    u"0123456789",
    u"1234567890",
    u"123456789",
    u"12345678",
    u"1234567",
    u"123456",
    u"0123456789ABCDEF",
    u"03000200-0400-0500-0006-000700080009",  // the UUID of boards that were never given one
};

/// A dummy that firmware fills in slot by slot: "Dimm0_SerNum", "A1_AssetTagNum0", "Array1_PartNumber0",
/// "Manufacturer03".
bool isNumberedDummy(StringView text) noexcept {
    static constexpr StringView WORDS[] = {u"AssetTagNum", u"AssetTag",         u"SerNum",      u"PartNum",
                                           u"PartNumber",  u"ModulePartNumber", u"Manufacturer"};
    const std::size_t end = text.find_last_not_of(u"0123456789") + 1;
    const StringView head = text.substr(0, end);
    const std::size_t underline = head.rfind(u'_');
    if (end == text.size() && underline == StringView::npos) {
        return false;
    }
    const StringView word = underline == StringView::npos ? head : head.substr(underline + 1);
    return std::any_of(std::begin(WORDS), std::end(WORDS),
                       [word](StringView dummy) { return equalNoCase(word, dummy); });
}

/// One character over and over ("00000000", "FFFF", "xxxx", "--", "...."); a short run of zeros may be a real version.
/// The hyphens of an empty UUID do not count.
bool isOneCharacter(StringView text) noexcept {
    static constexpr std::size_t SHORTEST = 4;
    const char16_t first = text.front();
    const bool isSame =
        std::all_of(text.begin(), text.end(), [first](char16_t unit) { return unit == first || unit == u'-'; });
    if (!isSame) {
        return false;
    }
    const bool isSign = StringView(u"-.*#?_ ").find(first) != StringView::npos;
    return isSign || (text.size() >= SHORTEST && StringView(u"0FfXx").find(first) != StringView::npos);
}

}  // namespace

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

bool isPlaceholder(StringView text) noexcept {
    if (text.empty() || isOneCharacter(text) || isNumberedDummy(text)) {
        return true;
    }
    return std::any_of(std::begin(PLACEHOLDERS), std::end(PLACEHOLDERS),
                       [text](StringView placeholder) { return equalNoCase(text, placeholder); });
}

}  // namespace vrx
