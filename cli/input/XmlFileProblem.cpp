#include "cli/input/XmlFileProblem.h"

#include <fmt/format.h>

#include "libReport/text/TextPieces.h"

namespace vrx::cli {

std::string fileProblem(const std::string& name, const String& reason, const char* expected) {
    return fmt::format("{}: {}; {}", inputName(name), reason.toUtf8(), expected);
}

std::string xmlProblem(const std::string& name, const XmlDocument& failed, const char* expected) {
    return problemAt(name, failed.ErrorRow(), failed.ErrorColumn(),
                     fmt::format("{}; {}", failed.ErrorDesc().toUtf8(), expected));
}

std::string problemAt(const std::string& name, std::uint32_t row, std::uint32_t column, const std::string& text) {
    return fmt::format("{}:{}:{}: {}", inputName(name), std::uint64_t{row} + 1, std::uint64_t{column} + 1, text);
}

}  // namespace vrx::cli
