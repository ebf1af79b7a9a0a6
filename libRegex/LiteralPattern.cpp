#include "libRegex/LiteralPattern.h"

#include <array>

// Nearly every pattern of a generated script is an escaped text between "^" and "$". Such a pattern needs no regular
// expression: it is decided by one walk over it, beside the value, without compiling, hashing or allocating.
//
// A pattern is a literal when, apart from a leading "^" and a trailing "$", it holds only
//   - units that mean themselves, and
//   - a backslash followed by anything but an ASCII letter or digit: those are escapes with a meaning (\d, \n, \Q, \1).
// Everything doubtful ("{", which means itself unless it begins a quantifier) is left to the regular expression, so
// that this path never decides differently.
//
// The two anchors choose the comparison: equality, prefix, suffix or containment. "$" is the very end of the value.

namespace vrx {

namespace {

constexpr std::array<bool, 128> makeMetacharacters() {
    std::array<bool, 128> table{};
    for (const char16_t unit : StringView(u"\\^$.[|()?*+{")) {
        table[unit] = true;
    }
    return table;
}

constexpr std::array<bool, 128> METACHARACTERS = makeMetacharacters();

constexpr bool isMetacharacter(char16_t unit) noexcept { return unit < 128 && METACHARACTERS[unit]; }

constexpr bool isEscapeWithMeaning(char16_t unit) noexcept {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

}  // namespace

std::optional<LiteralPattern> LiteralPattern::parse(StringView pattern) noexcept {
    LiteralPattern literal;
    if (!pattern.empty() && pattern.front() == u'^') {
        literal.m_anchoredStart = true;
        pattern.remove_prefix(1);
    }
    literal.m_body = pattern;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (!isMetacharacter(pattern[i])) {
            continue;
        }
        if (pattern[i] == u'\\') {
            ++i;
            if (i == pattern.size() || isEscapeWithMeaning(pattern[i])) {
                return std::nullopt;
            }
            ++literal.m_escapes;
        } else if (pattern[i] == u'$' && i + 1 == pattern.size()) {
            literal.m_anchoredEnd = true;
            literal.m_body.remove_suffix(1);
        } else {
            return std::nullopt;
        }
    }
    return literal;
}

bool LiteralPattern::matches(StringView value) const noexcept {
    const std::size_t size = textSize();
    if (value.size() < size || (isAnchored() && value.size() != size)) {
        return false;
    }
    if (m_anchoredStart) {
        return standsAt(value, 0);
    }
    return m_anchoredEnd ? standsAt(value, value.size() - size) : isContainedIn(value);
}

// Requires: the value has textSize() units from the position on.
bool LiteralPattern::standsAt(StringView value, std::size_t position) const noexcept {
    if (m_escapes == 0) {
        return value.substr(position, m_body.size()) == m_body;
    }
    for (std::size_t i = 0; i < m_body.size(); ++i, ++position) {
        if (m_body[i] == u'\\') {
            ++i;
        }
        if (m_body[i] != value[position]) {
            return false;
        }
    }
    return true;
}

bool LiteralPattern::isContainedIn(StringView value) const noexcept {
    if (m_escapes == 0) {
        return value.find(m_body) != StringView::npos;
    }
    const std::size_t last = value.size() - textSize();
    for (std::size_t position = 0; position <= last; ++position) {
        if (standsAt(value, position)) {
            return true;
        }
    }
    return false;
}

String LiteralPattern::text() const {
    String text;
    text.reserve(textSize());
    for (std::size_t i = 0; i < m_body.size(); ++i) {
        if (m_body[i] == u'\\') {
            ++i;
        }
        text.append(m_body[i]);
    }
    return text;
}

}  // namespace vrx
