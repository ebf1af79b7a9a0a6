#pragma once

#include <sys/types.h>

#include <string_view>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// An open file of the operating system, closed at the end of its life. Failures are told by result, with the reason in
/// `errno`.
class VRX_EXPORT FileDescriptor {
public:
    /// Opens a file; see isOpen. A path that holds a zero unit is refused as invalid instead of being cut off there.
    FileDescriptor(const std::string& path, int flags, mode_t mode = 0);

    /// Takes over an open descriptor.
    explicit FileDescriptor(int number) noexcept : m_number(number) {}

    ~FileDescriptor();
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    bool isOpen() const noexcept { return m_number >= 0; }
    int number() const noexcept { return m_number; }

    /// Gives up the descriptor without closing it.
    int release() noexcept;

    /// Closes at once; false when the system reports that earlier writes failed.
    bool close() noexcept;

    /// Reads up to `size` bytes; 0 at the end, negative on failure.
    ssize_t read(char* buffer, std::size_t size) const noexcept;

    /// Writes everything; false on failure.
    bool writeAll(std::string_view bytes) const noexcept;

private:
    int m_number;
};

/// The operating system's words for an error number.
VRX_EXPORT String systemErrorText(int errorNumber);

}  // namespace vrx
