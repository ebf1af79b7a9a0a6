#include "libCommon/xml/XmlWriter.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

#include "libCommon/text/UuCode.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

namespace {

/// Where a text stands decides what must be escaped in it. One bit each.
enum Context : std::uint8_t { IN_TEXT = 1, IN_ATTRIBUTE = 2, IN_COMMENT = 4 };

/// The contexts in which an ASCII unit cannot stand as it is.
constexpr std::array<std::uint8_t, 128> makeSpecials() {
    std::array<std::uint8_t, 128> specials{};
    for (std::size_t unit = 0; unit < 0x20; ++unit) {
        specials[unit] = IN_TEXT | IN_ATTRIBUTE | IN_COMMENT;
    }
    specials['\t'] = specials['\n'] = IN_ATTRIBUTE;
    specials['\r'] = IN_TEXT | IN_ATTRIBUTE;
    specials['&'] = specials['<'] = specials['>'] = IN_TEXT | IN_ATTRIBUTE;
    specials['"'] = IN_ATTRIBUTE;
    specials['-'] = IN_COMMENT;
    return specials;
}

constexpr std::array<std::uint8_t, 128> SPECIALS = makeSpecials();

bool isSpecial(StringView text, std::size_t index, Context context) noexcept {
    const char16_t unit = text[index];
    if (unit < 0x80) {
        return (SPECIALS[unit] & context) != 0;
    }
    return unit >= 0xD800 && !isXmlRepresentable(text, index);
}

void append(std::string& out, StringView text) { appendUtf8(out, text); }

void append(std::u16string& out, StringView text) { out.append(text); }

constexpr char DIGITS[] = "0123456789ABCDEF";

/// Writes nodes to the end of UTF-8 or UTF-16 text.
template <typename Out>
class Printer {
public:
    explicit Printer(Out& out) noexcept : m_out(out) {}

    void compact(const XmlNode& node) {
        switch (node.NodeKind()) {
            case XmlNode::Kind::Document: compactChildren(static_cast<const XmlContainer&>(node)); break;
            case XmlNode::Kind::Element: compactElement(static_cast<const XmlElement&>(node)); break;
            case XmlNode::Kind::Text: escaped(node.Value(), IN_TEXT); break;
            case XmlNode::Kind::Comment: comment(node.Value()); break;
        }
    }

    void formatted(const XmlNode& node, int depth) {
        if (node.NodeKind() == XmlNode::Kind::Document) {
            formattedChildren(static_cast<const XmlContainer&>(node), depth);
            return;
        }
        indent(depth);
        const XmlElement* const element = node.ToElement();
        if (element == nullptr || element->NoChildren() || holdsTextOnly(*element)) {
            compact(node);
        } else {
            startTag(*element, ">\n");
            formattedChildren(*element, depth + 1);
            indent(depth);
            endTag(*element);
        }
        ascii("\n");
    }

    void escaped(StringView text, Context context) {
        std::size_t plain = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isSpecial(text, i, context)) {
                append(m_out, text.substr(plain, i - plain));
                plain = i + 1;
                special(text, i);
            }
        }
        append(m_out, text.substr(plain));
    }

private:
    void ascii(std::string_view text) { m_out.append(text.begin(), text.end()); }

    void special(StringView text, std::size_t index) {
        switch (text[index]) {
            case u'&': return ascii("&amp;");
            case u'<': return ascii("&lt;");
            case u'>': return ascii("&gt;");
            case u'"': return ascii("&quot;");
            case u'\t': return ascii("&#9;");
            case u'\n': return ascii("&#10;");
            case u'\r': return ascii("&#13;");
            case u'-': return hyphen(index > 0 && text[index - 1] == u'-');
            default: return unrepresentable(text[index]);
        }
    }

    void hyphen(bool afterHyphen) { ascii(afterHyphen ? " -" : "-"); }

    void unrepresentable(char16_t unit) {
        ascii("%u");
        for (int shift = 12; shift >= 0; shift -= 4) {
            ascii({&DIGITS[(unit >> shift) & 0xF], 1});
        }
    }

    void comment(StringView text) {
        ascii("<!--");
        escaped(text, IN_COMMENT);
        ascii(text.ends_with(u'-') ? " -->" : "-->");
    }

    void compactElement(const XmlElement& element) {
        if (element.NoChildren()) {
            startTag(element, "/>");
            return;
        }
        startTag(element, ">");
        compactChildren(element);
        endTag(element);
    }

    void compactChildren(const XmlContainer& parent) {
        for (const XmlNode* child = parent.FirstChild(); child != nullptr; child = child->NextSibling()) {
            compact(*child);
        }
    }

    void formattedChildren(const XmlContainer& parent, int depth) {
        for (const XmlNode* child = parent.FirstChild(); child != nullptr; child = child->NextSibling()) {
            formatted(*child, depth);
        }
    }

    void startTag(const XmlElement& element, std::string_view end) {
        ascii("<");
        append(m_out, element.Name());
        for (const XmlAttribute& attribute : element.Attributes()) {
            ascii(" ");
            append(m_out, attribute.Name());
            ascii("=\"");
            escaped(attribute.Value(), IN_ATTRIBUTE);
            ascii("\"");
        }
        ascii(end);
    }

    void endTag(const XmlElement& element) {
        ascii("</");
        append(m_out, element.Name());
        ascii(">");
    }

    void indent(int depth) {
        for (int level = 0; level < depth; ++level) {
            ascii("    ");
        }
    }

    static bool holdsTextOnly(const XmlElement& element) noexcept {
        const XmlNode* const child = element.FirstChild();
        return child->NodeKind() == XmlNode::Kind::Text && child->NextSibling() == nullptr;
    }

    Out& m_out;
};

String escapedFor(StringView text, Context context) {
    std::u16string out;
    Printer(out).escaped(text, context);
    return String(std::move(out));
}

}  // namespace

void writeCompact(const XmlNode& node, std::string& utf8) { Printer(utf8).compact(node); }

void writeFormatted(const XmlNode& node, int depth, std::string& utf8) { Printer(utf8).formatted(node, depth); }

String compactText(const XmlNode& node) {
    std::u16string out;
    Printer(out).compact(node);
    return String(std::move(out));
}

String formattedText(const XmlNode& node, int depth) {
    std::u16string out;
    Printer(out).formatted(node, depth);
    return String(std::move(out));
}

String escapedText(StringView text) { return escapedFor(text, IN_TEXT); }

String escapedAttribute(StringView text) { return escapedFor(text, IN_ATTRIBUTE); }

}  // namespace vrx
