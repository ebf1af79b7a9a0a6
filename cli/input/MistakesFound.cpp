#include "cli/input/MistakesFound.h"

#include <algorithm>
#include <utility>

#include "libLint/Lint.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

std::vector<std::string> linesOf(const ScriptMistakes& mistakes) {
    std::vector<std::string> lines;
    for (const ScriptMistake& mistake : mistakes) {
        lines.push_back(mistakeLine(mistake));
    }
    lines.push_back(inputName(mistakes.front().file) + ": " + counted(mistakes.size(), "mistake") +
                    ", so nothing was checked; correct what is meant otherwise, or pass it over with --plain");
    return lines;
}

}  // namespace

MistakesFound::MistakesFound(ScriptMistakes mistakes)
    : CommandFailure(ExitStatus::BadInput, linesOf(mistakes)), m_mistakes(std::move(mistakes)) {}

void refuseMistakes(const std::string& path, const XmlDocument& document, std::size_t before) {
    Lint lint(Lint::Extent::Mistakes);
    lint.runDocument(document);
    ScriptMistakes mistakes;
    for (LintFinding finding : lint.findings().list()) {
        finding.column -= finding.row == 0 ? std::min(finding.column, static_cast<std::uint32_t>(before)) : 0;
        mistakes.push_back({path, std::move(finding)});
    }
    if (!mistakes.empty()) {
        throw MistakesFound(std::move(mistakes));
    }
}

}  // namespace vrx::cli
