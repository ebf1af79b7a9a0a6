#include "libReport/text/CsvTable.h"

#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

constexpr std::string_view FORMULA_STARTS = "=+-@";

void appendValue(std::string& out, std::string_view raw) {
    std::string value = printable(raw);
    const std::size_t start = value.find_first_not_of(' ');
    if (start != std::string::npos && FORMULA_STARTS.find(value[start]) != std::string_view::npos) {
        value.insert(0, 1, '\'');
    }
    if (value.find_first_of(",\"") == std::string::npos) {
        out += value;
        return;
    }
    out += '"';
    for (const char character : value) {
        out.append(character == '"' ? 2 : 1, character);
    }
    out += '"';
}

}  // namespace

void CsvTable::addRow(std::initializer_list<std::string_view> values) {
    const char* separator = "";
    for (const std::string_view value : values) {
        m_text += separator;
        appendValue(m_text, value);
        separator = ",";
    }
    m_text += "\r\n";
}

}  // namespace vrx
