/// The Test Anything Protocol, version 14, with a block of YAML below each test that did not pass. Texts in YAML stand
/// in double quotes as JSON writes them, which every reader of YAML understands.

#include <fmt/format.h>

#include "libReport/formats/CheckCases.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

/// A description must not look like a directive.
std::string escapedDescription(const std::string& text) {
    std::string out;
    for (const char character : text) {
        out += character == '#' || character == '\\' ? "\\" : "";
        out += character;
    }
    return out;
}

std::string quoted(std::string_view text) {
    JsonWriter json;
    json.value(text);
    std::string line = json.take();
    line.pop_back();
    return line;
}

void writeDiagnostics(std::string& out, const CheckReport& report, const CheckCase& one) {
    out += fmt::format("  ---\n  message: {}\n  severity: {}\n  kind: {}\n  at: {}\n", quoted(one.messages.front()),
                       one.outcome == CheckCase::Outcome::Failed ? "fail" : "undetermined", quoted(one.kind),
                       quoted(placeInScript(report, one.place)));
    if (one.messages.size() > 1) {
        out += "  more:\n";  // each with a key, because some readers take a text with a colon for one
        for (std::size_t i = 1; i < one.messages.size(); ++i) {
            out += "    - message: " + quoted(one.messages[i]) + "\n";
        }
    }
    out += "  ...\n";
}

}  // namespace

std::string checkTap(const CheckReport& report, const TextFormat&) {
    const std::vector<CheckCase> cases = checkCases(report);
    std::string out = fmt::format("TAP version 14\n1..{}\n", cases.size());
    std::size_t number = 0;
    for (const CheckCase& one : cases) {
        const bool isGood = one.outcome == CheckCase::Outcome::Passed || one.outcome == CheckCase::Outcome::Skipped;
        out += fmt::format("{} {} - {}", isGood ? "ok" : "not ok", ++number, escapedDescription(one.name));
        out += one.outcome == CheckCase::Outcome::Skipped ? " # SKIP " + one.messages.front() + "\n" : "\n";
        if (!isGood) {
            writeDiagnostics(out, report, one);
        }
    }
    return out;
}

}  // namespace vrx
