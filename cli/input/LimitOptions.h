#pragma once

#include <CLI/CLI.hpp>

#include "libReport/CheckRun.h"

namespace vrx::cli {

/// Adds the options that bound how many combinations of alternatives are tried, and for how long.
void addLimits(CLI::App& command, SearchLimits& limits);

}  // namespace vrx::cli
