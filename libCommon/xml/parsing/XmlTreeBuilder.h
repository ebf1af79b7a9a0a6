#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "libCommon/xml/XmlContent.h"
#include "libCommon/xml/XmlNames.h"
#include "libCommon/xml/XmlTextCache.h"
#include "libCommon/xml/parsing/XmlElementReader.h"
#include "libCommon/xml/parsing/XmlPosition.h"

namespace vrx {

/// Makes the nodes of a document from the parser's events, which are trusted to be well-formed, valid UTF-8 and
/// properly nested.
///
/// Text comes in pieces (at line ends, references, CDATA sections, ends of the parser's buffer). They are gathered
/// until a tag or a comment follows and make one node together, or none when all of it is white space.
///
/// While an element is open, all that is put into the arena belongs to it. So what a reader has done with is given back
/// by winding the arena back to where the element was made.
class XmlTreeBuilder {
public:
    /// All are borrowed; without a reader the whole document is kept. It is put into the top.
    XmlTreeBuilder(XmlContent& content, XmlContainer& top, XmlElementReader* reader)
        : m_content(content),
          m_names(content.names()),
          m_parent(&top),
          m_reader(reader),
          m_placing(reader != nullptr ? reader->attributeOfPlacedElements() : "") {}

    /// The reader is not asked about the root.
    void withholdRoot() noexcept { m_withholdsRoot = true; }

    /// Whether the place of the element that is about to start is wanted.
    bool keepsPlace(const char* const* attributes, std::size_t count) const noexcept {
        bool isWanted = m_reader == nullptr || m_level == 0;
        for (std::size_t i = 0; i < count && !isWanted; ++i) {
            const char* const name = attributes[2 * i];
            isWanted = name[0] == m_placing[0] && m_placing == name;
        }
        return isWanted;
    }

    /// `attributes` holds `count` names, each followed by its value.
    void startElement(const char* name, const char* const* attributes, std::size_t count, XmlPlace place);
    void endElement();
    void text(std::string_view piece) {
        if (!m_text.empty() || !m_indent.takes(piece)) {
            addText(piece);
        }
    }
    void comment(std::string_view text);

    /// How many elements are open.
    unsigned level() const noexcept { return m_level; }

    /// The innermost open element; null when none is.
    const XmlElement* openElement() const noexcept { return m_parent->ToElement(); }

private:
    /// Line ends and the blanks behind the last one. That is all the text that most documents have between tags, so it
    /// is only counted until anything else follows.
    struct Indent {
        std::size_t lineEnds = 0;
        std::size_t blanks = 0;

        bool takes(std::string_view piece) noexcept {
            if (piece.size() == 1 && piece.front() == '\n' && blanks == 0) {
                ++lineEnds;
                return true;
            }
            for (const char character : piece) {
                if (character != ' ') {
                    return false;
                }
            }
            blanks += piece.size();
            return true;
        }
    };

    StringView keepValue(std::string_view value);
    void addText(std::string_view piece);
    void finishText() {
        if (!m_text.empty()) {
            keepText();
        }
        m_indent = Indent();
    }
    void keepText();
    void offerToReader(XmlElement& element);
    void append(XmlNode* node) noexcept { m_parent->append(node); }

    XmlContent& m_content;
    XmlNameCache m_names;
    XmlContainer* m_parent;
    XmlElementReader* m_reader;
    std::string m_placing;                   // attribute of the elements that tell their places to a reader
    std::vector<XmlContent::Mark> m_starts;  // of the open elements' contents, when there is a reader
    unsigned m_level = 0;
    bool m_withholdsRoot = false;
    XmlTextCache m_values;  // while nothing is wound back
    Indent m_indent;
    std::string m_text;  // with the indent in front, once there is more
};

}  // namespace vrx
