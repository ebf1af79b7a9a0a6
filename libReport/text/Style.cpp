#include "libReport/text/Style.h"

namespace vrx {

namespace {

const char* codeOf(Style style) noexcept {
    switch (style) {
        case Style::Bold: return "\033[1m";
        case Style::Dim: return "\033[2m";
        case Style::Good: return "\033[1;32m";
        case Style::Bad: return "\033[1;31m";
        case Style::Caution: return "\033[1;33m";
        case Style::Plain: break;
    }
    return "";
}

}  // namespace

std::string styled(std::string_view text, Style style, bool colour) {
    if (!colour || style == Style::Plain || text.empty()) {
        return std::string(text);
    }
    std::string out = codeOf(style);
    return out.append(text).append("\033[0m");
}

}  // namespace vrx
