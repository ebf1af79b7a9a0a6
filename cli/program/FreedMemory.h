#pragma once

namespace vrx::cli {

/// Has the process keep what is freed instead of giving it back to the system, which many small jobs, one after the
/// other, would have to ask for again.
void keepFreedMemory() noexcept;

/// Has the process ask the system for memory in large steps, of which only what is used counts. In other threads than
/// the first one the C library's own steps are of a page, so that reading a large recording takes a thousand.
void takeMemoryInLargeSteps() noexcept;

}  // namespace vrx::cli
