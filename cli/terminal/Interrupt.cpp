#include "cli/terminal/Interrupt.h"

#include <csignal>

namespace vrx::cli {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int signal) {
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

// Where the program was started with the signal ignored (nohup, the background of a shell), it stays so.
Interrupt::Interrupt() {
    interrupted = 0;
    m_before = std::signal(SIGINT, noteInterrupt);
    if (m_before == SIG_IGN) {
        std::signal(SIGINT, SIG_IGN);
    }
}

Interrupt::~Interrupt() { std::signal(SIGINT, m_before == SIG_ERR ? SIG_DFL : m_before); }

bool Interrupt::wasSent() const noexcept { return interrupted != 0; }

}  // namespace vrx::cli
