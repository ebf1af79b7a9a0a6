#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

/// The text that is parsed. It hands itself to the parser as UTF-8, in as many pieces as the parser likes.
class XmlSource {
public:
    virtual ~XmlSource() = default;

    /// Writes the next bytes and returns their number. Requires: `capacity` is at least 4.
    virtual std::size_t read(char* buffer, std::size_t capacity) noexcept = 0;

    virtual bool isAtEnd() const noexcept = 0;

    /// The most bytes that what has not been read yet can make.
    virtual std::size_t mostBytesLeft() const noexcept = 0;

    /// Whether the text lies in memory already, so that another copy of it had better be small.
    virtual bool isInMemory() const noexcept { return true; }
};

/// Bytes that should be UTF-8; what they are not is for the parser to reject.
class XmlUtf8Source final : public XmlSource {
public:
    /// The bytes are borrowed.
    explicit XmlUtf8Source(std::string_view bytes) noexcept : m_unread(bytes) {}

    std::size_t read(char* buffer, std::size_t capacity) noexcept override;
    bool isAtEnd() const noexcept override { return m_unread.empty(); }
    std::size_t mostBytesLeft() const noexcept override { return m_unread.size(); }

private:
    std::string_view m_unread;
};

/// Another source, which ends where a text is found in it.
class XmlSearchedSource final : public XmlSource {
public:
    /// Both are borrowed. Requires: the text has 2 to 8 bytes.
    XmlSearchedSource(XmlSource& source, std::string_view wanted) noexcept : m_source(source), m_wanted(wanted) {}

    std::size_t read(char* buffer, std::size_t capacity) noexcept override;
    bool isAtEnd() const noexcept override { return m_isFound || m_source.isAtEnd(); }
    std::size_t mostBytesLeft() const noexcept override { return m_isFound ? 0 : m_source.mostBytesLeft(); }
    bool isInMemory() const noexcept override { return m_source.isInMemory(); }

    bool isFound() const noexcept { return m_isFound; }

private:
    bool isIn(std::string_view piece) noexcept;

    XmlSource& m_source;
    std::string_view m_wanted;
    std::string m_before;  // as much of the last piece as the text may begin in; short enough to need no memory
    bool m_isFound = false;
};

/// 16-bit text.
class XmlUtf16Source final : public XmlSource {
public:
    /// The text is borrowed.
    explicit XmlUtf16Source(StringView text) noexcept : m_unread(text) {}

    std::size_t read(char* buffer, std::size_t capacity) noexcept override;
    bool isAtEnd() const noexcept override { return m_unread.empty(); }
    std::size_t mostBytesLeft() const noexcept override { return 3 * m_unread.size(); }

private:
    StringView m_unread;
};

}  // namespace vrx
