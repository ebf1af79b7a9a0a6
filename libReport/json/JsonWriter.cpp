#include "libReport/json/JsonWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
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

constexpr std::array<bool, 256> ESCAPED = [] {
    std::array<bool, 256> escaped{};
    std::fill_n(escaped.begin(), 0x20, true);
    for (const unsigned char character : {'"', '\\', '\x7F'}) {
        escaped[character] = true;
    }
    return escaped;
}();

constexpr bool needsEscape(char character) noexcept { return ESCAPED[static_cast<unsigned char>(character)]; }

/// Appends the text in quotes, and what stands behind it; false, changing nothing, when it has to be escaped.
bool appendPlain(std::string& out, std::string_view text, std::string_view behind) {
    const std::size_t before = out.size();
    out.resize(before + 1 + text.size() + 1 + behind.size());
    char* to = out.data() + before;
    *to++ = '"';
    bool isOdd = false;
    for (const char character : text) {
        isOdd = isOdd || needsEscape(character);
        *to++ = character;
    }
    if (isOdd) {
        out.resize(before);
        return false;
    }
    *to++ = '"';
    std::ranges::copy(behind, to);
    return true;
}

void appendQuoted(std::string& out, std::string_view text, std::string_view behind = {}) {
    if (appendPlain(out, text, behind)) {
        return;
    }
    out += '"';
    while (!text.empty()) {
        const auto odd = std::find_if(text.begin(), text.end(), [](char character) { return needsEscape(character); });
        const auto plain = static_cast<std::size_t>(odd - text.begin());
        out.append(text.data(), plain);
        if (odd == text.end()) {
            break;
        }
        appendEscaped(out, *odd);
        text.remove_prefix(plain + 1);
    }
    out += '"';
    out += behind;
}

bool isAscii(std::string_view text) noexcept {
    unsigned char all = 0;
    for (const char character : text) {
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(character));
    }
    return all < 0x80;
}

}  // namespace

JsonWriter& JsonWriter::key(std::string_view name) {
    startValue();
    appendQuoted(m_text, name, ": ");
    m_afterKey = true;
    return *this;
}

void JsonWriter::value(double number) { scalar(fmt::format("{}", number)); }

void JsonWriter::value(std::string_view text) {
    if (isAscii(text)) {
        quoted(text);
    } else {
        value(String::UTF8Decode(text));
    }
}

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
