#pragma once

#include <algorithm>
#include <thread>

namespace vrx::cli {

/// How many threads a command uses that is not told how many.
inline unsigned processors() noexcept { return std::max(1U, std::thread::hardware_concurrency()); }

}  // namespace vrx::cli
