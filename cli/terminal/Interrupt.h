#pragma once

namespace vrx::cli {

/// While it lives, the first Ctrl-C does not end the program but is noted, so that what was found so far can be told.
/// The second ends it.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    bool wasSent() const noexcept;

private:
    void (*m_before)(int);
};

}  // namespace vrx::cli
