#pragma once

#include <cstdint>
#include <string>

#include "cli/files/FileKind.h"
#include "libCommon/xml/XmlDocument.h"

/// One line about a file that is of no use: which file, where, what is wrong, what was expected. The name is the path
/// as given.
namespace vrx::cli {

/// The file cannot be read, or there is nothing in it: "name: reason; expected ...".
std::string fileProblem(const std::string& name, const String& reason, FileKind wanted);

/// Its text does not parse, or has a root that nobody wants. When it begins like something else it says so, and what to
/// do; otherwise where it breaks.
std::string xmlProblem(const std::string& name, std::string_view bytes, const XmlDocument& failed, FileKind wanted);

/// 0-based.
struct TextPlace {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
};

/// Its text does not parse at that place, for that reason: the same without looking for another kind.
std::string parseProblem(const std::string& name, std::string_view bytes, const TextPlace& place, const String& reason,
                         FileKind wanted);

/// Something is wrong at a place (0-based): "name:row:column: text".
std::string problemAt(const std::string& name, std::uint32_t row, std::uint32_t column, const std::string& text);

}  // namespace vrx::cli
