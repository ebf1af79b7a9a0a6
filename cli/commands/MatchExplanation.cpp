#include "cli/commands/MatchExplanation.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "libCommon/text/PrintableText.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/Inventory.h"
#include "libLint/Lint.h"
#include "libRegex/Regex.h"
#include "libReport/patterns/ReadablePattern.h"

namespace vrx::cli {

namespace {

std::string quoted(StringView text) { return "\"" + printable(text) + "\""; }

bool beginsFirm(StringView pattern) { return pattern.starts_with(u'^'); }

bool endsFirm(StringView pattern) { return pattern.ends_with(u'$'); }

StringView plainPart(StringView pattern) {
    pattern.remove_prefix(beginsFirm(pattern) ? 1 : 0);
    pattern.remove_suffix(endsFirm(pattern) ? 1 : 0);
    return pattern;
}

bool isFound(StringView pattern, StringView value) {
    return Regex::rangeMatches(pattern, value, Regex::CASE_SENSITIVE);
}

std::string whereTextsDiffer(StringView text, StringView value) {
    const String a = foldCase(text);
    const String b = foldCase(value);
    const auto place = std::ranges::mismatch(a.view(), b.view());
    return fmt::format("they differ from character {} on", place.in1 - a.view().begin() + 1);
}

/// What it would take for a match; empty when nothing simple would do.
std::string remedy(StringView pattern, StringView value) {
    if (Inventory::matchString(pattern, trimmed(value))) {
        return "blanks at the ends of the value are in the way";
    }
    if (Regex::rangeMatches(pattern, value, 0)) {
        return "letter case alone is in the way; (?i) in front of the pattern lets it be";
    }
    if (beginsFirm(pattern) && isFound(pattern.substr(1), value)) {
        return "^ alone is in the way: what is found does not stand at the beginning of the value";
    }
    if (endsFirm(pattern) && isFound(pattern.substr(0, pattern.size() - 1), value)) {
        return "$ alone is in the way: the value goes on behind what is found";
    }
    if (beginsFirm(pattern) && endsFirm(pattern) && isFound(plainPart(pattern), value)) {
        return "^ and $ are in the way: the value has more in front of and behind what is found";
    }
    return {};
}

/// A pattern with a range, in words; empty for others.
std::string asked(StringView pattern) {
    return pattern.find(Regex::VRXRRANGE().view()) == StringView::npos ? std::string() : readablePattern(pattern);
}

/// What lint says of such a pattern. That it does not compile is said elsewhere, and that it fits more than it looks
/// like is no reason for a miss.
std::vector<std::string> doubts(const String& pattern) {
    XmlDocument script;
    script.Parse(u"<inventory-check><device type=\"Device\"><property key=\"Value\"/></device></inventory-check>");
    script.RootElement()->FirstChildElement()->FirstChildElement()->SetAttribute(u"value", toXmlSafe(pattern));
    Lint lint;
    lint.runDocument(script);
    std::vector<std::string> texts;
    for (const LintFinding& finding : lint.findings().list()) {
        if (finding.rule != "pattern-syntax" && finding.rule != "missing-anchor") {
            texts.push_back(finding.message());
        }
    }
    return texts;
}

}  // namespace

std::string whyNoMatch(const String& pattern, const String& value) {
    const StringView plain = plainPart(pattern.view());
    std::string lines = fmt::format("  as a pattern: {} is not found in {}, with letter case\n",
                                    printable(pattern.view()), quoted(value.view()));
    lines += fmt::format("  as plain text: {} is not {}, without letter case: {}\n", quoted(plain),
                         quoted(value.view()), whereTextsDiffer(plain, value.view()));
    if (const std::string range = asked(pattern.view()); !range.empty()) {
        lines += "  asked for: " + range + '\n';
    }
    if (const std::string hint = remedy(pattern.view(), value.view()); !hint.empty()) {
        lines += "  " + hint + '\n';
    }
    for (const std::string& doubt : doubts(pattern)) {
        lines += "  " + doubt + '\n';
    }
    return lines;
}

}  // namespace vrx::cli
