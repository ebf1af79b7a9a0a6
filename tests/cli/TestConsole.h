#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "cli/program/Program.h"
#include "cli/terminal/Console.h"

namespace vrx::cli {

/// Keeps what the program writes. Its clock stands still, so reports are the same every time.
class TestConsole final : public Console {
public:
    bool writeOut(std::string_view bytes, std::string& error) override {
        if (!outError.empty()) {
            error = outError;
            return false;
        }
        out.append(bytes);
        return true;
    }
    void writeErr(std::string_view bytes) override { err.append(bytes); }
    TextFormat outFormat() const override { return format; }
    bool showsProgress() const override { return isWatched; }
    std::chrono::steady_clock::time_point now() const override {
        m_now += tick;
        return m_now;
    }
    DateTime time() const override { return DateTime(1767323045); }  // 2026-01-02T03:04:05Z

    std::string out;
    std::string err;
    std::string outError;  ///< makes every write to standard output fail
    TextFormat format;
    bool isWatched = false;
    std::chrono::seconds tick{0};  ///< how far the clock goes on each time it is asked

private:
    mutable std::chrono::steady_clock::time_point m_now;
};

/// The program's exit status for these arguments.
inline int runWith(TestConsole& console, const std::vector<std::string>& arguments) {
    std::vector<const char*> argv{"vrx-inventory"};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    Session session(console);
    return static_cast<int>(runProgram(static_cast<int>(argv.size()), argv.data(), session));
}

}  // namespace vrx::cli
