#pragma once

namespace vrx::cli {

/// From now on an allocation that fails ends the process at once, with one line on standard error and the status of an
/// internal error; so does whatever would abort it, as the system's run-time library does when it has no memory for
/// itself. So nothing that was left half done can become an answer, and code that runs before `main` or may not throw
/// needs no handling of its own.
void endWithoutMemory() noexcept;

}  // namespace vrx::cli
