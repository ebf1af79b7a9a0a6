#include "cli/input/MistakesFound.h"

#include <algorithm>
#include <utility>

#include "libLint/Lint.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr std::string_view OR_INSIDE_PART_RULE = "or-inside-part";

std::vector<std::string> linesOf(const ScriptMistakes& mistakes) {
    std::vector<std::string> lines;
    for (const ScriptMistake& mistake : mistakes) {
        lines.push_back(mistakeLine(mistake));
    }
    const bool canRun = std::ranges::none_of(
        mistakes, [](const ScriptMistake& mistake) { return mistake.finding.rule == OR_INSIDE_PART_RULE; });
    lines.push_back(inputName(mistakes.front().file) + ": " + counted(mistakes.size(), "mistake") +
                    ", so nothing was checked" + (canRun ? "; with --plain mistakes are passed over" : ""));
    return lines;
}

}  // namespace

MistakesFound::MistakesFound(ScriptMistakes mistakes)
    : CommandFailure(ExitStatus::BadInput, linesOf(mistakes)), m_mistakes(std::move(mistakes)) {}

void refuseMistakes(const std::string& path, const XmlDocument& document, std::size_t before, unsigned threads) {
    Lint lint(Lint::Extent::Mistakes);
    lint.setThreads(threads);
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
