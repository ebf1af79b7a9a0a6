#include "libReport/writers/PlacedLines.h"

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"

namespace vrx {

std::string PlacedLines::placeText(const ElementPlace& place) const {
    return fmt::format("{}:{}:{}", printable(std::string_view(m_file)), place.row, place.column);
}

void PlacedLines::placed(unsigned indent, const ElementPlace& place, const std::string& text) {
    if (m_file.empty()) {
        wrapped(indent, text, Style::Bold);
        return;
    }
    const std::string where = placeText(place);
    const unsigned start = indent + displayWidth(where) + 2;
    const bool isOneLine = start + displayWidth(text) <= m_format.width;
    m_text.append(indent, ' ');
    m_text += styled(where, Style::Dim, m_format.colour);
    if (isOneLine) {
        m_text += "  " + styled(text, Style::Bold, m_format.colour) + "\n";
    } else {
        m_text += '\n';
        wrapped(indent + 2, text, Style::Bold);
    }
}

void PlacedLines::wrapped(unsigned indent, const std::string& text, Style style) {
    for (const std::string& line : vrx::wrapped(text, m_format.width - indent)) {
        m_text.append(indent, ' ');
        m_text += styled(line, style, m_format.colour) + "\n";
    }
}

void PlacedLines::sideBySide(unsigned indent, const std::string& expected, const std::string& found) {
    constexpr unsigned LABEL = 10;  // "expected" and two blanks
    constexpr unsigned GAP = 1;
    constexpr unsigned LONGEST_IN_HALF = 3;
    const unsigned half = (m_format.width - indent) / 2;
    const auto left = vrx::wrapped(expected, half - LABEL - GAP);
    const auto right = vrx::wrapped(found, half - LABEL);
    if (std::max(left.size(), right.size()) > LONGEST_IN_HALF) {
        labelled(indent, "expected  ", expected, Style::Good);
        labelled(indent, "found     ", found, Style::Bad);
        return;
    }
    for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
        const std::string leftText = i < left.size() ? left[i] : "";
        std::string line(indent, ' ');
        line += (i == 0 ? "expected  " : std::string(LABEL, ' ')) + styled(leftText, Style::Good, m_format.colour);
        if (i < right.size()) {
            line.append(half - LABEL - displayWidth(leftText), ' ');
            line += (i == 0 ? "found     " : std::string(LABEL, ' ')) + styled(right[i], Style::Bad, m_format.colour);
        }
        m_text += line + "\n";
    }
}

void PlacedLines::labelled(unsigned indent, const char* label, const std::string& text, Style style) {
    const auto lines = vrx::wrapped(text, m_format.width - indent - 10);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        m_text.append(indent, ' ');
        m_text += i == 0 ? label : std::string(10, ' ');
        m_text += styled(lines[i], style, m_format.colour) + "\n";
    }
}

}  // namespace vrx
