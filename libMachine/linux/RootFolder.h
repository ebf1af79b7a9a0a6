#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vrx {

/// The file system of the machine that is recorded: `/`, or a folder that holds a saved copy of its /sys and /proc.
///
/// Paths are absolute as the machine has them ("/sys/class/net"); links in a saved copy are followed inside the folder
/// and never lead out of it (before Linux 5.6 they do, when they are absolute). Reading never fails hard: what is
/// absent, not permitted, no regular file or unreadable at the moment (an attribute of sysfs may answer with an error)
/// gives an empty result, and `access` tells the first two apart.
class RootFolder {
public:
    enum class Access : std::uint8_t { Granted, Absent, Denied };

    /// Longest small file, in bytes; the rest of a longer one is not read.
    static constexpr std::size_t SMALL_FILE = std::size_t{64} * 1024;

    explicit RootFolder(std::string folder);

    /// Whether it is the machine that this program runs on.
    bool isLive() const noexcept { return m_folder.empty(); }

    /// The folder itself, "/" for the live machine.
    std::string folder() const { return isLive() ? "/" : m_folder; }

    /// Whether a file or folder can be opened for reading.
    Access access(const std::string& path) const;

    /// A file's bytes, at most `limit` of them; `access`, when given, says how it went.
    std::string bytes(const std::string& path, std::size_t limit = SMALL_FILE, Access* access = nullptr) const;

    /// A small file's text up to its first NUL, without white space at both ends.
    std::string text(const std::string& path) const;

    /// The number that a small file holds: decimal, or hexadecimal after 0x; empty when it holds none.
    std::optional<std::uint64_t> number(const std::string& path) const;

    /// Names of a folder's entries, runs of digits ordered by their value ("cpu2" before "cpu10").
    std::vector<std::string> list(const std::string& path) const;

    /// The last name of what a symbolic link points to ("nvme"); empty when it is no link.
    std::string linkTarget(const std::string& path) const;

    /// The path with all links followed, as the machine has it; empty when it is absent.
    std::string resolved(const std::string& path) const;

    /// The files and folders, in the order of their names, that nobody may read of those that were tried since this was
    /// last asked.
    std::vector<std::string> takeDenied() const;

private:
    class Descriptor;
    Descriptor open(const std::string& path, int flags) const;
    Descriptor openAnyway(const std::string& path, int flags) const;

    std::string m_folder;                        // without a slash at its end, so empty for "/"
    std::shared_ptr<const Descriptor> m_handle;  // of a saved copy's folder
    mutable std::set<std::string> m_denied;
};

/// The last name of a path.
std::string_view lastName(std::string_view path) noexcept;

/// The whole text as a number, decimal or hexadecimal after 0x; empty when it is none.
std::optional<std::uint64_t> parseNumber(std::string_view text) noexcept;

/// The decimal number that a text starts with ("8.0 GT/s"); 0 when it starts with none.
double leadingNumber(std::string_view text) noexcept;

/// The whole text as hexadecimal digits, without 0x; empty when it is none.
std::optional<std::uint32_t> parseHex(std::string_view text) noexcept;

}  // namespace vrx
