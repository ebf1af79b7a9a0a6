/// What is at work is busy with one long call, so another thread watches the clock. How far a file is read only the
/// system knows: it tells the position of every file that the process has open.

#include "cli/terminal/StageProgress.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "cli/terminal/ProgressText.h"
#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds FIRST_SHOWN_AFTER(1000);
constexpr milliseconds SHOWN_EVERY(200);
constexpr double MEGABYTE = 1e6;

/// What stands behind "pos:" in the description of an open file.
double positionOf(const std::string& descriptor) {
    std::ifstream description("/proc/self/fdinfo/" + descriptor);
    std::string name;
    double position = 0;
    description >> name >> position;
    return position;
}

/// None when the file is not open.
std::optional<Amount> amountRead(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code failure;
    if (!fs::is_regular_file(path, failure)) {
        return std::nullopt;
    }
    for (fs::directory_iterator each("/proc/self/fd", failure), end; !failure && each != end; each.increment(failure)) {
        std::error_code other;
        if (fs::equivalent(each->path(), path, other)) {
            return Amount{positionOf(each->path().filename()) / MEGABYTE,
                          static_cast<double>(fs::file_size(path, other)) / MEGABYTE};
        }
    }
    return std::nullopt;
}

}  // namespace

StageProgress::StageProgress(Console& console, std::string what) : m_console(console), m_what(std::move(what)) {
    start();
}

StageProgress::StageProgress(Console& console, std::string what, std::string path)
    : m_console(console),
      m_what(std::move(what) + " " + printable(std::filesystem::path(path).filename().string())),
      m_path(std::move(path)) {
    start();
}

StageProgress::~StageProgress() {
    if (m_thread.joinable()) {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnded = true;
        }
        m_end.notify_one();
        m_thread.join();
    }
}

void StageProgress::start() {
    if (m_console.showsProgress()) {
        m_start = m_console.now();
        m_thread = std::thread([this] { showUntilTheEnd(); });
    }
}

void StageProgress::showUntilTheEnd() {
    std::unique_lock lock(m_mutex);
    bool isShown = false;
    while (!m_end.wait_for(lock, isShown ? SHOWN_EVERY : FIRST_SHOWN_AFTER, [this] { return m_isEnded; })) {
        show();
        isShown = true;
    }
    if (isShown) {
        m_console.writeErr("\r\033[K");
    }
}

void StageProgress::show() {
    const std::chrono::duration<double> elapsed = m_console.now() - m_start;
    std::string line = "\r\033[K" + m_what;
    if (const std::optional<Amount> amount = m_path.empty() ? std::nullopt : amountRead(m_path)) {
        line += fmt::format(", {:.0f} of {:.0f} MB", amount->done, amount->total) + rateText(*amount, elapsed, " MB");
    } else {
        line += fmt::format(", {:.0f} s", elapsed.count());
    }
    m_console.writeErr(line);
}

}  // namespace vrx::cli
