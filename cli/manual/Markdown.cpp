#include "cli/manual/Markdown.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace vrx::cli {

namespace {

constexpr std::string_view FENCE = "```";

using Kind = MarkdownBlock::Kind;

/// "- " or "1. "; empty for lines that begin no item.
std::string itemMark(const std::string& line) {
    const std::size_t digits = std::min(line.find_first_not_of("0123456789"), line.size());
    if (line.starts_with("- ")) {
        return "-";
    }
    return digits > 0 && line.substr(digits).starts_with(". ") ? line.substr(0, digits + 1) : std::string();
}

/// The cells between the bars; a bar behind a backslash belongs to a cell.
std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    for (std::size_t i = 1; i < line.size(); ++i) {
        std::string cell;
        for (; i < line.size() && line[i] != '|'; ++i) {
            i += line.compare(i, 2, "\\|") == 0 ? 1 : 0;
            cell += line[i];
        }
        const std::size_t first = std::min(cell.find_first_not_of(' '), cell.size());
        cells.push_back(cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
    }
    return cells;
}

bool isRule(const std::string& line) { return line.find_first_not_of("|-: ") == line.npos; }

class MarkdownReader {
public:
    explicit MarkdownReader(std::string_view text) : m_lines{std::string(text)} {}

    std::vector<MarkdownBlock> read() {
        for (std::string line; std::getline(m_lines, line);) {
            readLine(line);
        }
        return std::move(m_blocks);
    }

private:
    void readLine(const std::string& line) {
        if (line.starts_with(FENCE)) {
            readCode();
        } else if (line.empty()) {
            m_isOpen = false;
        } else if (line.starts_with('#')) {
            const std::size_t level = line.find(' ');
            begin({Kind::Heading, line.substr(level + 1), line.substr(0, level)});
            m_isOpen = false;
        } else if (line.starts_with('|')) {
            addRow(line);
        } else if (const std::string mark = itemMark(line); !mark.empty()) {
            begin({Kind::Item, line.substr(mark.size() + 1), mark});
        } else if (m_isOpen) {
            m_blocks.back().text += " " + line.substr(std::min(line.find_first_not_of(' '), line.size()));
        } else {
            begin({Kind::Paragraph, line});
        }
    }

    void begin(MarkdownBlock block) {
        m_blocks.push_back(std::move(block));
        m_isOpen = true;
    }

    void readCode() {
        begin({Kind::Code});
        m_isOpen = false;
        for (std::string line; std::getline(m_lines, line) && !line.starts_with(FENCE);) {
            m_blocks.back().text += line + '\n';
        }
    }

    void addRow(const std::string& line) {
        if (!m_isOpen || m_blocks.back().kind != Kind::Table) {
            begin({Kind::Table});
        }
        if (!isRule(line)) {
            m_blocks.back().rows.push_back(cellsOf(line));
        }
    }

    std::istringstream m_lines;
    std::vector<MarkdownBlock> m_blocks;
    bool m_isOpen = false;  ///< whether the next line continues the last block
};

/// "[text](target)" at the beginning; npos when there is none.
std::size_t endOfLinkText(std::string_view text) {
    const std::size_t end = text.starts_with('[') ? text.find("](") : text.npos;
    return end == text.npos || text.find(')', end) == text.npos ? text.npos : end;
}

}  // namespace

std::vector<MarkdownBlock> readMarkdown(std::string_view text) { return MarkdownReader(text).read(); }

std::vector<MarkdownSpan> spansOf(std::string_view text) {
    std::vector<MarkdownSpan> spans(1);
    const auto enclosed = [&](std::string_view mark, MarkdownSpan::Kind kind) {
        const std::size_t end = text.starts_with(mark) ? text.find(mark, mark.size()) : text.npos;
        if (end == text.npos) {
            return false;
        }
        spans.push_back({kind, std::string(text.substr(mark.size(), end - mark.size()))});
        spans.emplace_back();
        text.remove_prefix(end + mark.size());
        return true;
    };
    while (!text.empty()) {
        if (enclosed("`", MarkdownSpan::Kind::Code) || enclosed("**", MarkdownSpan::Kind::Strong)) {
            continue;
        }
        if (const std::size_t end = endOfLinkText(text); end != text.npos) {
            for (MarkdownSpan& span : spansOf(text.substr(1, end - 1))) {
                spans.push_back(std::move(span));
            }
            spans.emplace_back();
            text.remove_prefix(text.find(')', end) + 1);
            continue;
        }
        spans.back().text += text.front();
        text.remove_prefix(1);
    }
    std::erase_if(spans, [](const MarkdownSpan& span) { return span.text.empty(); });
    return spans;
}

std::string plainText(std::string_view text) {
    std::string plain;
    for (const MarkdownSpan& span : spansOf(text)) {
        plain += span.kind == MarkdownSpan::Kind::Code ? "`" + span.text + "`" : span.text;
    }
    return plain;
}

}  // namespace vrx::cli
