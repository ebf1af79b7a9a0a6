/// SARIF 2.1.0, which code hosts show in place. Columns count UTF-16 code units, as lint does.

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "libReport/ProgramVersion.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/lint/LintReport.h"

namespace vrx {

namespace {

/// The path as a relative reference or, when it begins at the root, as a URI.
std::string uriOf(const std::string& path) {
    static constexpr std::string_view PLAIN = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
    std::string uri = path.starts_with('/') ? "file://" : "";
    for (const char byte : path == "-" ? std::string("standard-input") : path) {
        uri += PLAIN.find(byte) != std::string_view::npos
                   ? std::string(1, byte)
                   : fmt::format("%{:02X}", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    }
    return uri;
}

using RuleIds = std::vector<std::string_view>;

/// Of the rules that found something, each once.
RuleIds rulesOf(const LintReport& report) {
    RuleIds ids;
    for (const LintFinding& finding : report.findings.list()) {
        ids.push_back(finding.rule);
    }
    std::ranges::sort(ids);
    const auto repeated = std::ranges::unique(ids);
    ids.erase(repeated.begin(), repeated.end());
    return ids;
}

void writeTool(JsonWriter& json, const RuleIds& rules) {
    json.key("tool").beginObject();
    json.key("driver").beginObject();
    json.key("name").value(PROGRAM_NAME);
    json.key("version").value(programVersion());
    json.key("rules").beginArray();
    for (const std::string_view id : rules) {
        json.beginObject();
        json.key("id").value(id);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    json.endObject();
}

void writeLocation(JsonWriter& json, const std::string& uri, const LintFinding& finding) {
    json.beginObject();
    json.key("physicalLocation").beginObject();
    json.key("artifactLocation").beginObject();
    json.key("uri").value(std::string_view(uri));
    json.endObject();
    json.key("region").beginObject();
    json.key("startLine").value(std::int64_t{finding.row} + 1);
    json.key("startColumn").value(std::int64_t{finding.column} + 1);
    json.endObject();
    json.endObject();
    json.endObject();
}

void writeResult(JsonWriter& json, const RuleIds& rules, const std::string& uri, const LintFinding& finding) {
    json.beginObject();
    json.key("ruleId").value(finding.rule);
    json.key("ruleIndex").value(std::int64_t{std::ranges::lower_bound(rules, finding.rule) - rules.begin()});
    json.key("level").value(nameOf(finding.severity));
    json.key("message").beginObject();
    json.key("text").value(std::string_view(finding.message()));
    json.endObject();
    json.key("locations").beginArray();
    writeLocation(json, uri, finding);
    json.endArray();
    json.endObject();
}

}  // namespace

std::string lintSarif(const LintReport& report, const TextFormat&) {
    const RuleIds rules = rulesOf(report);
    const std::string uri = uriOf(report.file);
    JsonWriter json;
    json.beginObject();
    json.key("$schema").value(
        std::string_view("https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json"));
    json.key("version").value(std::string_view("2.1.0"));
    json.key("runs").beginArray();
    json.beginObject();
    writeTool(json, rules);
    json.key("columnKind").value(std::string_view("utf16CodeUnits"));
    json.key("results").beginArray();
    for (const LintFinding& finding : report.findings.list()) {
        writeResult(json, rules, uri, finding);
    }
    json.endArray();
    json.endObject();
    json.endArray();
    json.endObject();
    return json.take();
}

}  // namespace vrx
