#include "cli/input/FilterFile.h"

#include <fmt/format.h>

#include <filesystem>

#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/program/ExitStatus.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/filter/SysinfoFilter.h"

namespace vrx::cli {

namespace {

std::string filterProblem(const std::string& path, std::string_view bytes, const SysinfoFilter& filter) {
    if (const std::string other = otherKind(bytes, FileKind::Filter); !other.empty()) {
        return fmt::format("{}: {}", inputName(path), other);
    }
    return fmt::format("{}:{}:{}: {}; {}", inputName(path), filter.errorRow(), filter.errorColumn(),
                       filter.errorReason().toUtf8(), expectedText(FileKind::Filter));
}

/// Why the filter does not load; empty when it does.
std::string loadFilter(const std::string& path, SysinfoFilter& filter) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        return fileProblem(path, reason, FileKind::Filter);
    }
    return filter.load(bytes) == SysinfoFilter::PARSE_SUCCESS ? std::string() : filterProblem(path, bytes, filter);
}

/// Whether the default filter is there and loads. That there is none is normal; one that does not load is passed over,
/// so the user learns why.
bool loadDefaultFilter(SysinfoFilter& filter, const Session& session) {
    std::error_code failure;
    if (!std::filesystem::exists(DEFAULT_FILTER, failure)) {
        return false;
    }
    const std::string problem = loadFilter(DEFAULT_FILTER, filter);
    session.say(problem.empty()
                    ? fmt::format("{} of the working directory decides what the script names", DEFAULT_FILTER)
                    : problem + "; passed over, so the script names everything");
    return problem.empty();
}

}  // namespace

bool loadChosenFilter(const std::string& path, SysinfoFilter& filter, const Session& session) {
    if (path.empty()) {
        return loadDefaultFilter(filter, session);
    }
    if (const std::string problem = loadFilter(path, filter); !problem.empty()) {
        throw CommandFailure(ExitStatus::BadInput, problem);
    }
    return true;
}

}  // namespace vrx::cli
