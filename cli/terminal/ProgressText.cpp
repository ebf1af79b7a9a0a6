#include "cli/terminal/ProgressText.h"

#include <fmt/format.h>

namespace vrx::cli {

namespace {

constexpr double MINUTE = 60;
constexpr double HOUR = 60 * MINUTE;
constexpr double LONGEST = 100 * HOUR;

std::string leftText(double seconds) {
    return seconds > LONGEST        ? "more than 100 h left"
           : seconds > 1.5 * HOUR   ? fmt::format("{:.0f} h left", seconds / HOUR)
           : seconds > 1.5 * MINUTE ? fmt::format("{:.0f} min left", seconds / MINUTE)
                                    : fmt::format("{:.0f} s left", seconds);
}

}  // namespace

std::string rateText(const Amount& amount, std::chrono::duration<double> elapsed, const std::string& unit) {
    if (amount.done <= 0 || elapsed.count() <= 0) {
        return {};
    }
    const double rate = amount.done / elapsed.count();
    return fmt::format(", {:.{}f}{} a second, {}", rate, rate < 10 ? 1 : 0, unit,
                       leftText((amount.total - amount.done) / rate));
}

}  // namespace vrx::cli
