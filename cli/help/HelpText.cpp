#include "cli/help/HelpText.h"

#include <algorithm>

#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

namespace {

constexpr std::size_t INDENT = 2;
constexpr std::size_t WIDEST_TERM = 22;
constexpr std::size_t GAP = 2;

class HelpWriter {
public:
    explicit HelpWriter(unsigned width) : m_width(width) {}

    void paragraph(const std::string& text) { indented(text, {}); }

    void entries(const char* title, const std::vector<HelpEntry>& entries) {
        if (entries.empty()) {
            return;
        }
        heading(title);
        std::size_t widest = 0;
        for (const HelpEntry& entry : entries) {
            widest = std::max(widest, std::min(entry.term.size(), WIDEST_TERM));
        }
        for (const HelpEntry& each : entries) {
            entry(each, INDENT + widest + GAP);
        }
    }

    void lines(const char* title, const std::vector<std::string>& lines) {
        if (!lines.empty()) {
            heading(title);
        }
        for (const std::string& line : lines) {
            m_text += std::string(INDENT, ' ') + line + '\n';
        }
    }

    void gap() { m_text += '\n'; }

    std::string take() { return std::move(m_text); }

private:
    void heading(const char* title) { m_text += std::string("\n") + title + ":\n"; }

    void entry(const HelpEntry& entry, std::size_t column) {
        std::string before = std::string(INDENT, ' ') + entry.term;
        if (before.size() + GAP > column) {
            m_text += before + '\n';
            before.clear();
        }
        before.resize(column, ' ');
        indented(entry.text, before);
    }

    /// The lines behind the first are indented as far.
    void indented(const std::string& text, std::string before) {
        const std::size_t room = std::max<std::size_t>(m_width, before.size() + WIDEST_TERM) - before.size();
        for (const std::string& line : wrapped(text, static_cast<unsigned>(room))) {
            m_text += before + line + '\n';
            before.assign(before.size(), ' ');
        }
    }

    std::string m_text;
    unsigned m_width;
};

}  // namespace

unsigned helpWidth(const Session& session) {
    return std::min(session.console.outFormat().width, TextFormat::DEFAULT_WIDTH);
}

std::string helpText(const CommandPage& page, unsigned width) {
    HelpWriter writer(width);
    writer.paragraph(page.summary);
    writer.paragraph("Usage: " + page.usage);
    writer.entries("Arguments", page.arguments);
    writer.entries("Options", page.options);
    writer.entries("Commands", page.commands);
    for (const std::string& note : page.notes) {
        writer.gap();
        writer.paragraph(note);
    }
    writer.entries("Exit status", page.statuses);
    writer.lines("Examples", page.examples);
    return writer.take();
}

}  // namespace vrx::cli
