#include "cli/terminal/ProcessConsole.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace vrx::cli {

namespace {

constexpr unsigned NARROWEST = 40;
constexpr unsigned WIDEST = 160;  // longer lines are hard to read

bool isClosed(int descriptor) noexcept { return fcntl(descriptor, F_GETFD) == -1 && errno == EBADF; }

/// True when it was closed.
bool occupy(int descriptor) {
    if (!isClosed(descriptor)) {
        return false;
    }
    const int opened = open("/dev/null", O_RDWR);  // the lowest free number, which is this one
    if (opened >= 0 && opened != descriptor) {
        dup2(opened, descriptor);
        close(opened);
    }
    return true;
}

bool wantsColour() noexcept {
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return (noColour == nullptr || *noColour == '\0') && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

/// Whether the terminal takes UTF-8, as the environment says: the first of these variables that is set decides.
bool showsUtf8() noexcept {
    for (const char* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* const locale = std::getenv(variable);
        if (locale != nullptr && *locale != '\0') {
            return strcasestr(locale, "utf-8") != nullptr || strcasestr(locale, "utf8") != nullptr;
        }
    }
    return false;
}

unsigned terminalWidth() noexcept {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return TextFormat::DEFAULT_WIDTH;
    }
    return std::clamp<unsigned>(size.ws_col, NARROWEST, WIDEST);
}

bool writeAll(int descriptor, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

ProcessConsole::ProcessConsole() {
    occupy(STDIN_FILENO);
    m_outIsClosed = occupy(STDOUT_FILENO);
    occupy(STDERR_FILENO);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    if (isatty(STDOUT_FILENO) == 1) {
        m_outFormat.colour = wantsColour();
        m_outFormat.hasLines = showsUtf8();
        m_outFormat.width = terminalWidth();
        m_outFormat.isTerminal = true;
    }
    m_showsProgress = isatty(STDERR_FILENO) == 1;
}

bool ProcessConsole::writeOut(std::string_view bytes, std::string& error) {
    if (m_outIsClosed) {
        error = "it is closed";
        return false;
    }
    if (!writeAll(STDOUT_FILENO, bytes)) {
        error = std::strerror(errno);
        return false;
    }
    return true;
}

void ProcessConsole::writeErr(std::string_view bytes) { writeAll(STDERR_FILENO, bytes); }

}  // namespace vrx::cli
