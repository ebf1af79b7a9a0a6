#include "cli/program/ResultStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "cli/program/ExitStatus.h"
#include "libCommon/io/FileLoader.h"

namespace vrx::cli {

namespace {

constexpr std::size_t MOST_WAITING = std::size_t{64} * 1024;
constexpr std::chrono::milliseconds LONGEST_WAIT(200);
constexpr mode_t NEW_FILE = 0666;

mode_t maskOfNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

}  // namespace

ResultStream::ResultStream(std::string path, Way way, Console& console, std::uint64_t kept)
    : m_path(std::move(path)), m_console(console), m_flushed(std::chrono::steady_clock::now()) {
    m_isConsole = m_path == "-" || ownDescriptor(String::UTF8Decode(m_path)) == STDOUT_FILENO;
    if (!m_isConsole) {
        open(way, kept);
    }
}

ResultStream::~ResultStream() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
    if (!m_beside.empty()) {
        unlink(m_beside.c_str());
    }
}

void ResultStream::open(Way way, std::uint64_t kept) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(m_path, failure);
    const bool isReplaced = !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
    if (way == Way::InOneStep && isReplaced) {
        openBeside();
        return;
    }
    m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, NEW_FILE);
    const auto stays = static_cast<off_t>(way == Way::Behind ? kept : 0);
    if (m_descriptor < 0 ||
        (isReplaced && (ftruncate(m_descriptor, stays) != 0 || lseek(m_descriptor, 0, SEEK_END) < 0))) {
        fail(std::strerror(errno));
    }
}

/// A temporary file beside the one that it will replace, or beside what a link of that name leads to.
void ResultStream::openBeside() {
    std::error_code failure;
    const std::filesystem::path real = std::filesystem::canonical(m_path, failure);
    m_target = failure ? m_path : real.string();
    m_beside = m_target + ".XXXXXX";
    m_descriptor = mkostemp(m_beside.data(), O_CLOEXEC);
    if (m_descriptor < 0) {
        m_beside.clear();
        fail(std::strerror(errno));
    }
    struct stat old {};
    fchmod(m_descriptor, stat(m_target.c_str(), &old) == 0 ? old.st_mode & 07777 : NEW_FILE & ~maskOfNewFiles());
}

void ResultStream::write(std::string_view bytes) {
    m_waiting += bytes;
    const auto now = std::chrono::steady_clock::now();
    if (m_waiting.size() > MOST_WAITING || now - m_flushed > LONGEST_WAIT) {
        flush();
        m_flushed = now;
    }
}

void ResultStream::flush() {
    std::string error;
    if (m_isConsole) {
        if (!m_waiting.empty() && !m_console.writeOut(m_waiting, error)) {
            fail(error);
        }
        m_waiting.clear();
        return;
    }
    for (std::string_view rest = m_waiting; !rest.empty();) {
        const ssize_t count = ::write(m_descriptor, rest.data(), rest.size());
        if (count < 0 && errno != EINTR) {
            fail(std::strerror(errno));
        }
        rest.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    m_waiting.clear();
}

void ResultStream::finish() {
    flush();
    if (m_descriptor >= 0 && close(std::exchange(m_descriptor, -1)) != 0) {
        fail(std::strerror(errno));
    }
    if (!m_beside.empty()) {
        if (rename(m_beside.c_str(), m_target.c_str()) != 0) {
            fail(std::strerror(errno));
        }
        m_beside.clear();
    }
}

void ResultStream::fail(const std::string& reason) const {
    throw CommandFailure(ExitStatus::BadInput,
                         "cannot write " + (m_isConsole ? "to standard output" : m_path) + ": " + reason);
}

}  // namespace vrx::cli
