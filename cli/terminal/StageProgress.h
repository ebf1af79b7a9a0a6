#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "cli/terminal/Console.h"

namespace vrx::cli {

/// A line on a terminal that tells what the program is at, for work that takes long and does not tell itself how far it
/// is. It appears after a second, is rewritten a few times a second, and is wiped away at the end. On anything but a
/// terminal nothing is shown.
///
///     const StageProgress progress(console, "reading", path);
///     importMachineFile(path, store);
class StageProgress {
public:
    /// "checking, 4 s".
    StageProgress(Console& console, std::string what);

    /// "reading m.xml, 37 MB, 3 s".
    StageProgress(Console& console, std::string what, const std::string& path);

    ~StageProgress();
    StageProgress(const StageProgress&) = delete;
    StageProgress& operator=(const StageProgress&) = delete;

private:
    void start();
    void showUntilTheEnd();
    void show();

    Console& m_console;
    std::string m_what;
    std::chrono::steady_clock::time_point m_start;
    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_isEnded = false;
    std::thread m_thread;
};

}  // namespace vrx::cli
