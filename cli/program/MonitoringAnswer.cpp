#include "cli/program/MonitoringAnswer.h"

#include <string_view>

#include "libReport/formats/NagiosStatus.h"

namespace vrx::cli {

namespace {

/// The value of that option in the arguments from there on; empty when the option is not there.
std::string_view valueAt(std::string_view option, std::string_view argument, const char* next) noexcept {
    if (argument == option) {
        return next == nullptr ? std::string_view() : std::string_view(next);
    }
    const bool holdsValue = argument.starts_with(option) && argument.substr(option.size()).starts_with('=');
    return holdsValue ? argument.substr(option.size() + 1) : std::string_view();
}

}  // namespace

bool asksForMonitoring(int argc, const char* const* argv) noexcept {
    for (int i = 1; i < argc; ++i) {
        const char* const next = i + 1 < argc ? argv[i + 1] : nullptr;
        if (valueAt("--format", argv[i], next) == "nagios" ||
            valueAt("--output", argv[i], next).starts_with("nagios:")) {
            return true;
        }
    }
    return false;
}

ExitStatus answerUnknown(Console& console, const std::string& reason) {
    std::string error;
    console.writeOut(nagiosLine(NagiosStatus::Unknown, reason) + "\n", error);  // nowhere is left to say that it fails
    return ExitStatus::Undetermined;
}

}  // namespace vrx::cli
