#include "libLint/rules/patterns/LiteralText.h"

#include <algorithm>

namespace vrx {

namespace {

bool isAlnum(char16_t unit) noexcept {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') ||
           unit > 0x7F;
}

bool isOneOf(char16_t unit, StringView units) noexcept { return units.find(unit) != StringView::npos; }

/// What the sign at a place of a text is.
enum class Sign { Plain, Meant, Unescaped };

/// Reads a text sign by sign.
class SignReader {
public:
    explicit SignReader(StringView text) noexcept : m_text(text) {}

    std::optional<std::size_t> firstUnescaped() noexcept {
        std::optional<std::size_t> found;
        while (m_at < m_text.size()) {
            const std::size_t begin = m_at;
            switch (take()) {
                case Sign::Plain: break;
                case Sign::Meant: return std::nullopt;
                case Sign::Unescaped: found = found ? found : begin; break;
            }
        }
        return found;
    }

private:
    char16_t at(std::size_t place) const noexcept { return place < m_text.size() ? m_text[place] : u'\0'; }
    char16_t before() const noexcept { return m_at > 0 ? m_text[m_at - 1] : u'\0'; }

    Sign take() noexcept {
        const char16_t unit = m_text[m_at];
        const char16_t next = at(m_at + 1);
        switch (unit) {
            case u'\\': m_at += 2; return isAlnum(next) || next == u'\0' ? Sign::Meant : Sign::Plain;
            case u'[':
            case u'{':
            case u'|':
            case u'?':
            case u'^':
            case u'$':
            case u')': return Sign::Meant;
            case u'(': return takeGroup();
            case u'.': return takePoint(next);
            case u'+': return judge(isAlnum(before()) || before() == u'+');
            case u'*': return judge(isAlnum(before()) && next != u'*');
            default: ++m_at; return Sign::Plain;
        }
    }

    Sign judge(bool isUnescaped) noexcept {
        ++m_at;
        return isUnescaped ? Sign::Unescaped : Sign::Meant;
    }

    /// A group of plain text that nothing repeats.
    Sign takeGroup() noexcept {
        const std::size_t end = m_text.find(u')', m_at);
        const StringView inside = m_text.substr(m_at + 1, end == StringView::npos ? 0 : end - m_at - 1);
        const bool isPlain = !inside.empty() && std::ranges::all_of(inside, [](char16_t unit) {
            return isAlnum(unit) || isOneOf(unit, u" -_,/");
        });
        m_at = end == StringView::npos ? m_text.size() : end + 1;
        return isPlain && !isOneOf(at(m_at), u"*+?{") ? Sign::Unescaped : Sign::Meant;
    }

    /// A point inside a word or number, or that of an abbreviation.
    Sign takePoint(char16_t next) noexcept {
        const bool isInside = isAlnum(next) || next == u' ' || next == u',';
        return judge(isAlnum(before()) && (isInside || (next == u'\0' && isAbbreviation())));
    }

    /// Whether the word that ends here is one of several, of letters only: "Micron Technology Inc."
    bool isAbbreviation() const noexcept {
        const std::size_t blank = m_text.find_last_of(u' ', m_at);
        const StringView word = blank == StringView::npos ? StringView() : m_text.substr(blank + 1, m_at - blank - 1);
        return word.size() > 1 && std::ranges::none_of(word, isDigit);
    }

    StringView m_text;
    std::size_t m_at = 0;
};

bool isEscaped(StringView text, std::size_t place) noexcept {
    std::size_t slashes = 0;
    while (slashes < place && text[place - slashes - 1] == u'\\') {
        ++slashes;
    }
    return slashes % 2 == 1;
}

std::size_t numberSize(StringView body) noexcept {
    std::size_t end = !body.empty() && isOneOf(body[0], u"+-") ? 1 : 0;
    while (end < body.size() && (isDigit(body[end]) || (end > 0 && isOneOf(body[end], u".,\\")))) {
        ++end;
    }
    return end;
}

}  // namespace

AnchoredText::AnchoredText(StringView pattern) noexcept
    : body(pattern),
      isFromStart(pattern.starts_with(u'^')),
      isToEnd(pattern.ends_with(u'$') && !isEscaped(pattern, pattern.size() - 1)) {
    body.remove_prefix(isFromStart ? 1 : 0);
    body.remove_suffix(isToEnd ? 1 : 0);
}

std::optional<std::size_t> unescapedSign(StringView body) noexcept { return SignReader(body).firstUnescaped(); }

std::vector<StringView> alternativesOf(StringView pattern) {
    std::vector<StringView> alternatives;
    std::size_t begin = 0;
    int depth = 0;
    bool isInClass = false;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        const char16_t unit = pattern[at];
        if (unit == u'\\') {
            ++at;
        } else if (isInClass || unit == u'[') {
            isInClass = unit != u']';
        } else if (unit == u'(' || unit == u')') {
            depth += unit == u'(' ? 1 : -1;
        } else if (unit == u'|' && depth == 0) {
            alternatives.push_back(pattern.substr(begin, at - begin));
            begin = at + 1;
        }
    }
    alternatives.push_back(pattern.substr(begin));
    return alternatives;
}

bool isNumberText(StringView body) noexcept {
    const std::size_t number = numberSize(body);
    const bool hasLeadingZero = number > 1 && body[0] == u'0' && isDigit(body[1]);
    if (number == 0 || hasLeadingZero || !isDigit(body[number - 1])) {
        return false;
    }
    const StringView rest = body.substr(number);
    return rest.empty() ||
           (rest.size() > 1 && rest[0] == u' ' && std::ranges::all_of(rest.substr(1), [](char16_t unit) {
                return (isAlnum(unit) && !isDigit(unit)) || isOneOf(unit, u"/%");
            }));
}

}  // namespace vrx
