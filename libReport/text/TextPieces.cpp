#include "libReport/text/TextPieces.h"

#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"

namespace vrx {

std::string counted(std::size_t count, const std::string& noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string inputName(const std::string& path) { return path == "-" ? "standard input" : path; }

std::string orDash(const String& text) { return text.isEmpty() ? "-" : printable(text.view()); }

std::string durationText(std::chrono::steady_clock::duration duration) {
    const double milliseconds = std::chrono::duration<double, std::milli>(duration).count();
    if (milliseconds < 9.95) {
        return fmt::format("{:.1f} ms", milliseconds);
    }
    return milliseconds < 999.5 ? fmt::format("{:.0f} ms", milliseconds) : fmt::format("{:.1f} s", milliseconds / 1000);
}

}  // namespace vrx
