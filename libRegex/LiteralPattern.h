#pragma once

#include <cstddef>
#include <optional>

#include "libCommon/text/String.h"

namespace vrx {

/// A pattern that is only literal text, optionally escaped and anchored: "a\.b", "^a\.b", "a\.b$", "^a\.b$". It borrows
/// the pattern's text; parsing and matching allocate nothing.
class LiteralPattern {
public:
    /// Empty when the pattern is anything more than a literal.
    static std::optional<LiteralPattern> parse(StringView pattern) noexcept;

    /// Whether the pattern matches in the value, with letter case.
    bool matches(StringView value) const noexcept;

    /// Whether the pattern has both anchors, so that it matches exactly one text.
    bool isAnchored() const noexcept { return m_anchoredStart && m_anchoredEnd; }

    /// The text that the pattern stands for.
    String text() const;

private:
    LiteralPattern() noexcept = default;

    std::size_t textSize() const noexcept { return m_body.size() - m_escapes; }
    bool standsAt(StringView value, std::size_t position) const noexcept;
    bool isContainedIn(StringView value) const noexcept;

    StringView m_body;          ///< the pattern without its anchors, escapes included
    std::size_t m_escapes = 0;  ///< number of backslashes in the body that escape
    bool m_anchoredStart = false;
    bool m_anchoredEnd = false;
};

}  // namespace vrx
