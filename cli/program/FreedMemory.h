#pragma once

namespace vrx::cli {

/// Has the process keep what is freed instead of giving it back to the system, which many small jobs, one after the
/// other, would have to ask for again.
void keepFreedMemory() noexcept;

}  // namespace vrx::cli
