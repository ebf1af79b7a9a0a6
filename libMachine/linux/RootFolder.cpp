#include "libMachine/linux/RootFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace vrx {

/// A file descriptor, closed with its owner.
class RootFolder::Descriptor {
public:
    explicit Descriptor(int number) noexcept : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(other.release()) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    operator int() const noexcept { return m_number; }
    int release() noexcept { return std::exchange(m_number, -1); }

private:
    int m_number;
};

namespace {

constexpr int FOR_READING = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

RootFolder::Access accessOfError(int error) noexcept {
    return error == EACCES || error == EPERM ? RootFolder::Access::Denied : RootFolder::Access::Absent;
}

/// A pipe or a device in a saved tree must not hold the recorder up: nothing but regular files is read.
bool isRegular(int descriptor) noexcept {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

std::string readUpTo(int descriptor, std::size_t limit) {
    static constexpr std::size_t STEP = 4096;  // what sysfs gives at most; larger files grow the step
    std::string bytes;
    std::size_t step = STEP;
    while (bytes.size() < limit) {
        const std::size_t before = bytes.size();
        bytes.resize(before + std::min(step, limit - before));
        const ssize_t count = read(descriptor, bytes.data() + before, bytes.size() - before);
        bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count <= 0) {
            break;
        }
        step *= 2;
    }
    return bytes;
}

std::string_view trimmedBytes(std::string_view text) noexcept {
    static constexpr std::string_view WHITE = " \t\n\r\v\f";
    text = text.substr(0, text.find('\0'));
    const std::size_t first = text.find_first_not_of(WHITE);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(WHITE) - first + 1);
}

template <typename Number>
std::optional<Number> parseWhole(std::string_view text, int base) noexcept {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && stop == end ? std::optional<Number>(number) : std::nullopt;
}

/// What a link points to; empty when the descriptor (of the link itself, or of the folder of `name`) has none.
std::string linkIn(int descriptor, const char* name) {
    char target[PATH_MAX];
    const ssize_t size = readlinkat(descriptor, name, target, sizeof target);
    return size <= 0 ? std::string() : std::string(target, static_cast<std::size_t>(size));
}

}  // namespace

RootFolder::RootFolder(std::string folder) : m_folder(std::move(folder)) {
    m_folder.erase(m_folder.find_last_not_of('/') + 1);
    if (!isLive()) {
        m_handle = std::make_shared<Descriptor>(::open(m_folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
}

RootFolder::Descriptor RootFolder::open(const std::string& path, int flags) const {
    Descriptor opened = openAnyway(path, flags);
    if (opened < 0 && accessOfError(errno) == Access::Denied) {
        const int error = errno;
        m_denied.insert(path);
        errno = error;
    }
    return opened;
}

std::vector<std::string> RootFolder::takeDenied() const {
    const std::set<std::string> denied = std::exchange(m_denied, {});
    return {denied.begin(), denied.end()};
}

RootFolder::Descriptor RootFolder::openAnyway(const std::string& path, int flags) const {
    if (isLive()) {
        return Descriptor(::open(path.c_str(), flags));
    }
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = RESOLVE_IN_ROOT;
    const long number = syscall(SYS_openat2, static_cast<int>(*m_handle), path.c_str(), &how, sizeof how);
    if (number < 0 && errno == ENOSYS) {
        return Descriptor(::open((m_folder + path).c_str(), flags));
    }
    return Descriptor(static_cast<int>(number));
}

RootFolder::Access RootFolder::access(const std::string& path) const {
    return open(path, FOR_READING) >= 0 ? Access::Granted : accessOfError(errno);
}

std::string RootFolder::bytes(const std::string& path, std::size_t limit, Access* access) const {
    const Descriptor file = open(path, FOR_READING);
    const bool isReadable = file >= 0 && isRegular(file);
    if (access != nullptr) {
        *access = isReadable ? Access::Granted : file < 0 ? accessOfError(errno) : Access::Absent;
    }
    return isReadable ? readUpTo(file, limit) : std::string();
}

std::string RootFolder::text(const std::string& path) const { return std::string(trimmedBytes(bytes(path))); }

std::optional<std::uint64_t> RootFolder::number(const std::string& path) const { return parseNumber(text(path)); }

std::vector<std::string> RootFolder::list(const std::string& path) const {
    std::vector<std::string> names;
    DIR* const folder = fdopendir(open(path, FOR_READING | O_DIRECTORY).release());
    if (folder == nullptr) {
        return names;
    }
    while (const dirent* const entry = readdir(folder)) {
        if (entry->d_name[0] != '.') {
            names.emplace_back(entry->d_name);
        }
    }
    closedir(folder);
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return strverscmp(a.c_str(), b.c_str()) < 0; });
    return names;
}

std::string RootFolder::linkTarget(const std::string& path) const {
    return std::string(lastName(linkIn(open(path, O_PATH | O_NOFOLLOW | O_CLOEXEC), "")));
}

std::string RootFolder::resolved(const std::string& path) const {
    if (isLive()) {
        char target[PATH_MAX];
        return realpath(path.c_str(), target) == nullptr ? std::string() : std::string(target);
    }
    const auto pathOf = [](int descriptor) {
        return linkIn(AT_FDCWD, ("/proc/self/fd/" + std::to_string(descriptor)).c_str());
    };
    const std::string base = pathOf(*m_handle);
    const std::string target = pathOf(open(path, O_PATH | O_CLOEXEC));
    const bool isInside = target.size() > base.size() && target.starts_with(base) && target[base.size()] == '/';
    return isInside ? target.substr(base.size()) : std::string();
}

std::string_view lastName(std::string_view path) noexcept { return path.substr(path.rfind('/') + 1); }

std::optional<std::uint64_t> parseNumber(std::string_view text) noexcept {
    return text.starts_with("0x") ? parseWhole<std::uint64_t>(text.substr(2), 16) : parseWhole<std::uint64_t>(text, 10);
}

double leadingNumber(std::string_view text) noexcept {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && std::isfinite(number) ? number : 0;
}

std::optional<std::uint32_t> parseHex(std::string_view text) noexcept { return parseWhole<std::uint32_t>(text, 16); }

}  // namespace vrx
