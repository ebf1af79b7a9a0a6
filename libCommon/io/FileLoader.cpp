#include "libCommon/io/FileLoader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "libCommon/io/FileDescriptor.h"

namespace vrx {

namespace {

constexpr std::size_t CHUNK = std::size_t{64} * 1024;

bool fail(std::string& bytes, String& error, const String& reason) {
    bytes = std::string();
    error = reason;
    return false;
}

bool failWithErrno(std::string& bytes, String& error) { return fail(bytes, error, systemErrorText(errno)); }

bool failTooLarge(std::string& bytes, String& error) { return fail(bytes, error, u"file is larger than 1 GiB"); }

/// Looked at before the file is opened, because opening a device can have effects of its own.
bool isDevice(const std::string& path) noexcept {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode));
}

/// Reads to the end. A regular file is read in one piece: there is room for its size and one byte more, which stays
/// unused and so proves the end. Files that tell no true size (pipes, /proc) go on in growing chunks.
bool readAll(const FileDescriptor& file, std::string& bytes, String& error) {
    struct stat status {};
    if (fstat(file.number(), &status) != 0) {
        return failWithErrno(bytes, error);
    }
    const std::size_t expected = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
    if (expected > MAXIMUM_FILE_SIZE) {
        return failTooLarge(bytes, error);
    }
    bytes.resize(expected > 0 ? expected + 1 : CHUNK);
    std::size_t used = 0;
    while (true) {
        const ssize_t count = file.read(bytes.data() + used, bytes.size() - used);
        if (count < 0) {
            return failWithErrno(bytes, error);
        }
        if (count == 0) {
            bytes.resize(used);
            return true;
        }
        used += static_cast<std::size_t>(count);
        if (used > MAXIMUM_FILE_SIZE) {
            return failTooLarge(bytes, error);
        }
        if (used == bytes.size()) {
            bytes.resize(std::min(std::max(used * 2, CHUNK), MAXIMUM_FILE_SIZE + 1));
        }
    }
}

}  // namespace

bool loadFile(const String& path, std::string& bytes, String& error) {
    error.clear();
    const std::string name = path.toUtf8();
    if (isDevice(name)) {
        return fail(bytes, error, u"Is a device");
    }
    const FileDescriptor file(name, O_RDONLY);
    return file.isOpen() ? readAll(file, bytes, error) : failWithErrno(bytes, error);
}

bool loadDescriptor(int descriptor, std::string& bytes, String& error) {
    error.clear();
    FileDescriptor file(descriptor);
    const bool isRead = readAll(file, bytes, error);
    file.release();
    return isRead;
}

}  // namespace vrx
