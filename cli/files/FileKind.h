#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "libCommon/text/String.h"

/// What files are, told from their content, so that a line about a file of no use says what it is and what to do.
namespace vrx::cli {

enum class FileKind { Unknown, Script, PartsList, ScriptOrPartsList, Filter, Waivers, Recording };

/// "expected an inventory script, XML with the root <inventory-check>".
std::string expectedText(FileKind wanted);

/// The kind of file that this is, by how it begins.
FileKind kindOf(std::string_view bytes);

/// "this is compressed (gzip); unpack it first": what the content is when it is something else than wanted; empty when
/// it is that, or its start does not tell.
std::string otherKind(std::string_view bytes, FileKind wanted);

/// Where a quotation mark is missing in XML that does not parse, 0-based.
struct MissingQuote {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    const char* text = "";
};
std::optional<MissingQuote> findMissingQuote(StringView text);

}  // namespace vrx::cli
