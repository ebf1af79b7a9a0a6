#include "cli/program/OutOfMemory.h"

#include <unistd.h>

#include <csignal>
#include <new>
#include <string_view>

#include "cli/program/ExitStatus.h"

namespace vrx::cli {

namespace {

[[noreturn]] void sayAndEnd(std::string_view line) noexcept {
    const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
    static_cast<void>(written);  // there is nowhere left to say it
    _exit(static_cast<int>(ExitStatus::InternalError));
}

void onFailedAllocation() { sayAndEnd("vrx-inventory: internal error: out of memory\n"); }

void onAbort(int) { sayAndEnd("vrx-inventory: internal error: aborted\n"); }

}  // namespace

void endWithoutMemory() noexcept {
    std::set_new_handler(onFailedAllocation);
    std::signal(SIGABRT, onAbort);
}

}  // namespace vrx::cli
