#pragma once

#include <string>
#include <string_view>

#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// The bytes of a recording as text that every reader takes: UTF-8 without byte-order mark, without control characters
/// other than tab and line ends.
///
/// UTF-16 is decoded when the text starts with its byte-order mark or with an ASCII character in 16 bits. Bytes that
/// are no UTF-8 become U+FFFD each; control characters, NULs among them, and what no XML document may hold are left
/// out. Both are counted.
std::string mendedText(std::string_view bytes, DamageList& damage);

/// Whether the bytes are UTF-16, as far as their start tells, and then which byte of a unit comes first.
enum class Utf16Order : unsigned char { None, LittleEndian, BigEndian };
Utf16Order utf16Order(std::string_view bytes) noexcept;

}  // namespace vrx
