#include "cli/manual/Roff.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>

#include "cli/manual/Markdown.h"
#include "libCommon/text/String.h"
#include "libReport/ProgramVersion.h"

namespace vrx::cli {

namespace {

/// Signs that roff would take for its own, or replace by typographic ones.
std::string escapeOf(char16_t unit) {
    switch (unit) {
        case u'\\': return "\\e";
        case u'-': return "\\-";
        case u'^': return "\\(ha";
        case u'~': return "\\(ti";
        case u'`': return "\\(ga";
        case u'\'': return "\\(aq";
        case u'"': return "\\(dq";
        default:
            return unit < 0x80 ? std::string(1, static_cast<char>(unit)) : fmt::format("\\[u{:04X}]", unsigned{unit});
    }
}

std::string escaped(std::string_view utf8) {
    const String units = String::UTF8Decode(utf8);
    std::string text;
    for (const char16_t unit : units.view()) {
        text += escapeOf(unit);
    }
    return text;
}

/// Escaped, with code and strong text in bold letters.
std::string inlined(std::string_view markdown) {
    std::string text;
    for (const MarkdownSpan& span : spansOf(markdown)) {
        const std::string piece = escaped(span.text);
        text += span.kind == MarkdownSpan::Kind::Plain ? piece : "\\fB" + piece + "\\fR";
    }
    return text;
}

std::string upperCase(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), [](unsigned char each) { return std::toupper(each); });
    return upper;
}

}  // namespace

Roff::Roff(const std::string& name, int section, std::string_view summary) {
    m_text = fmt::format(".TH {} {} \"\" \"VRX Inventory {}\" \"VRX Inventory\"\n", escaped(upperCase(name)), section,
                         programVersion());
    heading("Name");
    line(escaped(name) + " \\- " + inlined(summary));
}

void Roff::line(const std::string& text) {
    m_text += (text.starts_with('.') ? "\\&" : "") + text + '\n';
    m_isBehindHeading = false;
}

void Roff::head(const char* macro, const std::string& text) {
    m_text += fmt::format("{} \"{}\"\n", macro, text);
    m_isBehindHeading = true;
}

void Roff::heading(std::string_view text) { head(".SH", escaped(upperCase(plainText(text)))); }

void Roff::subheading(std::string_view text) { head(".SS", inlined(text)); }

void Roff::beginParagraph() { m_text += m_isBehindHeading ? "" : ".PP\n"; }

void Roff::paragraph(std::string_view text) {
    beginParagraph();
    line(inlined(text));
}

void Roff::entry(std::string_view term, std::string_view text) {
    m_text += ".TP\n";
    line("\\fB" + escaped(plainText(term)) + "\\fR");
    line(inlined(text));
}

void Roff::item(std::string_view mark, std::string_view text) {
    m_text += fmt::format(".IP {} 4\n", mark == "-" ? "\\(bu" : escaped(mark));
    line(inlined(text));
}

void Roff::code(std::string_view lines) {
    beginParagraph();
    m_text += ".in +4\n.EX\n";
    for (std::size_t end = 0; !lines.empty(); lines.remove_prefix(std::min(lines.size(), end + 1))) {
        end = std::min(lines.find('\n'), lines.size());
        line(escaped(lines.substr(0, end)));
    }
    m_text += ".EE\n.in\n";
}

void Roff::seeAlso(const std::vector<std::string>& pages) {
    heading("See also");
    line(inlined(fmt::format("{}", fmt::join(pages, ", "))));
}

}  // namespace vrx::cli
