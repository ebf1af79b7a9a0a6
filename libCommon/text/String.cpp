#include "libCommon/text/String.h"

#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"

namespace vrx {

namespace {

constexpr StringView WHITE_SPACE = u" \t\n\r\v\f";

}  // namespace

const String String::EMPTY;

StringView trimmed(StringView text) noexcept {
    const std::size_t first = text.find_first_not_of(WHITE_SPACE);
    if (first == StringView::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(WHITE_SPACE) - first + 1);
}

String& String::trim() {
    const StringView kept = trimmed(m_text);
    if (kept.size() != m_text.size()) {
        const std::size_t first = kept.empty() ? 0 : static_cast<std::size_t>(kept.data() - m_text.data());
        m_text.erase(first + kept.size());
        m_text.erase(0, first);
    }
    return *this;
}

String& String::replace(StringView from, StringView to) {
    std::size_t found = from.empty() ? npos : m_text.find(from);
    if (found == npos) {
        return *this;
    }
    std::u16string result;
    result.reserve(m_text.size());
    std::size_t copied = 0;
    for (; found != npos; found = m_text.find(from, copied)) {
        result.append(m_text, copied, found - copied).append(to);
        copied = found + from.size();
    }
    result.append(m_text, copied);
    m_text = std::move(result);
    return *this;
}

std::string String::getLowerByteString() const {
    std::string bytes(m_text.size(), '\0');
    for (std::size_t index = 0; index < m_text.size(); ++index) {
        bytes[index] = static_cast<char>(m_text[index] & 0xFF);
    }
    return bytes;
}

bool String::strToBoolean() const noexcept {
    const StringView word = trimmed(m_text);
    for (const StringView yes : {u"true", u"1", u"yes", u"on"}) {
        if (vrx::equalNoCase(word, yes)) {
            return true;
        }
    }
    return false;
}

double String::strToReal64(bool* isNumber) const noexcept {
    const std::optional<double> number = parseReal(trimmed(m_text));
    if (isNumber != nullptr) {
        *isNumber = number.has_value();
    }
    return number.value_or(0);
}

String String::uuEncode(bool escapeUnrepresentable, bool protectLiterals) const {
    return vrx::uuEncode(m_text, escapeUnrepresentable, protectLiterals);
}

String String::uuDecode(bool escapeUnrepresentable, bool protectLiterals) const {
    return vrx::uuDecode(m_text, escapeUnrepresentable, protectLiterals);
}

}  // namespace vrx
