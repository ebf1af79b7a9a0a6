#include "cli/terminal/Interrupt.h"

namespace vrx::cli {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM};

std::atomic<bool> isInterrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);  // a handler may touch nothing else

void onInterrupt(int) { isInterrupted = true; }

}  // namespace

// Where the program was started with a signal ignored (nohup, the background of a shell), it stays so.
Interrupt::Interrupt() {
    isInterrupted = false;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (int i = 0; i < 2; ++i) {
        sigaction(SIGNALS[i], &action, &m_before[i]);
        if (m_before[i].sa_handler == SIG_IGN) {
            sigaction(SIGNALS[i], &m_before[i], nullptr);
        }
    }
}

Interrupt::~Interrupt() {
    for (int i = 0; i < 2; ++i) {
        sigaction(SIGNALS[i], &m_before[i], nullptr);
    }
}

const std::atomic<bool>& Interrupt::isAsked() const noexcept { return isInterrupted; }

void Interrupt::ask() noexcept { isInterrupted = true; }

}  // namespace vrx::cli
