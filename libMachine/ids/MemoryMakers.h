#pragma once

#include <string>
#include <string_view>

/// What modules of memory hold in place of texts: numbers, as their makers wrote them into the module.
namespace vrx {

/// The maker whose JEDEC code a text is: "00CE00B300CE", "0x2C00", "7F7F7F0B00000000", "JEDEC ID:80 CE" and
/// "Bank 1, Hex 0xCE" give "Samsung", "Micron Technology", "Nanya", "Samsung", "Samsung". Empty when the text is no
/// code, or of a maker that the table does not have.
std::string_view memoryMaker(std::string_view text) noexcept;

/// The text whose characters are written in hexadecimal digits ("4D3339334132..." is "M393A2..."); empty for any other
/// text.
std::string textInHex(std::string_view digits);

}  // namespace vrx
