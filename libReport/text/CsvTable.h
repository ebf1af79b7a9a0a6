#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace vrx {

/// Rows of comma-separated values as RFC 4180 describes them: lines end with CR LF, every value stands in quotes where
/// it needs them. A value that a spreadsheet would take for a formula gets an apostrophe in front, and what is not
/// printable is escaped, so a row is always one line.
class CsvTable {
public:
    void addRow(std::initializer_list<std::string_view> values);

    const std::string& text() const noexcept { return m_text; }

private:
    std::string m_text;
};

}  // namespace vrx
