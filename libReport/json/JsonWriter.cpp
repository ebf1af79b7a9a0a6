#include "libReport/json/JsonWriter.h"

#include <fmt/format.h>

#include <iterator>

namespace vrx {

namespace {

void appendEscaped(std::string& out, char character) {
    switch (character) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default: fmt::format_to(std::back_inserter(out), "\\u{:04x}", static_cast<unsigned>(character)); break;
    }
}

bool needsEscape(char character) noexcept {
    return (static_cast<unsigned char>(character) < 0x20) || character == '"' || character == '\\' || character == 0x7F;
}

void appendQuoted(std::string& out, std::string_view text) {
    out += '"';
    std::size_t plain = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (needsEscape(text[i])) {
            out.append(text, plain, i - plain);
            appendEscaped(out, text[i]);
            plain = i + 1;
        }
    }
    out.append(text, plain);
    out += '"';
}

}  // namespace

JsonWriter& JsonWriter::key(std::string_view name) {
    startValue();
    appendQuoted(m_text, name);
    m_text += ": ";
    m_afterKey = true;
    return *this;
}

void JsonWriter::value(double number) { scalar(fmt::format("{}", number)); }

void JsonWriter::value(std::string_view text) { value(String::UTF8Decode(text)); }

void JsonWriter::quoted(std::string_view utf8) {
    startValue();
    appendQuoted(m_text, utf8);
}

void JsonWriter::inlineArray(const Array<String>& texts) {
    startValue();
    m_text += '[';
    bool isFirst = true;
    for (const String& text : texts) {
        m_text += isFirst ? "" : ", ";
        appendQuoted(m_text, text.toUtf8());
        isFirst = false;
    }
    m_text += ']';
}

std::string JsonWriter::take() {
    m_text += '\n';
    return std::move(m_text);
}

void JsonWriter::begin(char bracket) {
    startValue();
    m_text += bracket;
    m_hasMembers.push_back(false);
}

void JsonWriter::end(char bracket) {
    const bool hasMembers = m_hasMembers.back();
    m_hasMembers.pop_back();
    if (hasMembers) {
        newLine();
    }
    m_text += bracket;
}

/// What separates a value from what stands before it.
void JsonWriter::startValue() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_hasMembers.empty()) {
        return;
    }
    if (m_hasMembers.back()) {
        m_text += ',';
    }
    m_hasMembers.back() = true;
    newLine();
}

void JsonWriter::scalar(std::string_view text) {
    startValue();
    m_text += text;
}

void JsonWriter::newLine() {
    if (m_layout == Layout::OneLine) {
        return;
    }
    m_text += '\n';
    m_text.append(2 * m_hasMembers.size(), ' ');
}

}  // namespace vrx
