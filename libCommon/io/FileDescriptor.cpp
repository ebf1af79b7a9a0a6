#include "libCommon/io/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vrx {

namespace {

int openPath(const std::string& path, int flags, mode_t mode) noexcept {
    if (path.find('\0') != std::string::npos) {
        errno = EINVAL;
        return -1;
    }
    return open(path.c_str(), flags | O_CLOEXEC, mode);
}

}  // namespace

FileDescriptor::FileDescriptor(const std::string& path, int flags, mode_t mode)
    : m_number(openPath(path, flags, mode)) {}

FileDescriptor::~FileDescriptor() { close(); }

int FileDescriptor::release() noexcept { return std::exchange(m_number, -1); }

bool FileDescriptor::close() noexcept { return !isOpen() || ::close(release()) == 0; }

ssize_t FileDescriptor::read(char* buffer, std::size_t size) const noexcept {
    ssize_t count = 0;
    do {
        count = ::read(m_number, buffer, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

bool FileDescriptor::writeAll(std::string_view bytes) const noexcept {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_number, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

String systemErrorText(int errorNumber) { return String::UTF8Decode(std::generic_category().message(errorNumber)); }

}  // namespace vrx
