#include "libCommon/xml/parsing/XmlParser.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/xml/XmlDocument.h"
#include "libCommon/xml/parsing/XmlErrorText.h"

// What is accepted and how it is read.
//
// The library checks well-formedness. On top of that a document is rejected when it is, or declares itself to be, in
// another encoding than UTF-8, when it has a DOCTYPE (at that very token, before anything that it declares is looked
// at, so there are no entities to expand and nothing external to load) and when elements are nested too deep (so that
// walks over a document may be recursive). Processing instructions are dropped.
//
// The text is read, encoded or copied straight into the library's buffer: in one piece, because the library tracks line
// ends over every piece but the last, or in chunks where a large text would be held twice. A token that is cut off at
// the end of a chunk is scanned again from its start when more has come; a token that is longer than a chunk makes the
// chunks grow with it, so that the whole stays linear.
//
// What has been parsed of a large piece is given back to the system from time to time, since nobody looks at it again:
// by and by the tree takes the place of the text.
//
// Places are followed through that buffer too. Invariant: the text from the place that was asked for last up to the
// event under way lies in it. To that end each chunk ends with asking for the place of what is unfinished, which is
// where the library begins to move its buffer on.

namespace vrx {

namespace {

constexpr std::size_t LARGEST_WHOLE = std::size_t{512} << 20;  // half of the library's largest buffer
constexpr std::size_t LARGEST_SECOND_COPY = std::size_t{16} << 20;
constexpr std::size_t CHUNK = std::size_t{64} << 10;
constexpr std::size_t LARGEST_CHUNK = std::size_t{256} << 20;
constexpr std::size_t GIVEN_BACK_AT_ONCE = std::size_t{1} << 20;
constexpr std::size_t KEPT_BEFORE_EVENT = std::size_t{64} << 10;
constexpr std::size_t MARGIN = 4;  // the room that a source needs for its last character
constexpr std::string_view ENCODING = "utf-8";

XmlParser& parserOf(void* self) noexcept { return *static_cast<XmlParser*>(self); }

bool isUtf8(std::string_view encoding) noexcept {
    return std::equal(encoding.begin(), encoding.end(), ENCODING.begin(), ENCODING.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

/// "1." and digits: what an XML 1.0 processor reads as 1.0.
bool isVersion1(std::string_view version) noexcept {
    return version.size() > 2 && version.starts_with("1.") &&
           version.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

/// The library takes UTF-16 for what it is, whatever it has been told; its first character is ASCII or a mark.
bool startsLikeUtf16(std::string_view bytes) noexcept {
    return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") ||
           bytes.substr(0, 2).find('\0') != std::string_view::npos;
}

}  // namespace

XmlParser::XmlParser(XmlSource& source, XmlTreeBuilder& builder)
    : m_source(source), m_builder(builder), m_parser(XML_ParserCreate("UTF-8")) {
    XML_Parser const parser = m_parser.get();
    if (parser == nullptr) {
        throw std::bad_alloc();
    }
    XML_SetUserData(parser, this);
    XML_SetXmlDeclHandler(parser, onDeclaration);
    XML_SetDefaultHandler(parser, onPrologToken);
    XML_SetElementHandler(parser, onStartElement, onEndElement);
    XML_SetCharacterDataHandler(parser, onText);
    XML_SetCommentHandler(parser, onComment);
}

std::optional<XmlError> XmlParser::run() {
    XML_Parser const parser = m_parser.get();
    std::uint64_t bytesRead = 0;
    bool atEnd = false;
    while (!atEnd) {
        const std::size_t capacity = nextChunkSize(bytesRead);
        auto* const buffer = static_cast<char*>(XML_GetBuffer(parser, static_cast<int>(capacity)));
        if (buffer == nullptr) {
            return libraryError();
        }
        m_givenBack = 0;
        const std::size_t size = m_source.read(buffer, capacity);
        if (bytesRead == 0 && startsLikeUtf16({buffer, size})) {
            return XmlError{u"the text is not UTF-8", XmlPlace(), false};
        }
        bytesRead += size;
        if (!XmlPosition::isSimple({buffer, size})) {
            m_simpleFrom = static_cast<XML_Index>(bytesRead);
        }
        atEnd = m_source.isAtEnd();
        if (XML_ParseBuffer(parser, static_cast<int>(size), atEnd) != XML_STATUS_OK) {
            return m_error ? std::move(m_error) : libraryError();
        }
        if (!atEnd) {
            placeOfEvent();
        }
    }
    return std::nullopt;
}

std::size_t XmlParser::nextChunkSize(std::uint64_t bytesRead) const noexcept {
    if (m_source.mostBytesLeft() <= (m_source.isInMemory() ? LARGEST_SECOND_COPY : LARGEST_WHOLE)) {
        return m_source.mostBytesLeft() + MARGIN;
    }
    const std::uint64_t unfinished = bytesRead - static_cast<std::uint64_t>(m_positionIndex);
    return std::clamp<std::size_t>(unfinished, CHUNK, LARGEST_CHUNK);
}

void XmlParser::onDeclaration(void* self, const char* version, const char* encoding, int) {
    if (version != nullptr && !isVersion1(version)) {
        parserOf(self).stop(concat(u"XML version \"", String::UTF8Decode(version), u"\" is not accepted, only 1.0 is"));
    } else if (encoding != nullptr && !isUtf8(encoding)) {
        parserOf(self).stop(concat(u"encoding \"", String::UTF8Decode(encoding), u"\" is not accepted, only UTF-8 is"));
    }
}

void XmlParser::onPrologToken(void* self, const char* text, int size) {
    if (std::string_view(text, static_cast<std::size_t>(size)).starts_with("<!DOCTYPE")) {
        parserOf(self).stop(u"a DOCTYPE is not accepted");
    }
}

void XmlParser::onStartElement(void* self, const char* name, const char** attributes) {
    XmlParser& parser = parserOf(self);
    const unsigned level = parser.m_builder.level();
    if (level == XmlDocument::MAXIMUM_DEPTH) {
        parser.stop(u"elements are nested deeper than 256 levels");
        return;
    }
    if (level == 0) {
        XML_SetDefaultHandler(parser.m_parser.get(), nullptr);  // the prolog is over
    }
    const auto count = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser.m_parser.get())) / 2;
    const XmlPlace place = parser.m_builder.keepsPlace(attributes, count) ? parser.placeOfEvent() : XmlPlace();
    parser.m_builder.startElement(name, attributes, count, place);
}

void XmlParser::onEndElement(void* self, const char*) { parserOf(self).m_builder.endElement(); }

void XmlParser::onText(void* self, const char* text, int size) {
    parserOf(self).m_builder.text(std::string_view(text, static_cast<std::size_t>(size)));
}

void XmlParser::onComment(void* self, const char* text) { parserOf(self).m_builder.comment(text); }

// The library may still report what it has recognised already, so nobody listens any more.
void XmlParser::stop(String description) {
    m_error = XmlError{std::move(description), placeOfEvent(), false};
    XML_Parser const parser = m_parser.get();
    XML_SetElementHandler(parser, nullptr, nullptr);
    XML_SetDefaultHandler(parser, nullptr);
    XML_StopParser(parser, XML_FALSE);
}

// Nothing may have happened yet, and an error may lie before the last tag: then the place stays what it was.
XmlPlace XmlParser::placeOfEvent() {
    const XML_Index index = XML_GetCurrentByteIndex(m_parser.get());
    if (index > m_positionIndex) {
        int offset = 0;
        int size = 0;
        const char* const buffer = XML_GetInputContext(m_parser.get(), &offset, &size);
        VRX_ASSERT(buffer != nullptr && index - m_positionIndex <= offset);
        const auto passed = static_cast<std::size_t>(index - m_positionIndex);
        const std::string_view text(buffer + offset - passed, passed);
        m_positionIndex < m_simpleFrom ? m_position.advance(text) : m_position.advanceSimple(text);
        m_positionIndex = index;
        giveBack(const_cast<char*>(buffer), static_cast<std::size_t>(offset));
    }
    return m_position.place();
}

// The library keeps a little in front of the event for itself. A page that was given back reads as zeros, should
// anybody look; the buffer remains what it was.
void XmlParser::giveBack(char* buffer, std::size_t parsed) {
    if (parsed < m_givenBack + GIVEN_BACK_AT_ONCE + KEPT_BEFORE_EVENT) {
        return;
    }
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto start = reinterpret_cast<std::uintptr_t>(buffer);
    const std::uintptr_t begin = (start + m_givenBack + page - 1) / page * page;
    const std::uintptr_t end = (start + parsed - KEPT_BEFORE_EVENT) / page * page;
    ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
    m_givenBack = end - start;
}

std::string_view XmlParser::restAtEvent() const {
    int offset = 0;
    int size = 0;
    const char* const buffer = XML_GetInputContext(m_parser.get(), &offset, &size);
    return buffer == nullptr
               ? std::string_view()
               : std::string_view(buffer, static_cast<std::size_t>(size)).substr(static_cast<std::size_t>(offset));
}

// That there was no memory says nothing about the text.
XmlError XmlParser::libraryError() {
    if (XML_GetErrorCode(m_parser.get()) == XML_ERROR_NO_MEMORY) {
        throw std::bad_alloc();
    }
    const String description = describeError(XML_GetErrorCode(m_parser.get()), restAtEvent(), m_builder);
    return {description, placeOfEvent()};
}

}  // namespace vrx
