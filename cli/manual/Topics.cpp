#include "cli/manual/Topics.h"

#include <algorithm>

#include "cli/manual/Markdown.h"
#include "libCommon/text/PrintableText.h"
#include "libReport/text/TextTable.h"

namespace vrx::cli {

namespace {

using Kind = MarkdownBlock::Kind;

constexpr unsigned CODE_INDENT = 4;

std::string tableText(const MarkdownBlock& block, unsigned width) {
    TextTable table(2, std::vector<Style>(block.rows.front().size(), Style::Plain));
    for (const std::vector<std::string>& row : block.rows) {
        std::vector<std::string> cells;
        for (std::size_t i = 0; i < block.rows.front().size(); ++i) {
            cells.push_back(i < row.size() ? plainText(row[i]) : std::string());
        }
        table.addRow(std::move(cells));
    }
    std::string text;
    TextFormat format;
    format.width = width;
    format.isTerminal = true;
    table.write(text, format);
    return text;
}

/// The lines behind the first begin with as many blanks.
std::string filled(const std::string& text, std::string before, unsigned width) {
    std::string lines;
    for (const std::string& line : wrapped(text, width - static_cast<unsigned>(before.size()))) {
        lines += before + line + '\n';
        before.assign(before.size(), ' ');
    }
    return lines;
}

std::string codeText(const std::string& code) {
    std::string lines;
    bool isStart = true;
    for (const char each : code) {
        lines.append(isStart && each != '\n' ? CODE_INDENT : 0, ' ') += each;
        isStart = each == '\n';
    }
    return lines;
}

std::string blockText(const MarkdownBlock& block, unsigned width) {
    switch (block.kind) {
        case Kind::Code: return codeText(block.text);
        case Kind::Table: return tableText(block, width);
        case Kind::Item: return filled(plainText(block.text), "  " + block.mark + " ", width);
        case Kind::Heading: return filled(plainText(block.text), block.mark.size() > 1 ? block.mark + " " : "", width);
        default: return filled(plainText(block.text), {}, width);
    }
}

}  // namespace

const Topic* topicNamed(std::string_view name) {
    const auto found = std::ranges::find(topics(), name, &Topic::name);
    return found == topics().end() ? nullptr : &*found;
}

std::vector<std::string> topicNames() {
    std::vector<std::string> names;
    for (const Topic& topic : topics()) {
        names.emplace_back(topic.name);
    }
    return names;
}

std::string topicText(const Topic& topic, unsigned width) {
    std::string text;
    Kind before = Kind::Item;
    for (const MarkdownBlock& block : readMarkdown(topic.markdown)) {
        const bool isNextItem = block.kind == Kind::Item && before == Kind::Item;
        text += (text.empty() || isNextItem ? "" : "\n") + blockText(block, width);
        before = block.kind;
    }
    return text;
}

}  // namespace vrx::cli
