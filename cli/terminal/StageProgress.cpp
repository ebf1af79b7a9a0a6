/// What is at work is busy with one long call, so another thread watches the clock.

#include "cli/terminal/StageProgress.h"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <system_error>

#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

constexpr std::chrono::milliseconds APPEARS_AFTER(1000);
constexpr std::chrono::milliseconds REWRITTEN_EVERY(200);
constexpr double MEGABYTE = 1e6;

/// ", 38 MB" for a file that is worth a megabyte; empty for others.
std::string sizeText(const std::string& path) {
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    return failure || static_cast<double>(size) < MEGABYTE
               ? std::string()
               : fmt::format(", {:.0f} MB", static_cast<double>(size) / MEGABYTE);
}

}  // namespace

StageProgress::StageProgress(Console& console, std::string what) : m_console(console), m_what(std::move(what)) {
    start();
}

StageProgress::StageProgress(Console& console, std::string what, const std::string& path)
    : m_console(console),
      m_what(std::move(what) + " " + printable(std::filesystem::path(path).filename().string()) + sizeText(path)) {
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
    while (!m_end.wait_for(lock, isShown ? REWRITTEN_EVERY : APPEARS_AFTER, [this] { return m_isEnded; })) {
        show();
        isShown = true;
    }
    if (isShown) {
        m_console.writeErr("\r\033[K");
    }
}

void StageProgress::show() {
    const std::chrono::duration<double> elapsed = m_console.now() - m_start;
    m_console.writeErr(fmt::format("\r\033[K{}, {:.0f} s", m_what, elapsed.count()));
}

}  // namespace vrx::cli
