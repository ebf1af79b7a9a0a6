#include "cli/manual/ManualPages.h"

#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/help/CommandPage.h"
#include "cli/help/CommandTable.h"
#include "cli/manual/Markdown.h"
#include "cli/manual/Roff.h"

namespace vrx::cli {

namespace {

using Kind = MarkdownBlock::Kind;

std::string pageName(const CLI::App& command) {
    std::string name = fullName(command);
    std::ranges::replace(name, ' ', '-');
    return name;
}

std::string pageName(const Topic& topic) {
    return topic.name.starts_with("inventory") ? "vrx-" + std::string(topic.name)
                                               : "vrx-inventory-" + std::string(topic.name);
}

void addEntries(const char* title, const std::vector<HelpEntry>& entries, Roff& roff) {
    if (!entries.empty()) {
        roff.heading(title);
    }
    for (const HelpEntry& entry : entries) {
        roff.entry(entry.term, entry.text);
    }
}

/// The program's own page leads to all others, each other one to the program's and to the formats.
std::vector<std::string> related(const CLI::App& command) {
    std::vector<std::string> pages;
    const CLI::App* root = &command;
    while (root->get_parent() != nullptr) {
        root = root->get_parent();
    }
    for (const CLI::App* const other : allCommands(*root)) {
        if ((&command == root || other == root) && other != &command) {
            pages.push_back(pageName(*other) + "(1)");
        }
    }
    for (const Topic& topic : topics()) {
        pages.push_back(pageName(topic) + "(5)");
    }
    return pages;
}

/// A row with more than two cells says of each what it is.
std::string rowText(const std::vector<std::string>& header, const std::vector<std::string>& row) {
    std::string text;
    for (std::size_t i = 1; i < row.size(); ++i) {
        const bool isNamed = header.size() > 2 && !row[i].empty() && i < header.size();
        text += (text.empty() || row[i].empty() ? "" : "; ") + (isNamed ? header[i] + ": " : std::string()) + row[i];
    }
    return text;
}

void addBlock(const MarkdownBlock& block, Roff& roff) {
    switch (block.kind) {
        case Kind::Heading: block.mark.size() > 2 ? roff.subheading(block.text) : roff.heading(block.text); break;
        case Kind::Paragraph: roff.paragraph(block.text); break;
        case Kind::Item: roff.item(block.mark, block.text); break;
        case Kind::Code: roff.code(block.text); break;
        case Kind::Table:
            for (std::size_t i = 1; i < block.rows.size(); ++i) {
                roff.entry(block.rows[i].front(), rowText(block.rows.front(), block.rows[i]));
            }
    }
}

}  // namespace

ManualPage manualPage(const CLI::App& command) {
    const CommandPage page = commandPage(command);
    Roff roff(pageName(command), 1, page.summary);
    roff.heading("Synopsis");
    roff.paragraph("**" + page.usage + "**");
    if (!page.notes.empty()) {
        roff.heading("Description");
    }
    for (const std::string& note : page.notes) {
        roff.paragraph(note);
    }
    addEntries("Arguments", page.arguments, roff);
    addEntries("Options", page.options, roff);
    addEntries("Commands", page.commands, roff);
    addEntries("Exit status", page.statuses, roff);
    roff.heading("Examples");
    roff.code(fmt::format("{}", fmt::join(page.examples, "\n")));
    roff.seeAlso(related(command));
    return {pageName(command), 1, roff.take()};
}

ManualPage manualPage(const Topic& topic) {
    const std::vector<MarkdownBlock> blocks = readMarkdown(topic.markdown);
    Roff roff(pageName(topic), 5, blocks.front().text);
    roff.heading("Description");
    for (std::size_t i = 1; i < blocks.size(); ++i) {
        addBlock(blocks[i], roff);
    }
    roff.seeAlso({"vrx-inventory(1)"});
    return {pageName(topic), 5, roff.take()};
}

std::vector<ManualPage> manualPages(const CLI::App& root) {
    std::vector<ManualPage> pages;
    for (const CLI::App* const command : allCommands(root)) {
        pages.push_back(manualPage(*command));
    }
    for (const Topic& topic : topics()) {
        pages.push_back(manualPage(topic));
    }
    return pages;
}

}  // namespace vrx::cli
