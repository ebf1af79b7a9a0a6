/// Where a text is cut is a guess: before a start tag that is indented as the first child of the root is. The guess is
/// put to the test by parsing the pieces. Each one is made a document by the root's tags, and begins with a start tag.
/// So when all of them parse, each end of a piece was between two children of the root: had it been within a comment, a
/// CDATA section, a tag or a deeper element, the end tag that was added would not have closed the root. The pieces
/// together are then the text, and it is well-formed. Nothing else reaches from one piece into another, since there is
/// no DOCTYPE.
///
/// When some piece does not parse, nothing is known of the text, and it has to be parsed as a whole.

#include "libCommon/xml/parsing/XmlPieces.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <new>

namespace vrx {

namespace {

constexpr std::size_t START_SIZE = std::size_t{16} << 10;
constexpr std::size_t SMALLEST_PIECE = std::size_t{32} << 10;
constexpr std::size_t USUAL_PIECE = std::size_t{256} << 10;
constexpr std::size_t PIECES_OF_SMALL_TEXT = 8;
constexpr std::size_t LARGEST_PIECE = std::size_t{8} << 20;
constexpr std::string_view BLANKS = " \t\r\n";

/// Finds the root's name and where its first child begins.
class StartOfText {
public:
    explicit StartOfText(std::string_view text) {
        const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
        if (parser == nullptr) {
            throw std::bad_alloc();
        }
        m_parser = parser.get();
        XML_SetUserData(m_parser, this);
        XML_SetStartElementHandler(m_parser, onStartElement);
        XML_SetStartDoctypeDeclHandler(m_parser, onDoctype);
        XML_Parse(m_parser, text.data(), static_cast<int>(text.size()), 0);
    }

    const std::string& rootName() const noexcept { return m_rootName; }

    /// 0 when there is none.
    std::size_t firstChild() const noexcept { return m_firstChild; }

private:
    static void onStartElement(void* self, const char* name, const char**) {
        StartOfText& start = *static_cast<StartOfText*>(self);
        if (start.m_rootName.empty()) {
            start.m_rootName = name;
        } else if (start.m_firstChild == 0) {
            start.m_firstChild = static_cast<std::size_t>(XML_GetCurrentByteIndex(start.m_parser));
            XML_StopParser(start.m_parser, XML_FALSE);
        }
    }

    /// What a DOCTYPE declares is not to be looked at.
    static void onDoctype(void* self, const char*, const char*, const char*, int) {
        XML_StopParser(static_cast<StartOfText*>(self)->m_parser, XML_FALSE);
    }

    XML_Parser m_parser;
    std::string m_rootName;
    std::size_t m_firstChild = 0;
};

bool startsName(char character) noexcept {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_';
}

}  // namespace

XmlPieces::XmlPieces(XmlSource& source)
    : m_source(source),
      m_pieceSize(std::clamp(source.mostBytesLeft() / PIECES_OF_SMALL_TEXT, SMALLEST_PIECE, USUAL_PIECE)) {
    readMore(m_unused, START_SIZE);
    findSeam();
}

void XmlPieces::findSeam() {
    const StartOfText start(m_unused);
    const std::string_view before(m_unused.data(), start.firstChild());
    const std::size_t gap = before.find_last_not_of(BLANKS) + 1;
    if (gap == 0 || before.find('\n', gap) == std::string_view::npos) {
        return;  // tags in one line would be found at any depth
    }
    m_seam.append(before.substr(gap)).append("<");
    m_opening.append("<").append(start.rootName()).append(">");
    m_closing.append("</").append(start.rootName()).append(">");
}

bool XmlPieces::take(XmlPiece& piece) {
    const std::lock_guard lock(m_mutex);
    if (m_isAtEnd || m_hasGivenUp) {
        return false;
    }
    piece.number = m_count++;
    piece.start = m_position.place();
    piece.text = piece.number == 0 ? "" : m_opening;
    piece.addedSize = piece.text.size();
    piece.text += m_unused;
    std::size_t cut = 0;
    while (cut == 0 && !m_isAtEnd && !m_hasGivenUp) {
        readMore(piece.text, m_pieceSize);
        m_isAtEnd = m_source.isAtEnd();
        m_hasGivenUp = !m_isAtEnd && piece.text.size() > LARGEST_PIECE;
        cut = m_isAtEnd ? 0 : lastCut(piece.text, piece.addedSize);
    }
    if (cut > 0) {
        cutOff(piece, cut);
    }
    return !m_hasGivenUp;
}

void XmlPieces::readMore(std::string& text, std::size_t size) {
    const std::size_t before = text.size();
    text.resize(before + std::min(size, m_source.mostBytesLeft()));
    text.resize(before + m_source.read(text.data() + before, text.size() - before));
}

/// The last start tag behind a seam; 0 when there is none.
std::size_t XmlPieces::lastCut(std::string_view text, std::size_t first) const noexcept {
    std::size_t seam = text.rfind(m_seam);
    while (seam != std::string_view::npos && seam > first) {
        const std::size_t tag = seam + m_seam.size() - 1;
        if (tag + 1 < text.size() && startsName(text[tag + 1])) {
            return tag;
        }
        seam = text.rfind(m_seam, seam - 1);
    }
    return 0;
}

void XmlPieces::cutOff(XmlPiece& piece, std::size_t cut) {
    m_unused.assign(piece.text, cut);
    piece.text.resize(cut);
    m_position.advance(std::string_view(piece.text).substr(piece.addedSize));
    piece.text += m_closing;
}

}  // namespace vrx
