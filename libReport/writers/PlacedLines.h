#pragma once

#include <string>

#include "libDiagnosis/Difference.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// Lines of text, some of them with a place in the script in front, as wide as the format allows.
class PlacedLines {
public:
    /// `file` stands in every place; when it is empty no places are written. Both arguments are borrowed.
    PlacedLines(const std::string& file, const TextFormat& format) : m_file(file), m_format(format) {}

    /// "file:row:column".
    std::string placeText(const ElementPlace& place) const;

    /// "file:row:column  text"
    void placed(unsigned indent, const ElementPlace& place, const std::string& text);

    void wrapped(unsigned indent, const std::string& text, Style style = Style::Plain);

    /// Two columns of equal width, each wrapped; one below the other when a value is too long to be read so.
    void sideBySide(unsigned indent, const std::string& expected, const std::string& found);

    std::string take() { return std::move(m_text); }

private:
    void labelled(unsigned indent, const char* label, const std::string& text, Style style);

    const std::string& m_file;
    const TextFormat& m_format;
    std::string m_text;
};

}  // namespace vrx
