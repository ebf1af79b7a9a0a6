#pragma once

#include <expat.h>

#include <memory>
#include <optional>
#include <string_view>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlContent.h"
#include "libCommon/xml/parsing/XmlPosition.h"
#include "libCommon/xml/parsing/XmlSource.h"
#include "libCommon/xml/parsing/XmlTreeBuilder.h"

namespace vrx {

/// Drives the XML parser library over one text and hands what it finds to the tree builder.
class XmlParser {
public:
    /// Both are borrowed.
    XmlParser(XmlSource& source, XmlTreeBuilder& builder);

    /// The text begins with some bytes that are not counted, and what follows them is at that place.
    void startAt(XmlPlace place, std::size_t addedSize) noexcept {
        m_position = XmlPosition(place);
        m_positionIndex = static_cast<XML_Index>(addedSize);
    }

    /// Parses the whole text, once. What went wrong, or nothing.
    std::optional<XmlError> run();

private:
    struct Release {
        void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
    };

    static void onDeclaration(void* self, const char* version, const char* encoding, int standalone);
    static void onPrologToken(void* self, const char* text, int size);
    static void onStartElement(void* self, const char* name, const char** attributes);
    static void onEndElement(void* self, const char* name);
    static void onText(void* self, const char* text, int size);
    static void onComment(void* self, const char* text);

    std::size_t nextChunkSize(std::uint64_t bytesRead) const noexcept;
    void stop(String description);
    XmlPlace placeOfEvent();
    void giveBack(char* buffer, std::size_t parsed);
    std::string_view restAtEvent() const;
    XmlError libraryError();

    XmlSource& m_source;
    XmlTreeBuilder& m_builder;
    std::unique_ptr<XML_ParserStruct, Release> m_parser;
    XmlPosition m_position;
    XML_Index m_positionIndex = 0;  // of the byte that m_position is at
    XML_Index m_simpleFrom = 0;     // all that has been read behind this is simple (XmlPosition)
    std::size_t m_givenBack = 0;    // up to where the text in the buffer is gone
    std::optional<XmlError> m_error;
};

}  // namespace vrx
