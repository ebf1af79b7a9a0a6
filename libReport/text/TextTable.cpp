#include "libReport/text/TextTable.h"

#include <algorithm>
#include <numeric>

#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

constexpr unsigned NARROWEST_COLUMN = 6;

}  // namespace

void TextTable::addRow(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }

void TextTable::setHeader(std::vector<std::string> cells) { m_header = std::move(cells); }

std::vector<unsigned> TextTable::columnWidths(unsigned available) const {
    std::vector<unsigned> widths(m_styles.size(), 1);
    const auto widen = [&widths, available](const std::vector<std::string>& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], std::min(displayWidth(cells[i]), available));
        }
    };
    widen(m_header);
    std::for_each(m_rows.begin(), m_rows.end(), widen);

    const unsigned taken = m_indent + GAP * static_cast<unsigned>(widths.size() - 1);
    const unsigned room = available > taken ? available - taken : 0;
    while (std::accumulate(widths.begin(), widths.end(), 0u) > room) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= NARROWEST_COLUMN) {
            break;
        }
        --*widest;
    }
    return widths;
}

void TextTable::writeRow(std::string& out, const std::vector<std::string>& cells, const std::vector<unsigned>& widths,
                         bool colour, bool isHeader) const {
    std::vector<std::vector<std::string>> lines;
    std::size_t height = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        lines.push_back(wrapped(cells[i], widths[i]));
        height = std::max(height, lines.back().size());
    }
    for (std::size_t line = 0; line < height; ++line) {
        std::size_t pending = m_indent;  // blanks are written only in front of something
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string text = line < lines[i].size() ? lines[i][line] : std::string();
            if (!text.empty()) {
                out.append(pending, ' ');
                out += styled(text, isHeader ? Style::Dim : m_styles[i], colour);
                pending = 0;
            }
            pending += widths[i] - displayWidth(text) + GAP;
        }
        out += '\n';
    }
}

void TextTable::write(std::string& out, const TextFormat& format) const {
    const std::vector<unsigned> widths = columnWidths(format.width);
    if (!m_header.empty()) {
        writeRow(out, m_header, widths, format.colour, true);
    }
    for (const std::vector<std::string>& row : m_rows) {
        writeRow(out, row, widths, format.colour, false);
    }
}

}  // namespace vrx
