#pragma once

#include <string>
#include <string_view>

#include "libCommon/text/String.h"

/// What vendors write into their devices, made fit for a recording.
namespace vrx {

/// The text up to its first NUL, decoded from UTF-8, control characters as blanks, runs of blanks as one, none at the
/// ends.
String cleanText(std::string_view raw);

/// The text with ASCII letters made small, as a recording has addresses and UUIDs.
std::string smallLetters(std::string_view text);

/// Whether a list of words, with one separator between each two, has that word.
bool hasWord(std::string_view words, std::string_view word, char separator) noexcept;

/// Whether a cleaned text stands where a vendor had nothing to say: "To Be Filled By O.E.M.", "Not Specified", "None",
/// "0000000", "Type1Sku0". Such a value tells nothing about the machine and is left out of a recording.
bool isPlaceholder(StringView text) noexcept;

}  // namespace vrx
