#pragma once

#include "cli/terminal/Console.h"

namespace vrx::cli {

/// The console of this process. Colour and the terminal's width are used when standard output is a terminal; NO_COLOR
/// (set and not empty) and TERM=dumb switch the colour off.
class ProcessConsole final : public Console {
public:
    /// Occupies standard descriptors that are closed, so that no file which is opened later takes their place, and
    /// ignores SIGPIPE and SIGXFSZ: a reader that went away and a file grown too large are failed writes like any
    /// other.
    ProcessConsole();

    bool writeOut(std::string_view bytes, std::string& error) override;
    void writeErr(std::string_view bytes) override;
    TextFormat outFormat() const override { return m_outFormat; }
    bool showsProgress() const override { return m_showsProgress; }
    std::chrono::steady_clock::time_point now() const override { return std::chrono::steady_clock::now(); }
    DateTime time() const override { return DateTime::getCurrentDateTime(); }

private:
    bool m_outIsClosed = false;
    bool m_showsProgress = false;
    TextFormat m_outFormat;
};

}  // namespace vrx::cli
