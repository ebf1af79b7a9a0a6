/// Mending is one pass that writes what it understands and nothing else, so that the result always parses:
///
/// - A start tag is written again with those of its attributes that are whole; a name that comes twice counts once.
/// - An end tag closes the element of its name, and those inside it that are still open. Without such an element it is
///   left out.
/// - `<` that starts no tag, and `&` that starts no reference, are text.
/// - Text that the end of the recording cuts off is left out: half a serial number is none.
/// - Elements deeper than a document may have are left out, not what stands in them: it belongs to the one above.
///
/// No part of the text is looked at more than twice: an attempt to read a tag never goes past the next `<`.

#include "libMachine/import/mending/XmlMending.h"

#include <algorithm>
#include <string>
#include <vector>

namespace vrx {

namespace {

constexpr std::size_t DEEPEST = 200;
constexpr std::size_t LOOK_BACK = 64;  // how many open elements an end tag may close
constexpr std::string_view XML_BLANKS = " \t\r\n";

bool isNameStart(char byte) noexcept {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_';
}

bool isNamePart(char byte) noexcept {
    return isNameStart(byte) || (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == ':';
}

/// The length of the reference that the text starts with ("&amp;", "&#233;"); 0 when it starts with none.
std::size_t referenceLength(std::string_view text) noexcept {
    static constexpr std::string_view NAMED[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
    for (const std::string_view name : NAMED) {
        if (text.starts_with(name)) {
            return name.size();
        }
    }
    static constexpr std::size_t LONGEST = 6;
    if (!text.starts_with("&#")) {
        return 0;
    }
    const std::size_t digits = text.find_first_not_of("0123456789", 2);
    // Below 32 and in the surrogates there are numbers that no document may refer to.
    const bool isShort = digits != std::string_view::npos && digits >= 4 && digits <= LONGEST && text[digits] == ';' &&
                         text[2] != '0' && text.substr(2, digits - 2) >= (digits == 4 ? "32" : "");
    return isShort ? digits + 1 : 0;
}

/// What may stand between tags, or with `isAttribute` between quotes.
void appendText(std::string& out, std::string_view text, bool isAttribute) {
    while (!text.empty()) {
        const std::size_t special = std::min(text.find_first_of("<>&\""), text.size());
        out.append(text.substr(0, special));
        text.remove_prefix(special);
        if (text.empty()) {
            return;
        }
        std::size_t length = 1;
        switch (text.front()) {
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += isAttribute ? "&quot;" : "\""; break;
            default:
                length = std::max<std::size_t>(referenceLength(text), 1);
                out += length > 1 ? text.substr(0, length) : std::string_view("&amp;");
                break;
        }
        text.remove_prefix(length);
    }
}

struct StartTag {
    std::string_view name;
    std::vector<std::pair<std::string_view, std::string_view>> attributes;
    bool isEmpty = false;
};

class XmlMender {
public:
    XmlMender(std::string_view text, DamageList& damage) : m_text(text), m_damage(damage) {}

    std::string mend() {
        m_out.reserve(m_text.size() + m_text.size() / 8);
        m_out += "<list>";
        while (m_at < m_text.size()) {
            const std::size_t tag = std::min(m_text.find('<', m_at), m_text.size());
            if (!m_open.empty() && tag < m_text.size()) {
                appendText(m_out, m_text.substr(m_at, tag - m_at), false);
            }
            m_at = tag;
            if (m_at < m_text.size()) {
                takeMarkup();
            }
        }
        if (!m_open.empty()) {
            if (!m_isCut) {
                count(DamageKind::XmlCutOff);
            }
            m_out.append("<").append(toUtf8(CUT_OFF_ELEMENT)).append("/>");
        }
        closeDownTo(0);
        m_out += "</list>";
        return std::move(m_out);
    }

private:
    struct Open {
        std::string_view name;
        bool isWritten;
    };

    void takeMarkup() {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.starts_with("<!--")) {
            skipPast("-->");
        } else if (rest.starts_with("<![CDATA[")) {
            takeCdata();
        } else if (rest.starts_with("<!")) {
            skipPast(">");
        } else if (rest.starts_with("<?")) {
            skipPast("?>");
        } else if (rest.starts_with("</")) {
            takeEndTag();
        } else {
            takeStartTag();
        }
    }

    void skipPast(std::string_view end) {
        const std::size_t at = m_text.find(end, m_at);
        if (at == std::string_view::npos) {
            cutOff();
        } else {
            m_at = at + end.size();
        }
    }

    void takeCdata() {
        static constexpr std::size_t HEAD = 9;
        const std::size_t start = m_at + HEAD;
        skipPast("]]>");
        const std::size_t end = m_isCut ? m_text.size() : m_at - 3;
        if (!m_open.empty()) {
            std::string plain;
            for (const char byte : m_text.substr(start, end - start)) {
                plain += byte == '&' ? std::string("&amp;") : std::string(1, byte);
            }
            appendText(m_out, plain, false);
        }
    }

    void cutOff() {
        count(DamageKind::XmlCutOff);
        m_isCut = true;
        m_at = m_text.size();
    }

    void takeEndTag() {
        std::size_t at = m_at + 2;
        const std::string_view name = takeName(at);
        at = std::min(m_text.find_first_not_of(XML_BLANKS, at), m_text.size());
        if (at == m_text.size()) {
            cutOff();
            return;
        }
        if (name.empty() || m_text[at] != '>') {
            skipBroken();
            return;
        }
        m_at = at + 1;
        close(name);
    }

    void close(std::string_view name) {
        const std::size_t oldest = m_open.size() - std::min(m_open.size(), LOOK_BACK);
        for (std::size_t i = m_open.size(); i > oldest; --i) {
            if (m_open[i - 1].name == name) {
                if (i != m_open.size()) {
                    count(DamageKind::XmlNotClosed, m_open.size() - i);
                }
                closeDownTo(i - 1);
                return;
            }
        }
        count(DamageKind::XmlNoTag);
    }

    void closeDownTo(std::size_t size) {
        while (m_open.size() > size) {
            if (m_open.back().isWritten) {
                m_out.append("</").append(m_open.back().name).append(">");
            }
            m_open.pop_back();
        }
    }

    void takeStartTag() {
        std::size_t at = m_at + 1;
        StartTag tag;
        tag.name = takeName(at);
        const bool isWhole = !tag.name.empty() && takeAttributes(tag, at);
        if (isWhole) {
            m_at = at;
            open(tag);
        } else if (at >= m_text.size()) {
            cutOff();
        } else {
            skipBroken();
        }
    }

    void open(const StartTag& tag) {
        const bool isWritten = m_open.size() < DEEPEST;
        if (isWritten) {
            write(tag);
        } else {
            count(DamageKind::XmlTooDeep);
        }
        if (!tag.isEmpty) {
            m_open.push_back({tag.name, isWritten});
        }
    }

    void write(const StartTag& tag) {
        m_out.append("<").append(tag.name);
        for (std::size_t i = 0; i < tag.attributes.size(); ++i) {
            const auto& [name, value] = tag.attributes[i];
            m_out.append(" ").append(name).append("=\"");
            appendText(m_out, value, true);
            m_out.append("\"");
        }
        m_out.append(tag.isEmpty ? "/>" : ">");
    }

    std::string_view takeName(std::size_t& at) const {
        const std::size_t start = at;
        while (at < m_text.size() && (at == start ? isNameStart(m_text[at]) : isNamePart(m_text[at]))) {
            ++at;
        }
        return m_text.substr(start, at - start);
    }

    /// Reads up to and with the tag's end; false when something there is neither. Stops at the end of the text.
    bool takeAttributes(StartTag& tag, std::size_t& at) const {
        while (true) {
            at = std::min(m_text.find_first_not_of(XML_BLANKS, at), m_text.size());
            if (m_text.substr(at).starts_with('>')) {
                ++at;
                return true;
            }
            if (m_text.substr(at).starts_with("/>")) {
                at += 2;
                tag.isEmpty = true;
                return true;
            }
            if (!takeAttribute(tag, at)) {
                return false;
            }
        }
    }

    bool takeAttribute(StartTag& tag, std::size_t& at) const {
        static constexpr std::size_t MOST = 64;  // no element that is read has more
        const std::string_view name = takeName(at);
        at = std::min(m_text.find_first_not_of(XML_BLANKS, at), m_text.size());
        if (name.empty() || at == m_text.size() || m_text[at] != '=') {
            return false;
        }
        at = std::min(m_text.find_first_not_of(XML_BLANKS, at + 1), m_text.size());
        if (at == m_text.size() || (m_text[at] != '"' && m_text[at] != '\'')) {
            return false;
        }
        const char ends[] = {m_text[at], '<', '\0'};
        const std::size_t start = at + 1;
        at = std::min(m_text.find_first_of(ends, start), m_text.size());
        if (at == m_text.size() || m_text[at] == '<') {
            return false;
        }
        const bool isNew = std::none_of(tag.attributes.begin(), tag.attributes.end(),
                                        [name](const auto& other) { return other.first == name; });
        if (isNew && tag.attributes.size() < MOST) {
            tag.attributes.emplace_back(name, m_text.substr(start, at - start));
        }
        ++at;
        return true;
    }

    /// Leaves out what looked like a tag up to its end, or up to the next one.
    void skipBroken() {
        count(DamageKind::XmlNoTag);
        const std::size_t end = std::min(m_text.find_first_of("<>", m_at + 1), m_text.size());
        m_at = end < m_text.size() && m_text[end] == '>' ? end + 1 : end;
    }

    void count(DamageKind kind, std::size_t times = 1) {
        const auto at = [this](std::size_t place) {
            return m_text.begin() + static_cast<std::ptrdiff_t>(place);
        };
        m_line += static_cast<std::size_t>(std::count(at(m_counted), at(m_at), '\n'));
        m_counted = m_at;
        m_damage.add(kind, m_line, {}, times);
    }

    std::string_view m_text;
    DamageList& m_damage;
    std::string m_out;
    std::vector<Open> m_open;
    std::size_t m_at = 0;
    std::size_t m_counted = 0;  // up to where line ends are in m_line
    std::size_t m_line = 1;
    bool m_isCut = false;
};

}  // namespace

bool parseMended(std::string_view text, XmlDocument& document, DamageList& damage) {
    if (document.ParseUtf8(text)) {
        return true;
    }
    return document.ParseUtf8(XmlMender(text, damage).mend()) && !document.RootElement()->NoChildren();
}

}  // namespace vrx
