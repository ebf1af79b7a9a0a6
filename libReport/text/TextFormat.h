#pragma once

namespace vrx {

/// What a text is laid out for.
///
///     TextFormat format;
///     format.width = 120;
///     std::cout << showText(report, format);
struct TextFormat {
    static constexpr unsigned DEFAULT_WIDTH = 80;
    static constexpr unsigned UNBROKEN = 1U << 20;  ///< wide enough for any line

    bool colour = false;
    unsigned width = DEFAULT_WIDTH;  ///< columns
    bool hasLines = false;           ///< characters for drawing lines can be shown
    bool isTerminal = false;         ///< somebody looks at it, so lines that are too long are better broken
    bool isStable = false;           ///< no times or dates, so that reports can be compared
};

/// How wide lines of prose may be: nobody breaks them for a program.
constexpr unsigned lineWidth(const TextFormat& format) noexcept {
    return format.isTerminal ? format.width : TextFormat::UNBROKEN;
}

}  // namespace vrx
