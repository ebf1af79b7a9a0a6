/// What firmware holds where its maker had nothing to say. A text is a placeholder when, letter case and punctuation
/// aside, it is
///
///     1. one of a list ("To Be Filled By O.E.M.", "[Empty]", "(none)"), or says that somebody else will fill it
///     2. the name of the field and nothing else: "System Serial Number", "Dimm0_SerNum", "Type2 - Board Asset Tag"
///     3. somebody counting ("0123456789ABCDEF", "MB-1234567890", "9876543210") or leaning on a key ("00000000",
///        "XxXxXxX", "--")
///
/// Any other word in it makes it a value. Short numbers are values: a version may be 00.

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "libMachine/record/CleanText.h"
#include "libMachine/record/Letters.h"

namespace vrx {

namespace {

/// In small letters, without blanks and punctuation.
constexpr StringView WHOLE_TEXTS[] = {
    u"oem", u"oemdefault", u"default", u"defaultstring", u"notspecified", u"notavailable", u"notapplicable",
    u"notprovided", u"notpresent", u"notdefined", u"notset", u"notinstalled", u"notknown", u"notassigned", u"notused",
    u"noassettag", u"noassetinformation", u"noenclosure", u"nomoduleinstalled", u"nodimm", u"nodevice", u"nosn",
    u"none", u"null", u"nil", u"na", u"tbd", u"tba", u"unknown", u"unknow", u"undefined", u"unspecified", u"unassigned",
    u"uninitialized", u"unused", u"invalid", u"empty", u"blank", u"other", u"absent", u"outofspec", u"badindex",
    u"partcomponent", u"changeme", u"tobefilled", u"tobedefined",
    // UUIDs of boards that were never given one
    u"03000200040005000006000700080009", u"00020003000400050006000700080009", u"123456781234567890abcddeefaabbcc",
    u"fefefefefefefefefefefefefefefefe"};

/// What fields are called, and whose they are. A text of such words alone that ends with a name is that of a field.
constexpr StringView FIELD_NAMES[] = {
    u"number", u"num",    u"tag", u"name", u"version",  u"ser",      u"sku",      u"manufacturer", u"vendor",
    u"model",  u"family", u"id",  u"uuid", u"revision", u"location", u"assettag", u"serialnumber", u"partnumber"};
constexpr StringView FIELD_OWNERS[] = {u"system",      u"base",  u"serial", u"board",   u"baseboard", u"mainboard",
                                       u"motherboard", u"main",  u"mother", u"chassis", u"enclosure", u"product",
                                       u"part",        u"asset", u"module", u"mod",     u"dimm",      u"sodimm",
                                       u"memory",      u"ram",   u"array",  u"bank",    u"channel",   u"cpu",
                                       u"processor",   u"psu",   u"oem",    u"default", u"config",    u"no"};
/// The names that firmware counts up, device by device: "SerNum3". A version or a SKU with a number is a value.
constexpr StringView COUNTED_NAMES[] = {u"number",       u"num",          u"tag",        u"ser",
                                        u"manufacturer", u"serialnumber", u"partnumber", u"assettag"};

/// The texts of a list, which nearly no text is in: by their lengths the first letters.
class WordList {
public:
    template <std::size_t Size>
    constexpr explicit WordList(const StringView (&words)[Size]) noexcept : m_words(words) {
        for (const StringView word : words) {
            m_initials[word.size() % LENGTHS] |= bitOf(word);
        }
    }

    bool contains(StringView text) const noexcept {
        return !text.empty() && (m_initials[text.size() % LENGTHS] & bitOf(text)) != 0 &&
               std::find(m_words.begin(), m_words.end(), text) != m_words.end();
    }

private:
    static constexpr std::size_t LENGTHS = 16;

    static constexpr std::uint64_t bitOf(StringView word) noexcept { return std::uint64_t{1} << (word.front() % 64); }

