#pragma once

#include <atomic>
#include <csignal>

namespace vrx::cli {

/// While one lives, the first interrupt (Ctrl-C, or the word to end) only asks the program to come to an end, so that
/// what was found so far can be told; the next one ends it as ever. One lives at a time.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// Becomes true with the interrupt.
    const std::atomic<bool>& isAsked() const noexcept;

    /// Asks as an interrupt does.
    void ask() noexcept;

private:
    struct sigaction m_before[2];
};

}  // namespace vrx::cli
