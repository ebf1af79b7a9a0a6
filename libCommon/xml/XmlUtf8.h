#pragma once

#include <cstddef>
#include <string_view>

#include "libCommon/text/String.h"

/// The two conversions between the parser's UTF-8 and the document's UTF-16, into memory that the caller has reserved.
/// Both are made for short, mostly ASCII texts.
namespace vrx {

/// Decodes UTF-8 and returns the end of what it wrote. Requires: `bytes` is valid UTF-8 (the XML parser saw to that);
/// `out` has room for as many units as there are bytes.
char16_t* decodeValidUtf8(std::string_view bytes, char16_t* out) noexcept;

/// Encodes from the start of `text` until fewer than four bytes of `capacity` are left or the text ends, never
/// splitting a surrogate pair. An unpaired surrogate becomes the three bytes that UTF-8 forbids, so that a strict
/// reader stops at it. Returns the bytes written and drops what it consumed from `text`.
std::size_t encodeUtf8Chunk(StringView& text, char* out, std::size_t capacity) noexcept;

}  // namespace vrx
