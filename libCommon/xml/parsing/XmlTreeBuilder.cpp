#include "libCommon/xml/parsing/XmlTreeBuilder.h"

namespace vrx {

namespace {

bool isWhiteSpace(std::string_view text) noexcept {
    for (const char c : text) {
        if (c != ' ' && c != '\n' && c != '\t' && c != '\r') {
            return false;
        }
    }
    return true;
}

}  // namespace

void XmlTreeBuilder::startElement(const char* name, const char* const* attributes, std::size_t count, XmlPlace place) {
    finishText();
    XmlElement* const element = m_content.newElement(m_names.find(name));
    element->m_row = place.row;
    element->m_column = place.column;
    if (m_reader != nullptr) {
        m_starts.push_back(m_content.mark());
    }
    element->reserveAttributes(count, m_content.arena());
    for (std::size_t i = 0; i < count; ++i) {
        const StringView value = keepValue(attributes[2 * i + 1]);
        element->addAttribute(m_names.find(attributes[2 * i]), value);
    }
    append(element);
    m_parent = element;
    ++m_level;
}

StringView XmlTreeBuilder::keepValue(std::string_view value) {
    if (m_reader != nullptr || !XmlTextCache::mayHold(value)) {
        return m_content.keepUtf8(value);
    }
    XmlTextCache::Text& known = m_values.slotOf(value);
    if (!known.is(value)) {
        known.set(value, m_content.keepUtf8(value));
    }
    return known.kept;
}

void XmlTreeBuilder::endElement() {
    finishText();
    XmlContainer* const element = m_parent;
    m_parent = element->Parent();
    --m_level;
    if (m_reader != nullptr && (m_level > 0 || !m_withholdsRoot)) {
        offerToReader(*static_cast<XmlElement*>(element));
    }
}

void XmlTreeBuilder::offerToReader(XmlElement& element) {
    const XmlContent::Mark start = m_starts.back();
    m_starts.pop_back();
    if (m_reader->readElement(element)) {
        element.clear();
        m_content.rewind(start);
    }
}

void XmlTreeBuilder::comment(std::string_view text) {
    finishText();
    append(m_content.newComment(m_content.keepUtf8(text)));
}

void XmlTreeBuilder::addText(std::string_view piece) {
    if (m_text.empty()) {
        m_text.append(m_indent.lineEnds, '\n').append(m_indent.blanks, ' ');
    }
    m_text.append(piece);
}

void XmlTreeBuilder::keepText() {
    if (!isWhiteSpace(m_text)) {
        append(m_content.newText(m_content.keepUtf8(m_text)));
    }
    m_text.clear();
}

}  // namespace vrx
