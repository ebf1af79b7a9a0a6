/// Replacement of a file in one step.
///
/// The new content goes to a temporary file in the folder of the old one, so that both lie on one file system, and is
/// renamed over it once everything was written and closed without an error. Readers see the old content or the new,
/// never a part. Symbolic links are followed first: what is renamed over is the file at their end. What is no regular
/// file cannot be replaced so and is written as it is. Nor is an open file replaced that is named by one of the links
/// of the process file system, /dev/stdout for one: whoever opened it would not see the new one. One of our own is
/// written on where it stands, another process's is appended to.

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "libCommon/io/FileDescriptor.h"
#include "libCommon/io/FileLoader.h"

namespace vrx {

namespace {

constexpr int MAXIMUM_LINKS = 40;

/// Whether it is a link that the system makes for something open; what it says is no path then.
bool isProcessLink(const std::filesystem::path& link) {
    struct statfs system {};
    return statfs(link.has_parent_path() ? link.parent_path().c_str() : ".", &system) == 0 &&
           system.f_type == PROC_SUPER_MAGIC;
}

/// The path at the end of a chain of symbolic links, whether or not a file is there; empty for a circle. A link of the
/// process file system ends it.
std::string followLinks(const std::string& path) {
    std::filesystem::path at(path);
    std::error_code failure;
    for (int links = 0; links < MAXIMUM_LINKS; ++links) {
        if (isProcessLink(at)) {
            return at.native();
        }
        const std::filesystem::path target = std::filesystem::read_symlink(at, failure);
        if (failure) {
            return at.native();  // no link, or nothing at all
        }
        at = target.is_absolute() ? target : at.parent_path() / target;
    }
    errno = ELOOP;
    return {};
}

/// Creates a file of a name of its own beside `target`; its permissions are those of any new file.
FileDescriptor createBeside(const std::string& target, std::string& name) {
    const std::string prefix = target.substr(0, target.rfind('/') + 1) + ".vrx-" + std::to_string(getpid()) + "-";
    for (unsigned number = 0;; ++number) {
        name = prefix + std::to_string(number) + ".tmp";
        FileDescriptor file(name, O_WRONLY | O_CREAT | O_EXCL, 0666);
        if (file.isOpen() || errno != EEXIST) {
            return FileDescriptor(file.release());
        }
    }
}

/// Gives the new file the old one's owner, as far as the system allows, and permissions.
bool copyPermissions(const struct stat& old, int file) noexcept {
    struct stat created {};
    if (fstat(file, &created) == 0 && (created.st_uid != old.st_uid || created.st_gid != old.st_gid) &&
        fchown(file, old.st_uid, old.st_gid) != 0) {
        errno = 0;  // the owner is a courtesy: only the permissions are promised
    }
    return fchmod(file, old.st_mode & 07777) == 0;
}

bool writeThrough(const std::string& path, std::string_view bytes) {
    FileDescriptor file(path, O_WRONLY | O_APPEND);
    return file.isOpen() && file.writeAll(bytes) && file.close();
}

/// `old` is null when there is no file yet.
bool replaceRegular(const std::string& target, const struct stat* old, std::string_view bytes) {
    std::string name;
    FileDescriptor file = createBeside(target, name);
    if (!file.isOpen()) {
        return false;
    }
    const bool isWritten = (old == nullptr || copyPermissions(*old, file.number())) && file.writeAll(bytes) &&
                           file.close() && std::rename(name.c_str(), target.c_str()) == 0;
    if (!isWritten) {
        const int reason = errno;
        unlink(name.c_str());
        errno = reason;
    }
    return isWritten;
}

/// The link's own name is the number of the open file, if the folder is the one of this process.
std::optional<int> ownDescriptorOf(const std::filesystem::path& link) {
    std::error_code failure;
    const std::string number = link.filename().native();
    const bool isNumber = !number.empty() && number.size() < 9 && number.find_first_not_of("0123456789") == number.npos;
    if (!isNumber || !std::filesystem::equivalent(link.parent_path(), "/proc/self/fd", failure)) {
        return std::nullopt;
    }
    return std::stoi(number);
}

bool writeOn(int number, std::string_view bytes) {
    FileDescriptor file(number);
    const bool isWritten = file.writeAll(bytes);
    file.release();
    return isWritten;
}

bool replaceBytes(const std::string& path, std::string_view bytes) {
    if (path.find('\0') != std::string::npos) {
        errno = EINVAL;
        return false;
    }
    const std::string target = followLinks(path);
    if (const std::optional<int> own = ownDescriptorOf(target)) {
        return writeOn(*own, bytes);
    }
    struct stat old {};
    const bool exists = stat(path.c_str(), &old) == 0;
    if (exists && (!S_ISREG(old.st_mode) || isProcessLink(target))) {
        return writeThrough(path, bytes);
    }
    if (exists && access(path.c_str(), W_OK) != 0) {
        return false;  // renaming would get round the file's own write protection
    }
    return !target.empty() && replaceRegular(target, exists ? &old : nullptr, bytes);
}

}  // namespace

std::optional<int> ownDescriptor(const String& path) { return ownDescriptorOf(followLinks(path.toUtf8())); }

bool replaceFile(const String& path, std::string_view bytes, String& error) {
    error.clear();
    if (replaceBytes(path.toUtf8(), bytes)) {
        return true;
    }
    error = systemErrorText(errno);
    return false;
}

}  // namespace vrx
