#pragma once

#include <string>
#include <vector>

#include "libReport/text/Style.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// Rows of cells in aligned columns. Cells that do not fit are wrapped inside their column: when the table is wider
/// than the text may be, its widest columns give way first.
class TextTable {
public:
    /// `styles` has one entry for each column; every row has as many cells as there are columns.
    TextTable(unsigned indent, std::vector<Style> styles) : m_indent(indent), m_styles(std::move(styles)) {}

    /// Printable text (see PrintableText.h).
    void addRow(std::vector<std::string> cells);

    /// A first row in a style of its own.
    void setHeader(std::vector<std::string> cells);

    void write(std::string& out, const TextFormat& format) const;

private:
    static constexpr unsigned GAP = 2;

    std::vector<unsigned> columnWidths(unsigned available) const;
    void writeRow(std::string& out, const std::vector<std::string>& cells, const std::vector<unsigned>& widths,
                  bool colour, bool isHeader) const;

    unsigned m_indent;
    std::vector<Style> m_styles;
    std::vector<std::string> m_header;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace vrx
