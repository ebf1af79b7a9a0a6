#pragma once

/// What kind of ASCII character a unit of a text is, whichever text it is of.
namespace vrx {

template <typename Unit>
constexpr bool isDigit(Unit unit) noexcept {
    return unit >= '0' && unit <= '9';
}

template <typename Unit>
constexpr bool isSmallLetter(Unit unit) noexcept {
    return unit >= 'a' && unit <= 'z';
}

template <typename Unit>
constexpr bool isCapitalLetter(Unit unit) noexcept {
    return unit >= 'A' && unit <= 'Z';
}

}  // namespace vrx
