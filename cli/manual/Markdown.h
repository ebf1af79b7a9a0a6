#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vrx::cli {

/// A piece of a document that is written in Markdown. Its texts still hold the marks of code, links and emphasis.
struct MarkdownBlock {
    enum class Kind { Heading, Paragraph, Item, Code, Table };

    Kind kind = Kind::Paragraph;
    std::string text{};                            ///< without line ends; of Code the lines, each with its end
    std::string mark{};                            ///< of an Item: "-" or "1."; of a Heading: "##"
    std::vector<std::vector<std::string>> rows{};  ///< of a Table, the header first
};

/// The Markdown of docs/: headings, paragraphs, lists without nested ones, fenced code and tables.
std::vector<MarkdownBlock> readMarkdown(std::string_view text);

/// A piece of a line: code, strong or plain. A link is its text.
struct MarkdownSpan {
    enum class Kind { Plain, Code, Strong };

    Kind kind = Kind::Plain;
    std::string text;
};

std::vector<MarkdownSpan> spansOf(std::string_view text);

/// Without marks, but for those of code.
std::string plainText(std::string_view text);

}  // namespace vrx::cli
