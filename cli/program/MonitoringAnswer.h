#pragma once

#include <string>

#include "cli/program/ExitStatus.h"
#include "cli/terminal/Console.h"

/// A monitoring system reads one line on standard output and knows four statuses. It gets both whatever goes wrong,
/// even where the command line itself is not understood.
namespace vrx::cli {

/// Whether some argument asks for a result that a monitoring system reads.
bool asksForMonitoring(int argc, const char* const* argv) noexcept;

/// Says on standard output that nothing is known, and why.
ExitStatus answerUnknown(Console& console, const std::string& reason);

}  // namespace vrx::cli
