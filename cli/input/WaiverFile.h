#pragma once

#include <string>
#include <vector>

#include "libDiagnosis/waivers/Waiver.h"

namespace vrx::cli {

/// The waivers of a file; none for an empty path. Throws a CommandFailure (bad input) with a line for each mistake in
/// it.
std::vector<Waiver> loadWaivers(const std::string& path);

}  // namespace vrx::cli
