#include "libRegex/ranges/PatternItems.h"

#include <algorithm>

#include "libCommon/Assertion.h"

// Walks a regular expression just well enough to know which places are inside something: the marker of a range counts
// only outside of escapes, quoted texts, classes and comments. Groups and quantifiers need no attention, because a
// range may stand anywhere in them. Comments of the extended mode "(?x)" are not recognised.
//
// An item that is not terminated reaches to the end of the pattern; PCRE2 then says what is wrong with it.

namespace vrx {

namespace {

// The end of the first `terminator` from the position on, or of the pattern.
std::size_t endOf(StringView terminator, StringView pattern, std::size_t position) noexcept {
    const auto found = pattern.find(terminator, position);
    return found == StringView::npos ? pattern.size() : found + terminator.size();
}

std::size_t escapeEnd(StringView pattern, std::size_t position) noexcept {
    const char16_t kind = position + 1 < pattern.size() ? pattern[position + 1] : u'\0';
    if (kind == u'Q') {
        return endOf(u"\\E", pattern, position + 2);
    }
    return std::min(position + (kind == u'c' ? 3 : 2), pattern.size());
}

// The end of a "[:name:]" inside a class; just behind its "[" when it is none.
std::size_t namedClassEnd(StringView pattern, std::size_t position) noexcept {
    const char16_t kind = position + 1 < pattern.size() ? pattern[position + 1] : u'\0';
    if (kind == u':' || kind == u'.' || kind == u'=') {
        const auto stop = pattern.find_first_of(u"]\\", position + 2);
        if (stop != StringView::npos && pattern[stop] == u']' && stop > position + 2 && pattern[stop - 1] == kind) {
            return stop + 1;
        }
    }
    return position + 1;
}

std::size_t classEnd(StringView pattern, std::size_t position) noexcept {
    ++position;
    if (position < pattern.size() && pattern[position] == u'^') {
        ++position;
    }
    if (position < pattern.size() && pattern[position] == u']') {
        ++position;  // a "]" that comes first is a member
    }
    while (position < pattern.size() && pattern[position] != u']') {
        switch (pattern[position]) {
            case u'\\': position = escapeEnd(pattern, position); break;
            case u'[': position = namedClassEnd(pattern, position); break;
            default: ++position;
        }
    }
    return std::min(position + 1, pattern.size());
}

}  // namespace

std::size_t patternItemEnd(StringView pattern, std::size_t position) noexcept {
    switch (pattern[position]) {
        case u'\\': return escapeEnd(pattern, position);
        case u'[': return classEnd(pattern, position);
        case u'(': return pattern.substr(position, 3) == u"(?#" ? endOf(u")", pattern, position) : position + 1;
        default: return position + 1;
    }
}

}  // namespace vrx
