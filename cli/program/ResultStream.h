#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/terminal/Console.h"

namespace vrx::cli {

/// A result that is written piece by piece, because it is too long to be held. Throws a CommandFailure when it cannot
/// be written.
class ResultStream {
public:
    enum class Way : std::uint8_t {
        InOneStep,  ///< a regular file is replaced at the end; what was begun and not finished leaves nothing behind
        AsItComes,  ///< a regular file is emptied and holds at any time what was written so far
        Behind      ///< the same, behind the first bytes of what it holds
    };

    /// "-" for standard output. What is no regular file is written to. `kept` is how many bytes stay with Behind.
    ResultStream(std::string path, Way way, Console& console, std::uint64_t kept = 0);

    /// Takes back what is not finished.
    ~ResultStream();
    ResultStream(const ResultStream&) = delete;
    ResultStream& operator=(const ResultStream&) = delete;

    /// Not all of it may reach the file at once, but what waits does so within a fraction of a second of writing.
    void write(std::string_view bytes);

    void finish();

private:
    void open(Way way, std::uint64_t kept);
    void openBeside();
    void flush();
    [[noreturn]] void fail(const std::string& reason) const;

    std::string m_path;
    Console& m_console;
    int m_descriptor = -1;
    bool m_isConsole = false;
    std::string m_beside;  ///< the temporary file
    std::string m_target;  ///< and what it replaces
    std::string m_waiting;
    std::chrono::steady_clock::time_point m_flushed;
};

}  // namespace vrx::cli
