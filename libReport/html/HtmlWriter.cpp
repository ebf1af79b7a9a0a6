#include "libReport/html/HtmlWriter.h"

#include <utility>

#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

void appendEscaped(std::string& to, std::string_view text) {
    for (const char character : printable(text)) {
        switch (character) {
            case '&': to += "&amp;"; break;
            case '<': to += "&lt;"; break;
            case '>': to += "&gt;"; break;
            case '"': to += "&quot;"; break;
            case '\'': to += "&#39;"; break;
            default: to += character;
        }
    }
}

}  // namespace

HtmlWriter& HtmlWriter::begin(std::string_view tag, std::string_view cssClass) {
    voidElement(tag);
    m_open.push_back(tag);
    return cssClass.empty() ? *this : attribute("class", cssClass);
}

HtmlWriter& HtmlWriter::voidElement(std::string_view tag) {
    closeTag();
    m_text.append("<").append(tag);
    m_isInTag = true;
    return *this;
}

HtmlWriter& HtmlWriter::attribute(std::string_view name, std::string_view value) {
    m_text.append(" ").append(name).append("=\"");
    appendEscaped(m_text, value);
    m_text += '"';
    return *this;
}

HtmlWriter& HtmlWriter::text(std::string_view text) {
    closeTag();
    appendEscaped(m_text, text);
    return *this;
}

HtmlWriter& HtmlWriter::end() {
    closeTag();
    m_text.append("</").append(m_open.back()).append(">");
    m_open.pop_back();
    return *this;
}

HtmlWriter& HtmlWriter::element(std::string_view tag, std::string_view cssClass, std::string_view text) {
    return begin(tag, cssClass).text(text).end();
}

HtmlWriter& HtmlWriter::raw(std::string_view text) {
    closeTag();
    m_text += text;
    return *this;
}

std::string HtmlWriter::takePart() {
    closeTag();
    return std::exchange(m_text, {});
}

std::string HtmlWriter::take() { return takePart(); }

void HtmlWriter::closeTag() {
    if (std::exchange(m_isInTag, false)) {
        m_text += '>';
    }
}

}  // namespace vrx
