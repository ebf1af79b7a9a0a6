#include "cli/program/ExtraResult.h"

#include <filesystem>

#include "cli/help/NearWord.h"

namespace vrx::cli {

namespace {

std::filesystem::path placeOf(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path place = std::filesystem::weakly_canonical(std::filesystem::absolute(path), failure);
    return failure ? std::filesystem::path(path).lexically_normal() : place;
}

}  // namespace

std::string readExtraResult(const std::string& text, const std::vector<std::string>& formats, ExtraResult& result) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos || colon + 1 == text.size()) {
        return "expected FORMAT:FILE, such as " + formats.back() + ":report; one result alone has --format and -o";
    }
    result = {text.substr(0, colon), text.substr(colon + 1)};
    return choiceProblem(result.format, formats);
}

bool areOneFile(const std::string& a, const std::string& b) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(a, failure);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        return false;
    }
    return placeOf(a) == placeOf(b) || std::filesystem::equivalent(a, b, failure);
}

}  // namespace vrx::cli
