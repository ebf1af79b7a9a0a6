#pragma once

#include <cstdint>
#include <string>

#include "libCommon/xml/XmlDocument.h"

/// One line about a file that is of no use: which file, where, what is wrong, what was expected. The name is the path
/// as given.
namespace vrx::cli {

/// The file cannot be read: "name: reason; expected ...".
std::string fileProblem(const std::string& name, const String& reason, const char* expected);

/// Its text does not parse: "name:row:column: reason; expected ...".
std::string xmlProblem(const std::string& name, const XmlDocument& failed, const char* expected);

/// Something is wrong at a place (0-based): "name:row:column: text".
std::string problemAt(const std::string& name, std::uint32_t row, std::uint32_t column, const std::string& text);

}  // namespace vrx::cli
