#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "libCommon/io/FileDescriptor.h"
#include "libCommon/xml/parsing/XmlSource.h"

namespace vrx {

/// The bytes of a regular file, read straight into the parser's buffer. The file is taken to be as long as it was when
/// it was opened, or shorter.
class XmlFileSource final : public XmlSource {
public:
    /// Null for everything but a regular file that tells a size of at most MAXIMUM_FILE_SIZE and can be opened.
    static std::unique_ptr<XmlFileSource> open(const std::string& path);

    std::size_t read(char* buffer, std::size_t capacity) noexcept override;
    bool isAtEnd() const noexcept override { return m_left == 0; }
    std::size_t mostBytesLeft() const noexcept override { return m_left; }
    bool isInMemory() const noexcept override { return false; }

    /// Number of the error that ended reading; 0 when there was none.
    int error() const noexcept { return m_error; }

private:
    XmlFileSource(const std::string& path, std::size_t size);

    FileDescriptor m_file;
    std::size_t m_left;
    int m_error = 0;
};

}  // namespace vrx
