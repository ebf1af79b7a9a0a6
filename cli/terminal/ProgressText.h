#pragma once

#include <chrono>
#include <string>

namespace vrx::cli {

/// How far something is: so much of so much, in the same unit.
struct Amount {
    double done = 0;
    double total = 0;
};

/// ", 35 a second, 8 s left": what the time that it took so far says of the rest; empty when that is nothing yet.
/// `unit` stands behind the rate: " MB".
std::string rateText(const Amount& amount, std::chrono::duration<double> elapsed, const std::string& unit);

}  // namespace vrx::cli
