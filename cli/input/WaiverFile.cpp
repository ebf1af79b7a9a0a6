#include "cli/input/WaiverFile.h"

#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/program/ExitStatus.h"
#include "libCommon/xml/XmlDocument.h"

namespace vrx::cli {

std::vector<Waiver> loadWaivers(const std::string& path) {
    if (path.empty()) {
        return {};
    }
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        throw CommandFailure(ExitStatus::BadInput, fileProblem(path, reason, FileKind::Waivers));
    }
    XmlDocument document;
    if (!document.ParseUtf8(bytes) || !otherKind(bytes, FileKind::Waivers).empty()) {
        throw CommandFailure(ExitStatus::BadInput, xmlProblem(path, bytes, document, FileKind::Waivers));
    }
    std::vector<WaiverMistake> mistakes;
    std::vector<Waiver> waivers = readWaivers(*document.RootElement(), mistakes);
    if (!mistakes.empty()) {
        std::vector<std::string> lines;
        for (const WaiverMistake& mistake : mistakes) {
            lines.push_back(problemAt(path, static_cast<std::uint32_t>(mistake.place.row - 1),
                                      static_cast<std::uint32_t>(mistake.place.column - 1), mistake.text));
        }
        throw CommandFailure(ExitStatus::BadInput, lines);
    }
    return waivers;
}

}  // namespace vrx::cli
