#include "libReport/lint/ScriptMistakes.h"

#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

std::string mistakeLine(const ScriptMistake& mistake) {
    const LintFinding& finding = mistake.finding;
    return fmt::format("{}:{}:{}: {} [{}]", printable(std::string_view(inputName(mistake.file))),
                       std::uint64_t{finding.row} + 1, std::uint64_t{finding.column} + 1, finding.message(),
                       finding.rule);
}

void writeMistakes(JsonWriter& json, const ScriptMistakes& mistakes) {
    json.beginArray();
    for (const ScriptMistake& mistake : mistakes) {
        json.beginObject();
        json.key("file").value(std::string_view(mistake.file));
        writeLintFinding(json, mistake.finding);
        json.endObject();
    }
    json.endArray();
}

void writeLintFinding(JsonWriter& json, const LintFinding& finding) {
    json.key("row").value(std::int64_t{finding.row} + 1);
    json.key("column").value(std::int64_t{finding.column} + 1);
    json.key("severity").value(nameOf(finding.severity));
    json.key("rule").value(finding.rule);
    json.key("message").value(std::string_view(finding.message()));
    json.key("suggestion");
    finding.suggestion.empty() ? json.null() : json.value(std::string_view(finding.suggestion));
}

}  // namespace vrx
