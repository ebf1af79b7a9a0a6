#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

/// Text from machines and scripts, made fit for a terminal.
///
///     std::cout << printable(device.name().view()) << '\n';  // no escape sequence of a device reaches a terminal
///     for (const std::string& line : wrapped(text, 80)) { ... }
namespace vrx {

/// UTF-8 text without anything that a terminal would act on: line feed, carriage return and tab become `\n`, `\r` and
/// `\t`; other control characters, direction marks, what is not shown at all (soft hyphens, joiners, tags) and unpaired
/// surrogates become `\u` and four hexadecimal digits for each unit. Everything else stands as it is.
VRX_EXPORT std::string printable(StringView text);
VRX_EXPORT std::string printable(std::string_view utf8);

/// `printable`, in double quotes where that shows something: the empty text, and blanks at either end.
VRX_EXPORT std::string printableValue(StringView text);

enum class Markup { Json, Xml };

/// The same for a whole document, whose lines stay: what a terminal would act on or not show becomes an escape of the
/// language, so that the document says what it said. Requires: valid UTF-8.
VRX_EXPORT std::string printableMarkup(std::string_view utf8, Markup markup);

/// Columns that printable UTF-8 text takes on a terminal.
VRX_EXPORT unsigned displayWidth(std::string_view utf8);

/// Breaks printable UTF-8 text into lines of at most `width` columns, at blanks where there are any. Lines after the
/// first of an indented text are indented two blanks further. At least one line. Requires: width is not 0.
VRX_EXPORT std::vector<std::string> wrapped(std::string_view utf8, unsigned width);

}  // namespace vrx
