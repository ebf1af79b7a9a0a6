#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlPosition.h"

namespace vrx {

/// The text that is parsed. It hands itself to the parser piece by piece as UTF-8, so that it is never held twice, and
/// knows the row and column of every byte that it handed out.
class XmlSource {
public:
    virtual ~XmlSource() = default;

    /// Writes the next bytes and returns their number. Requires: `capacity` is at least 4.
    virtual std::size_t read(char* buffer, std::size_t capacity) noexcept = 0;

    /// Units of text that have not been read yet; 0 at the end.
    virtual std::size_t unitsLeft() const noexcept = 0;

    /// The most bytes that these can make.
    virtual std::size_t mostBytesLeft() const noexcept = 0;

    /// The place of the byte with that index. Cheap when asked in ascending order.
    virtual XmlPlace placeOf(std::uint64_t byteIndex) noexcept = 0;

    /// The name that stands at the place asked for last, or after an `&` there; empty when none does.
    virtual String nameHere() const = 0;
};

/// Bytes that should be UTF-8; what they are not is for the parser to reject.
class XmlUtf8Source final : public XmlSource {
public:
    /// The bytes are borrowed.
    explicit XmlUtf8Source(std::string_view bytes) noexcept : m_unread(bytes), m_position(bytes) {}

    std::size_t read(char* buffer, std::size_t capacity) noexcept override;
    std::size_t unitsLeft() const noexcept override { return m_unread.size(); }
    std::size_t mostBytesLeft() const noexcept override { return m_unread.size(); }
    XmlPlace placeOf(std::uint64_t byteIndex) noexcept override { return m_position.advanceTo(byteIndex); }
    String nameHere() const override;

private:
    std::string_view m_unread;
    XmlPosition<char> m_position;
};

/// 16-bit text.
class XmlUtf16Source final : public XmlSource {
public:
    /// The text is borrowed.
    explicit XmlUtf16Source(StringView text) noexcept : m_unread(text), m_position(text) {}

    std::size_t read(char* buffer, std::size_t capacity) noexcept override;
    std::size_t unitsLeft() const noexcept override { return m_unread.size(); }
    std::size_t mostBytesLeft() const noexcept override { return 3 * m_unread.size(); }
    XmlPlace placeOf(std::uint64_t byteIndex) noexcept override { return m_position.advanceTo(byteIndex); }
    String nameHere() const override;

private:
    StringView m_unread;
    XmlPosition<char16_t> m_position;
};

}  // namespace vrx