    std::span<const StringView> m_words;
    std::array<std::uint64_t, LENGTHS> m_initials{};
};

constexpr WordList PLACEHOLDERS(WHOLE_TEXTS);
constexpr WordList NAMES(FIELD_NAMES);
constexpr WordList OWNERS(FIELD_OWNERS);
constexpr WordList COUNTED(COUNTED_NAMES);

constexpr char16_t smallLetter(char16_t unit) noexcept {
    return isCapitalLetter(unit) ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}
/// Of ASCII the letters and digits, small; 0 for punctuation.
constexpr std::array<char16_t, 0x80> SMALL_LETTERS = [] {
    std::array<char16_t, 0x80> letters{};
    for (char16_t unit = 0; unit < 0x80; ++unit) {
        const bool isLetter = isSmallLetter(unit) || isCapitalLetter(unit) || isDigit(unit);
        letters[unit] = isLetter ? smallLetter(unit) : u'\0';
    }
    return letters;
}();

/// What is no ASCII counts as a letter.
constexpr bool isPunctuation(char16_t unit) noexcept { return unit < 0x80 && SMALL_LETTERS[unit] == 0; }

/// Longer texts than that are no placeholders.
constexpr std::size_t LONGEST_PLACEHOLDER = 64;

class Letters {
public:
    explicit Letters(StringView text) noexcept {
        for (const char16_t unit : text.substr(0, LONGEST_PLACEHOLDER)) {
            const char16_t letter = unit < 0x80 ? SMALL_LETTERS[unit] : unit;
            if (letter != 0) {
                m_units[m_size++] = letter;
            }
        }
    }
    StringView view() const noexcept { return {m_units.data(), m_size}; }

private:
    std::array<char16_t, LONGEST_PLACEHOLDER> m_units;  // the first so many count
    std::size_t m_size = 0;
};

/// Takes the next word off a text: "SerNum3" has three, "DIMM_A1" too. Punctuation stands between words.
StringView takeWord(StringView& text) noexcept {
    const auto start = std::find_if_not(text.begin(), text.end(), isPunctuation);
    text.remove_prefix(static_cast<std::size_t>(start - text.begin()));
    std::size_t end = text.empty() ? 0 : 1;
    while (end < text.size() && !isPunctuation(text[end]) && isDigit(text[end]) == isDigit(text[end - 1]) &&
           !(isCapitalLetter(text[end]) && isSmallLetter(text[end - 1]))) {
        ++end;
    }
    const StringView word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

/// "Type1Family" without its "Type1": the kind of structure in which the field stands.
StringView withoutStructureType(StringView text) noexcept {
    StringView rest = text;
    const bool isType = Letters(takeWord(rest)).view() == u"type";
    const StringView number = takeWord(rest);
    return isType && !number.empty() && isDigit(number.front()) ? rest : text;
}

bool isNameOfField(StringView text) noexcept {
    static constexpr std::size_t LONGEST_NUMBER = 2;
    const StringView field = withoutStructureType(text);
    bool isCounted = field.size() != text.size();
    bool endsWithName = false;
    bool hasNumber = false;
    text = field;
    while (true) {
        const StringView word = takeWord(text);
        if (word.empty()) {
            return endsWithName && (isCounted || !hasNumber);
        }
        const Letters letters(word);
        if (NAMES.contains(letters.view())) {
            endsWithName = true;
            isCounted = isCounted || COUNTED.contains(letters.view());
        } else if (OWNERS.contains(letters.view())) {
            endsWithName = false;
        } else if (word.size() == 1 || (isDigit(word.front()) && word.size() <= LONGEST_NUMBER)) {
            hasNumber = true;
        } else {
            return false;
        }
    }
}

/// Whether each character follows the one before, up or down; after 9 come 0 or the letters.
bool isCounting(StringView letters, std::size_t shortest) noexcept {
    const auto follows = [](char16_t before, char16_t after) {
        return after == before + 1 || (before == u'9' && (after == u'0' || after == u'a')) ||
               (before == u'0' && after == u'a');
    };
    const bool isUp = std::adjacent_find(letters.begin(), letters.end(), [follows](char16_t before, char16_t after) {
                          return !follows(before, after);
                      }) == letters.end();
    const bool isDown = std::adjacent_find(letters.begin(), letters.end(), [](char16_t before, char16_t after) {
                            return after + 1 != before;
                        }) == letters.end();
    return letters.size() >= shortest && isDigit(letters.front()) && (isUp || isDown);
}

bool isCounted(StringView letters) noexcept {
    static constexpr std::size_t SHORTEST = 6;
    static constexpr std::size_t SHORTEST_BEHIND_LETTERS = 8;
    const auto digit = std::find_if(letters.begin(), letters.end(), isDigit<char16_t>);
    const auto letterCount = static_cast<std::size_t>(digit - letters.begin());
    return letterCount == 0 ? isCounting(letters, SHORTEST)
                            : letterCount <= 5 && isCounting(letters.substr(letterCount), SHORTEST_BEHIND_LETTERS);
}

/// One character over and over; a short run may be a real version.
bool isOneCharacter(StringView letters) noexcept {
    static constexpr std::size_t SHORTEST = 4;
    static constexpr std::size_t SHORTEST_OF_OTHERS = 7;
    const char16_t first = letters.front();
    const bool isUsual = StringView(u"0fx").find(first) != StringView::npos;
    return letters.size() >= (isUsual ? SHORTEST : SHORTEST_OF_OTHERS) &&
           letters.find_first_not_of(first) == StringView::npos;
}

/// "SKU=NotProvided;ModelName=PowerEdge R630".
bool isEmptySku(StringView text) noexcept {
    static constexpr StringView START = u"SKU=";
    return text.size() > START.size() && equalNoCase(text.substr(0, START.size()), START) &&
           isPlaceholder(text.substr(START.size(), text.find(u';') - START.size()));
}

}  // namespace

bool isPlaceholder(StringView text) noexcept {
    if (text.size() > LONGEST_PLACEHOLDER) {
        return isEmptySku(text) || text.find_first_not_of(text.front()) == StringView::npos;
    }
    const Letters normalized(text);
    const StringView letters = normalized.view();
    return letters.empty() || PLACEHOLDERS.contains(letters) || letters.find(u"byoem") != StringView::npos ||
           isOneCharacter(letters) || isCounted(letters) || isNameOfField(text) || isEmptySku(text);
}

}  // namespace vrx
