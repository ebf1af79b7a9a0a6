#pragma once

#include <string>
#include <string_view>

namespace vrx {

/// How a piece of text stands out on a terminal.
enum class Style { Plain, Bold, Dim, Good, Bad, Caution };

/// The text with the terminal's codes around it when `colour` is on, else the text itself.
std::string styled(std::string_view text, Style style, bool colour);

}  // namespace vrx
